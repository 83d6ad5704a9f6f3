#pragma once
// A small picture drawn by the OpenGL device on a window, and the matrix and vertices to draw with.

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/GraphicsDevice.h"
#include "platform/Window.h"

namespace glfixture {

inline constexpr unsigned pictureWidth = 64;
inline constexpr unsigned pictureHeight = 48;

constexpr std::uint32_t black = 0xFF000000;
constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t white = 0xFFFFFFFF;

struct Vertex {
    float x = 0;
    float y = 0;
    float z = 0;
    std::uint32_t colour = white;
    float u = 0;
    float v = 0;
};

// Pixels from the top left corner of a rectangle, y down, z negated.
platform::DeviceMatrix Pixels(float x, float y, float width, float height);
// Two triangles, clockwise on screen, with the texture spread over them.
std::vector<Vertex> Quad(float left, float top, float right, float bottom, float z = 0, std::uint32_t colour = white);

class GlDevice : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // Everything plain: no culling, depth, blending or alpha test, pixel coordinates, a black picture.
    void Plain();
    template <typename Value>
    void Set(platform::RenderState state, Value value) {
        device->SetRenderState(state, static_cast<std::uint32_t>(value));
    }
    void ClearTo(std::uint32_t colour) { device->Clear(true, true, false, colour, 1.0F, 0); }
    void Draw(const std::vector<Vertex>& vertices, platform::Primitive primitive = platform::Primitive::Triangles);
    // Reads the picture; At answers from it.
    void Read();
    [[nodiscard]] std::uint32_t At(unsigned x, unsigned y) const { return picture[y * pictureWidth + x]; }
    // How many pixels of the picture have the colour, and the smallest rectangle with all of them.
    struct Region {
        unsigned count = 0;
        unsigned left = 0;
        unsigned top = 0;
        unsigned right = 0;  // the last column and row inside
        unsigned bottom = 0;
        bool operator==(const Region&) const = default;
    };
    [[nodiscard]] Region RegionOf(std::uint32_t colour) const;
    std::unique_ptr<platform::DeviceTexture> Texture(platform::PixelFormat format, unsigned width, unsigned height,
                                                     const std::vector<std::uint32_t>& texels, unsigned bytesPerTexel);
    std::unique_ptr<platform::DeviceShader> Shader(const std::string& source, const std::string& profile);

    std::unique_ptr<platform::Window> window;
    std::unique_ptr<platform::GraphicsInterface> graphics;
    std::unique_ptr<platform::GraphicsDevice> device;
    std::unique_ptr<platform::VertexLayout> layout;
    platform::PresentParameters parameters;
    std::vector<std::uint32_t> picture;
};

}  // namespace glfixture
