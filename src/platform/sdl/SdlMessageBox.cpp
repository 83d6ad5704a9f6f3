#include "platform/sdl/SdlMessageBox.h"

#include <SDL.h>

#include <algorithm>
#include <sstream>
#include <vector>

#include "platform/FontRaster.h"
#include "platform/MessageBox.h"
#include "platform/sdl/DisplayLoss.h"

namespace platform {

namespace {

SDL_Window* mainWindow = nullptr;

constexpr int margin = 20;
constexpr int glyphHeight = 16;
constexpr int glyphCell = 24;  // room for wide glyphs beside the height
constexpr int lineHeight = 21;
constexpr int buttonWidth = 96;
constexpr int buttonHeight = 30;
constexpr int spaceAdvance = 5;
constexpr Uint32 stepMs = 10;
constexpr int stepsPerPicture = 10;
constexpr Uint32 background = 0xFFF3F1EC;
constexpr Uint32 ink = 0xFF202024;
constexpr Uint32 buttonFace = 0xFFDCD8CE;
constexpr Uint32 defaultButtonFace = 0xFFC5D6E8;
constexpr Uint32 buttonEdge = 0xFF8A877E;

struct Button {
    std::string label;
    BoxAnswer answer = BoxAnswer::Ok;
    SDL_Rect place{};
};

// Writes with one face; glyphs are packed by their own lit columns.
class Pen {
  public:
    Pen() : face(OpenFont("Liberation Sans", glyphHeight)) {}

    int Write(SDL_Surface* surface, int x, int y, const std::string& text) {
        for (const char character : text)
            x += Glyph(surface, x, y, static_cast<unsigned char>(character));
        return x;
    }
    int Width(const std::string& text) { return Write(nullptr, 0, 0, text); }

  private:
    // The advance in pixels; draws when there is a surface.
    int Glyph(SDL_Surface* surface, int x, int y, unsigned char code) {
        if (!face || code <= 32) return spaceAdvance;
        face->DrawGlyph(code, 4, 0, glyphCell, coverage);
        int first = glyphCell;
        int last = -1;
        for (int row = 0; row < glyphCell; ++row)
            for (int column = 0; column < glyphCell; ++column)
                if (At(column, row) != 0) {
                    first = std::min(first, column);
                    last = std::max(last, column);
                }
        if (last < first) return spaceAdvance;
        for (int row = 0; surface && row < glyphCell; ++row)
            for (int column = first; column <= last; ++column)
                Blend(surface, x + column - first, y + row, At(column, row));
        return last - first + 2;
    }
    [[nodiscard]] std::uint8_t At(int column, int row) const {
        return coverage[static_cast<std::size_t>(row) * glyphCell + static_cast<std::size_t>(column)];
    }
    static void Blend(SDL_Surface* surface, int x, int y, unsigned amount) {
        if (amount == 0 || x < 0 || y < 0 || x >= surface->w || y >= surface->h) return;
        auto* pixel = reinterpret_cast<Uint32*>(static_cast<Uint8*>(surface->pixels) + y * surface->pitch) + x;
        Uint32 mixed = 0xFF000000U;
        for (int shift = 0; shift <= 16; shift += 8) {
            const Uint32 under = *pixel >> shift & 0xFFU;
            const Uint32 over = ink >> shift & 0xFFU;
            mixed |= (over * amount + under * (255 - amount)) / 255 << shift;
        }
        *pixel = mixed;
    }

    std::unique_ptr<FontFace> face;
    std::vector<std::uint8_t> coverage;
};

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// One box from its opening to its answer. Events that are not its own wait for the main window.
class Box {
  public:
    Box(const std::string& text, BoxKind kind) : lines(LinesOf(text)) {
        if (kind == BoxKind::YesNo)
            buttons = {{"Yes", BoxAnswer::Yes}, {"No", BoxAnswer::No}};
        else
            buttons = {{"OK", BoxAnswer::Ok}};
        answer = buttons.back().answer;  // unless another one is given before the display goes away
    }

    BoxAnswer Ask(const std::string& caption, SDL_Window* owner) {
        if (!Open(caption, owner)) return buttons.back().answer;
        while (!answered && !IsDisplayLost()) {
            Paint();
            for (int step = 0; step < stepsPerPicture && !TakeEvents(); ++step)
                SDL_Delay(stepMs);
        }
        SDL_DestroyWindow(window);
        // Not every system gives the keyboard back to the window below by itself.
        if (owner) SDL_SetWindowInputFocus(owner);
        for (SDL_Event& event : others)
            SDL_PushEvent(&event);
        return answer;
    }

  private:
    // False when there were none. SDL_WaitEvent would not do: it sends its own wake-up call through a second connection
    // to the display, and one that comes when the box has just closed ends the program.
    bool TakeEvents() {
        bool any = false;
        for (SDL_Event event; SDL_PollEvent(&event); any = true)
            if (!Handle(event)) others.push_back(event);
        return any;
    }

