#pragma once
// The OpenGL 3.3 back end of GraphicsDevice.h, on an SDL window (a Window's NativeHandle is its SDL_Window*, made for
// OpenGL).

#include <string>

namespace platform {

// Makes CreateGraphicsInterface answer with OpenGL.
void UseOpenGl();

// Told of errors that OpenGL reports: where, and which. The one at the start writes to the standard error stream. With
// the environment variable KELVANE_GL_CHECK set, every draw is checked, else only the making and filling of objects.
using OpenGlErrorSink = void (*)(const char* place, const std::string& error);
// Null brings back the one at the start. Returns the one before.
OpenGlErrorSink SetOpenGlErrorSink(OpenGlErrorSink sink);

}  // namespace platform
