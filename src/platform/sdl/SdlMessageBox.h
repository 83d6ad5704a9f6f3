#pragma once
// Real message boxes: a window of their own with the caption as its title, drawn without the graphics card.

struct SDL_Window;

namespace platform {

// Answers ShowMessageBox with windows from now on; those owned by the main window appear over `owner` (null: none).
void UseSdlMessageBoxes(SDL_Window* owner);

}  // namespace platform
