// The least that shows something: an 800 x 600 window, an OpenGL 3.3 context, one linked program, one cleared frame;
// with an argument also a triangle drawn with the program, because drivers finish a program only when it draws.
// bench_start compares the client's start with both.

#include <SDL.h>
#include <epoxy/gl.h>

namespace {

GLuint Compile(GLenum kind, const char* source) {
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

bool LinkProgram() {
    const GLuint program = glCreateProgram();
    glAttachShader(program, Compile(GL_VERTEX_SHADER,
                                    "#version 330 core\nin vec4 place; uniform mat4 transform;\n"
                                    "void main() { gl_Position = transform * place; }\n"));
    glAttachShader(program, Compile(GL_FRAGMENT_SHADER,
                                    "#version 330 core\nout vec4 colour; uniform vec4 tint;\n"
                                    "void main() { colour = tint; }\n"));
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    glUseProgram(program);
    return linked == GL_TRUE;
}

void DrawTriangle() {
    static constexpr float corners[] = {-0.5F, -0.5F, 0.5F, -0.5F, 0.0F, 0.5F};
    GLuint names[2] = {};
    glGenVertexArrays(1, &names[0]);
    glBindVertexArray(names[0]);
    glGenBuffers(1, &names[1]);
    glBindBuffer(GL_ARRAY_BUFFER, names[1]);
    glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(0);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

}  // namespace

int main(int argumentCount, char**) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
    SDL_Window* window = SDL_CreateWindow("bare", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, 800, 600,
                                          SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    if (!window) return 1;
    SDL_ShowWindow(window);
    if (!SDL_GL_CreateContext(window) || !LinkProgram()) return 1;
    for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
    }
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (argumentCount > 1) DrawTriangle();
    SDL_GL_SwapWindow(window);
    return 0;
}
