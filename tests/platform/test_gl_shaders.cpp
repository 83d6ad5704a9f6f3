// Programmed stages on the OpenGL device: matrices, semantics, constants, and a fixed-function stage beside a
// programmed one.

#include "platform/GlFixture.h"

namespace glfixture {

using namespace platform;

namespace {

constexpr const char* passThrough =
    "float4x4 M; struct O { float4 p : POSITION; float4 c : COLOR0; float2 t : TEXCOORD0; };"
    "O main(float4 p : POSITION, float4 c : COLOR, float2 t : TEXCOORD0)"
    "{ O o; o.p = mul(p, M); o.c = c; o.t = t; return o; }";

}  // namespace

// Each program asks one element of an asymmetric matrix for its colour, so that a transposition shows.
TEST_F(GlDevice, WritesMatricesBothWaysInBothPackings) {
    float values[16];
    for (unsigned at = 0; at < 16; ++at)
        values[at] = static_cast<float>(at) / 255.0F;
    struct Row {
        const char* declaration;
        const char* element;
        bool transpose;
        unsigned expected;
    };
    const Row rows[] = {
        {"float4x4 M;", "M[1][2]", false, 6},
        {"float4x4 M;", "M[1][2]", true, 9},
        {"row_major float4x4 M;", "M[1][2]", false, 6},
        {"row_major float4x4 M;", "M[1][2]", true, 9},
        {"float4x3 M;", "M[3][1]", false, 13},
        {"float3x4 M;", "M[1][3]", true, 13},
        {"float4x4 M;", "mul(float4(0,1,0,0), M).z", false, 6},
        {"float4x4 M;", "mul(M, float4(0,0,1,0)).y", false, 6},
        {"float4x4 M[3];", "M[0]._m12", false, 6},
    };
    for (const Row& row : rows) {
        const auto shader = Shader(
            std::string(row.declaration) + "float4 main() : COLOR { return float4(" + row.element + ", 0, 0, 1); }",
            "ps_2_0");
        const int constant = shader->FindConstant("M[0]");
        ASSERT_GE(constant, 0) << row.declaration;
        shader->SetMatrix(constant, values, row.transpose);
        device->SetFragmentShader(shader.get());
        Draw(Quad(0, 0, 64, 48));
        Read();
        EXPECT_EQ(At(10, 10) >> 16 & 255, row.expected) << row.declaration << row.element << row.transpose;
    }
}

TEST_F(GlDevice, DrawsWithEveryPairOfStages) {
    const auto vertex = Shader(passThrough, "vs_2_0");
    const auto fragment = Shader(
        "sampler s; float4 main(float4 c : COLOR, float4 t : TEXCOORD0) : COLOR"
        "{ return tex2D(s, t.xy).bgra * c; }",
        "ps_2_0");
    const auto picture1 = Texture(PixelFormat::A8R8G8B8, 1, 1, {0xFFFF8000}, 4);
    device->SetTexture(0, picture1.get());
    const DeviceMatrix matrix = Pixels(0, 0, pictureWidth, pictureHeight);
    vertex->SetMatrix(vertex->FindConstant("M"), matrix.data(), false);
    struct Row {
        DeviceShader* vertex;
        DeviceShader* fragment;
        std::uint32_t expected;
    };
    for (const Row& row : {Row{nullptr, nullptr, 0xFFFF0000}, Row{vertex.get(), nullptr, 0xFFFF0000},
                           Row{nullptr, fragment.get(), 0xFF000000}, Row{vertex.get(), fragment.get(), 0xFF000000}}) {
        ClearTo(blue);
        device->SetVertexShader(row.vertex);
        device->SetFragmentShader(row.fragment);
        Draw(Quad(4, 6, 12, 10, 0, red));
        Read();
        EXPECT_EQ(RegionOf(row.expected), (Region{32, 4, 6, 11, 9}))
            << (row.vertex != nullptr) << (row.fragment != nullptr);
    }
}

// What one stage leaves out and the other reads: colours are white, coordinates zero.
TEST_F(GlDevice, FillsWhatAStageLeavesOut) {
    const auto bare = Shader("float4x4 M; float4 main(float4 p : POSITION) : POSITION { return mul(p, M); }", "vs_2_0");
    const DeviceMatrix matrix = Pixels(0, 0, pictureWidth, pictureHeight);
    bare->SetMatrix(bare->FindConstant("M"), matrix.data(), false);
    const auto reads = Shader(
        "float4 main(float2 t : TEXCOORD3, float4 c : COLOR1) : COLOR"
        "{ return float4(t, 0.2, 1) * c; }",
        "ps_2_0");
    device->SetVertexShader(bare.get());
    Draw(Quad(0, 0, 32, 48, 0, red));
    device->SetFragmentShader(reads.get());
    Draw(Quad(32, 0, 64, 48, 0, red));
    Read();
    EXPECT_EQ(At(10, 10), white) << "the fixed fragment stage";
    EXPECT_EQ(At(50, 10), 0xFF000033) << "a programmed one";
}

TEST_F(GlDevice, KeepsConstantsByStageUntilTheyChange) {
    const std::string source =
        "float4 tint; float list[3]; float4 rows[2]; float given = 0.2; float4 main() : COLOR"
        "{ return float4(tint.x, list[2], rows[1].z + given, 1); }";
    const auto first = Shader(source, "ps_2_0");
    const auto second = Shader(source, "ps_2_0");
    const float tint[4] = {1, 0, 0, 0};
    const float list[3] = {0, 0, 0.4F};
    const float rows[2][4] = {{9, 9, 9, 9}, {0, 0, 0.6F, 0}};
    EXPECT_EQ(first->FindConstant("none"), -1);
    first->SetFloats(first->FindConstant("tint"), tint, 4);
    first->SetFloats(first->FindConstant("list"), list, 3);
    first->SetVectors(first->FindConstant("rows"), rows, 2);
    first->SetFloats(99, tint, 4);
    const auto shows = [&](const std::unique_ptr<DeviceShader>& shader) {
        device->SetFragmentShader(shader.get());
        Draw(Quad(0, 0, 64, 48));
        Read();
        return At(5, 5);
    };
    EXPECT_EQ(shows(first), 0xFFFF66CC);
    EXPECT_EQ(shows(second), 0xFF000033);
    first->SetFloats(first->FindConstant("given"), tint + 1, 1);
    EXPECT_EQ(shows(first), 0xFFFF6699);
}

// A stage that goes away while it is bound leaves the fixed function in its place.
TEST_F(GlDevice, ForgetsStagesThatGo) {
    for (int round = 0; round < 3; ++round) {
        auto shader = Shader("float4 main() : COLOR { return float4(0, 1, 0, 1); }", "ps_2_0");
        device->SetFragmentShader(shader.get());
        Draw(Quad(0, 0, 64, 48, 0, red));
        Read();
        EXPECT_EQ(At(5, 5), green);
        shader.reset();
        Draw(Quad(0, 0, 64, 48, 0, red));
        Read();
        EXPECT_EQ(At(5, 5), red);
    }
}

}  // namespace glfixture
