#include <SDL.h>

#include <atomic>
#include <deque>

#include "platform/GraphicsDevice.h"
#include "platform/SystemQuery.h"
#include "platform/Window.h"
#include "platform/sdl/DisplayLoss.h"
#include "platform/sdl/ScanCodes.h"
#include "platform/sdl/SdlMessageBox.h"
#include "platform/sdl/WindowsText.h"

namespace platform {

namespace {

// Set by the event watch as soon as SDL hears of a wish to close, long before the message is taken.
std::atomic<bool> closeWanted{false};
std::atomic<Uint32> mainWindowId{0};

int WatchForClose(void*, SDL_Event* event) {
    const bool closing = event->type == SDL_WINDOWEVENT && event->window.event == SDL_WINDOWEVENT_CLOSE &&
                         event->window.windowID == mainWindowId;
    if (event->type == SDL_QUIT || closing) closeWanted = true;
    return 1;
}

class SdlWindow : public Window {
  public:
    explicit SdlWindow(SDL_Window* created) : window(created) {
        mainWindowId = SDL_GetWindowID(window);
        closeWanted = false;
        SDL_AddEventWatch(WatchForClose, nullptr);
        WatchDisplay(window);
        UseSdlMessageBoxes(window);
        SetMainNativeWindow(window);
        SDL_StartTextInput();
    }

    ~SdlWindow() override {
        SDL_DelEventWatch(WatchForClose, nullptr);
        UseSdlMessageBoxes(nullptr);
        SetMainNativeWindow(nullptr);
        mainWindowId = 0;
        // SDL would also close a connection of its own, which nobody watches: the X library would end the process
        // there.
        if (IsDisplayLost()) return;
        SDL_DestroyWindow(window);
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }

    void Show() override { SDL_ShowWindow(window); }

    bool TakeMessage(WindowMessage& out) override {
        SDL_Event event;
        while (waiting.empty()) {
            if (IsDisplayLost() || !SDL_PollEvent(&event)) return false;
            Translate(event);
        }
        out = waiting.front();
        waiting.pop_front();
        return true;
    }

    void DefaultProcedure(const WindowMessage& message) override {
        if (message.kind == MessageKind::SystemCommand && message.command == commandMinimise)
            SDL_MinimizeWindow(window);
        if (message.kind != MessageKind::Close || destroyed) return;
        // The system's window itself stays until this object goes, because the graphics device still draws on it.
        SDL_HideWindow(window);
        destroyed = true;
        WindowMessage gone;
        gone.kind = MessageKind::Destroy;
        waiting.push_front(gone);
    }

    void PostQuit(int code) override {
        WindowMessage quit;
        quit.kind = MessageKind::Quit;
        quit.code = code;
        waiting.push_back(quit);
    }

    [[nodiscard]] bool CloseWanted() const override {
        if (SDL_ThreadID() == ownerThread && !IsDisplayLost()) SDL_PumpEvents();
        return closeWanted || IsDisplayLost();
    }
    [[nodiscard]] bool DisplayLost() const override { return IsDisplayLost(); }

    void ShowCursor(bool show) override { SDL_ShowCursor(show ? SDL_ENABLE : SDL_DISABLE); }
    void* NativeHandle() override { return window; }

  private:
    static constexpr std::uint32_t commandMinimise = 0xF020;

    void Translate(const SDL_Event& event);
    void TranslateWindowEvent(const SDL_WindowEvent& event);
    void TranslateKey(const SDL_KeyboardEvent& event);

    void Push(MessageKind kind) {
        WindowMessage message;
        message.kind = kind;
        waiting.push_back(message);
    }
    void PushCharacter(unsigned char character) {
        WindowMessage message;
        message.kind = MessageKind::Character;
        message.character = character;
        waiting.push_back(message);
    }
    void PushMouse(MessageKind kind, int x, int y) {
        WindowMessage message;
        message.kind = kind;
        message.x = static_cast<std::int16_t>(x);
        message.y = static_cast<std::int16_t>(y);
        waiting.push_back(message);
    }
    void PushActivate(bool active) {
        WindowMessage message;
        message.kind = MessageKind::Activate;
        message.active = active;
        waiting.push_back(message);
    }

