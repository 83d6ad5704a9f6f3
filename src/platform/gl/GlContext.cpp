#include "platform/gl/GlContext.h"

#include <SDL.h>
#include <epoxy/gl.h>

#include "platform/gl/GlCheck.h"

namespace platform::gl {

namespace {

// Never destroyed by the end of the process: SDL and the driver may be gone by then.
std::shared_ptr<Context>& Waiting() {
    static auto* waiting = new std::shared_ptr<Context>;
    return *waiting;
}

int BitsOf(GLenum buffer, GLenum what) {
    // Asking for the size of a buffer that is not there is an error in OpenGL.
    GLint type = GL_NONE;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, buffer, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
    if (type == GL_NONE) return 0;
    GLint value = 0;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, buffer, what, &value);
    return value;
}

}  // namespace

void SetContextAttributes() {
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
    // SDL passes this on only where the driver knows it.
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_RESET_NOTIFICATION, SDL_GL_CONTEXT_RESET_LOSE_CONTEXT);
}

Context::Context(SDL_Window* onWindow, bool owns)
    : window(onWindow), windowId(SDL_GetWindowID(onWindow)), ownsWindow(owns) {}

Context::~Context() {
    if (handle) SDL_GL_DeleteContext(handle);
    if (ownsWindow) SDL_DestroyWindow(window);
}

bool Context::Make() {
    SetContextAttributes();
    handle = SDL_GL_CreateContext(window);
    if (!handle) {
        ReportError("making a context", SDL_GetError());
        return false;
    }
    if (!MakeCurrent() || epoxy_gl_version() < 33) {
        ReportError("making a context", "OpenGL 3.3 is not available");
        SDL_GL_DeleteContext(handle);
        handle = nullptr;
        return false;
    }
    GLint strategy = GL_NO_RESET_NOTIFICATION;
    const bool knowsResets = epoxy_gl_version() >= 45 || epoxy_has_gl_extension("GL_ARB_robustness") ||
                             epoxy_has_gl_extension("GL_KHR_robustness");
    if (knowsResets) glGetIntegerv(GL_RESET_NOTIFICATION_STRATEGY, &strategy);
    reportsResets = strategy == GL_LOSE_CONTEXT_ON_RESET;
    bits = {BitsOf(GL_BACK_LEFT, GL_FRAMEBUFFER_ATTACHMENT_RED_SIZE),
            BitsOf(GL_BACK_LEFT, GL_FRAMEBUFFER_ATTACHMENT_GREEN_SIZE),
            BitsOf(GL_BACK_LEFT, GL_FRAMEBUFFER_ATTACHMENT_BLUE_SIZE),
            BitsOf(GL_BACK_LEFT, GL_FRAMEBUFFER_ATTACHMENT_ALPHA_SIZE),
            BitsOf(GL_DEPTH, GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE),
            BitsOf(GL_STENCIL, GL_FRAMEBUFFER_ATTACHMENT_STENCIL_SIZE)};
    CheckErrors("examining the framebuffer");
    return true;
}

std::shared_ptr<Context> Context::Of(SDL_Window* window) {
    if (!window) return nullptr;
    // Window numbers, unlike addresses, are not used twice.
    std::shared_ptr<Context>& waiting = Waiting();
    if (waiting && waiting->windowId == SDL_GetWindowID(window) && waiting->handle) return waiting;
    waiting.reset();
    std::shared_ptr<Context> made(new Context(window, false));
    if (!made->Make()) return nullptr;
    waiting = made;
    return made;
}

std::shared_ptr<Context> Context::ForQuestions() {
    if (MainNativeWindow()) return Of(static_cast<SDL_Window*>(MainNativeWindow()));
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return nullptr;
    SetContextAttributes();
    SDL_Window* hidden = SDL_CreateWindow("", 0, 0, 64, 64, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    if (!hidden) return nullptr;
    std::shared_ptr<Context> made(new Context(hidden, true));
    return made->Make() ? made : nullptr;
}

void Context::ForgetWaiting() {
    Waiting().reset();
}

bool Context::IsCurrent() const {
    return handle && SDL_GL_GetCurrentContext() == handle;
}

bool Context::MakeCurrent() {
    return handle && (IsCurrent() || SDL_GL_MakeCurrent(window, handle) == 0);
}

bool Context::Renew() {
    if (handle) SDL_GL_DeleteContext(handle);
    handle = nullptr;
    return Make();
}

bool Context::WasReset() const {
    return reportsResets && glGetGraphicsResetStatus() != GL_NO_ERROR;
}

void Context::DrawableSize(int& width, int& height) const {
    SDL_GL_GetDrawableSize(window, &width, &height);
}

}  // namespace platform::gl