    bool Open(const std::string& caption, SDL_Window* owner) {
        int textWidth = 0;
        for (const std::string& line : lines)
            textWidth = std::max(textWidth, pen.Width(line));
        const int count = static_cast<int>(buttons.size());
        const int buttonsWidth = count * buttonWidth + (count - 1) * margin / 2;
        const int width = std::max(textWidth, buttonsWidth) + 2 * margin;
        const int height = static_cast<int>(lines.size()) * lineHeight + buttonHeight + 3 * margin;
        window = SDL_CreateWindow(caption.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height,
                                  SDL_WINDOW_ALWAYS_ON_TOP);
        if (!window) return false;
        WatchDisplay(window);
        windowId = SDL_GetWindowID(window);
        ownerId = owner ? SDL_GetWindowID(owner) : 0;
        if (owner) SDL_SetWindowModalFor(window, owner);
        SDL_RaiseWindow(window);
        for (int i = 0; i < count; ++i)
            buttons[static_cast<std::size_t>(i)].place = {(width - buttonsWidth) / 2 + i * (buttonWidth + margin / 2),
                                                          height - margin - buttonHeight, buttonWidth, buttonHeight};
        return true;
    }

    void Paint() {
        SDL_Surface* shown = SDL_GetWindowSurface(window);
        SDL_Surface* drawn =
            shown ? SDL_CreateRGBSurfaceWithFormat(0, shown->w, shown->h, 32, SDL_PIXELFORMAT_ARGB8888) : nullptr;
        if (!drawn) return;
        SDL_FillRect(drawn, nullptr, background);
        int y = margin;
        for (const std::string& line : lines) {
            pen.Write(drawn, margin, y, line);
            y += lineHeight;
        }
        for (const Button& button : buttons) {
            SDL_FillRect(drawn, &button.place, buttonEdge);
            const SDL_Rect face = {button.place.x + 1, button.place.y + 1, button.place.w - 2, button.place.h - 2};
            SDL_FillRect(drawn, &face, &button == &buttons.front() ? defaultButtonFace : buttonFace);
            const int labelX = button.place.x + (button.place.w - pen.Width(button.label)) / 2;
            pen.Write(drawn, labelX, button.place.y + (buttonHeight - glyphHeight) / 2, button.label);
        }
        SDL_BlitSurface(drawn, nullptr, shown, nullptr);
        SDL_FreeSurface(drawn);
        SDL_UpdateWindowSurface(window);
    }

    void Answer(BoxAnswer given) {
        answer = given;
        answered = true;
    }

    // True when the event was the box's own. A wish to close the program answers as Escape does and is passed on.
    bool Handle(const SDL_Event& event) {
        if (event.type == SDL_QUIT) {
            Answer(buttons.back().answer);
            return false;
        }
        if (event.type == SDL_WINDOWEVENT) return HandleWindowEvent(event.window);
        if (event.type == SDL_KEYDOWN && event.key.windowID == windowId) {
            const SDL_Keycode key = event.key.keysym.sym;
            if (key == SDLK_RETURN || key == SDLK_KP_ENTER) Answer(buttons.front().answer);
            if (key == SDLK_ESCAPE) Answer(buttons.back().answer);
            return true;
        }
        if (event.type == SDL_MOUSEBUTTONUP && event.button.windowID == windowId) {
            const SDL_Point point = {event.button.x, event.button.y};
            for (const Button& button : buttons)
                if (SDL_PointInRect(&point, &button.place)) Answer(button.answer);
            return true;
        }
        // While the question stands, the owner takes no keys and no clicks.
        return event.type >= SDL_KEYDOWN && event.type <= SDL_MOUSEWHEEL && event.type != SDL_KEYUP &&
               event.type != SDL_MOUSEBUTTONUP;
    }

    bool HandleWindowEvent(const SDL_WindowEvent& event) {
        const bool closing = event.event == SDL_WINDOWEVENT_CLOSE;
        if (closing && (event.windowID == windowId || event.windowID == ownerId)) Answer(buttons.back().answer);
        return event.windowID == windowId;
    }

    std::vector<std::string> lines;
    std::vector<Button> buttons;
    std::vector<SDL_Event> others;
    Pen pen;
    SDL_Window* window = nullptr;
    Uint32 windowId = 0;
    Uint32 ownerId = 0;
    bool answered = false;
    BoxAnswer answer = BoxAnswer::Ok;
};

BoxAnswer ShowSdlBox(const std::string& text, const std::string& caption, BoxKind kind, bool ownedByMainWindow) {
    SDL_SetMainReady();
    // SDL would put window surfaces on a graphics card: the box must not need one, nor wake its driver at the process's
    // end.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    if (IsDisplayLost() || SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
        return kind == BoxKind::YesNo ? BoxAnswer::No : BoxAnswer::Ok;
    const BoxAnswer answer = Box(text, kind).Ask(caption, ownedByMainWindow ? mainWindow : nullptr);
    if (!IsDisplayLost()) SDL_QuitSubSystem(SDL_INIT_VIDEO);
    return answer;
}

}  // namespace

void UseSdlMessageBoxes(SDL_Window* owner) {
    mainWindow = owner;
    SetMessageBoxHandler(ShowSdlBox);
}

}  // namespace platform