    SDL_Window* window;
    const SDL_threadID ownerThread = SDL_ThreadID();
    bool destroyed = false;
    std::deque<WindowMessage> waiting;
};

void SdlWindow::Translate(const SDL_Event& event) {
    switch (event.type) {
        case SDL_QUIT:
            Push(MessageKind::Close);
            break;
        case SDL_WINDOWEVENT:
            if (event.window.windowID == mainWindowId) TranslateWindowEvent(event.window);
            break;
        case SDL_TEXTINPUT:
            for (const char character : WindowsBytesOf(event.text.text))
                PushCharacter(static_cast<unsigned char>(character));
            break;
        case SDL_KEYDOWN:
            TranslateKey(event.key);
            break;
        case SDL_MOUSEMOTION:
            PushMouse(MessageKind::MouseMove, event.motion.x, event.motion.y);
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP: {
            const bool down = event.type == SDL_MOUSEBUTTONDOWN;
            if (event.button.button == SDL_BUTTON_LEFT)
                PushMouse(down ? MessageKind::LeftDown : MessageKind::LeftUp, event.button.x, event.button.y);
            if (event.button.button == SDL_BUTTON_RIGHT)
                PushMouse(down ? MessageKind::RightDown : MessageKind::RightUp, event.button.x, event.button.y);
            break;
        }
        case SDL_MOUSEWHEEL: {
            const int away = event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.wheel.y : event.wheel.y;
            WindowMessage message;
            message.kind = MessageKind::Wheel;
            message.wheelDelta = static_cast<std::int16_t>(120 * away);
            waiting.push_back(message);
            break;
        }
        default:
            break;
    }
}

void SdlWindow::TranslateWindowEvent(const SDL_WindowEvent& event) {
    switch (event.event) {
        case SDL_WINDOWEVENT_CLOSE:
            Push(MessageKind::Close);
            break;
        case SDL_WINDOWEVENT_FOCUS_GAINED:
            PushActivate(true);
            break;
        case SDL_WINDOWEVENT_FOCUS_LOST:
            PushActivate(false);
            break;
        case SDL_WINDOWEVENT_EXPOSED:
            Push(MessageKind::Paint);
            break;
        default:
            break;
    }
}

void SdlWindow::TranslateKey(const SDL_KeyboardEvent& event) {
    const SDL_Scancode scancode = event.keysym.scancode;
    WindowMessage message;
    message.kind = MessageKind::KeyDown;
    message.scanCode = ScanCodeOf(scancode);
    message.extended = IsExtendedKey(scancode);
    waiting.push_back(message);
    // SDL's text input leaves out the control characters that these keys type.
    switch (scancode) {
        case SDL_SCANCODE_BACKSPACE:
            PushCharacter(8);
            break;
        case SDL_SCANCODE_TAB:
            PushCharacter(9);
            break;
        case SDL_SCANCODE_RETURN:
        case SDL_SCANCODE_KP_ENTER:
            PushCharacter(13);
            break;
        case SDL_SCANCODE_ESCAPE:
            PushCharacter(27);
            break;
        default:
            break;
    }
}

unsigned DesktopDepth() {
    SDL_DisplayMode mode;
    if (SDL_GetDesktopDisplayMode(0, &mode) != 0) return 0;
    const unsigned bits = SDL_BITSPERPIXEL(mode.format);
    return bits == 24 ? 32 : bits;  // 24 bits of colour are kept in 32
}

}  // namespace

std::unique_ptr<Window> CreateMainWindow(const WindowRequest& request, WindowFailure& failure) {
    failure = WindowFailure::Class;
    SDL_setenv("SDL_VIDEO_X11_WMCLASS", request.className.c_str(), 0);
    SDL_SetHint(SDL_HINT_APP_NAME, request.className.c_str());
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    SDL_SetMainReady();
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return nullptr;
    SetDesktopBitsPerPixelQuery(DesktopDepth);

    failure = WindowFailure::Window;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    const auto create = [&request](Uint32 flags) {
        return SDL_CreateWindow(request.title.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, request.width,
                                request.height, flags);
    };
    SDL_Window* window = create(SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    // On a display without OpenGL a plain window serves until the hardware check has told the user.
    if (!window) window = create(SDL_WINDOW_HIDDEN);
    if (!window) {
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
        return nullptr;
    }
    failure = WindowFailure::None;
    return std::make_unique<SdlWindow>(window);
}

}  // namespace platform
