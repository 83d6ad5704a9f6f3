#pragma once
// Reporting of OpenGL's errors.

namespace platform::gl {

// Reports every pending error with the place; false when there was one. Needs the context to be current.
bool CheckErrors(const char* place);
// Whether each draw is to be checked too.
bool ChecksEachDraw();
// Reports a text of OpenGL's, such as a link log.
void ReportError(const char* place, const char* text);

}  // namespace platform::gl
