#include "platform/gl/GlCheck.h"

#include <epoxy/gl.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "platform/gl/OpenGl.h"

namespace platform {

namespace {

void WriteToStandardError(const char* place, const std::string& error) {
    std::fprintf(stderr, "OpenGL error in %s: %s\n", place, error.c_str());
}

std::atomic<OpenGlErrorSink> errorSink{WriteToStandardError};

const char* NameOf(GLenum error) {
    switch (error) {
        case GL_INVALID_ENUM:
            return "invalid enumeration";
        case GL_INVALID_VALUE:
            return "invalid value";
        case GL_INVALID_OPERATION:
            return "invalid operation";
        case GL_OUT_OF_MEMORY:
            return "out of memory";
        case GL_INVALID_FRAMEBUFFER_OPERATION:
            return "invalid framebuffer operation";
        default:
            return "unknown error";
    }
}

}  // namespace

OpenGlErrorSink SetOpenGlErrorSink(OpenGlErrorSink sink) {
    return errorSink.exchange(sink ? sink : WriteToStandardError);
}

namespace gl {

void ReportError(const char* place, const char* text) {
    errorSink.load()(place, text);
}

bool CheckErrors(const char* place) {
    // A lost context may report errors without end.
    bool fine = true;
    for (int count = 0; count < 16; ++count) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR) return fine;
        fine = false;
        ReportError(place, NameOf(error));
    }
    return false;
}

bool ChecksEachDraw() {
    static const bool wanted = std::getenv("KELVANE_GL_CHECK") != nullptr;
    return wanted;
}

}  // namespace gl

}  // namespace platform
