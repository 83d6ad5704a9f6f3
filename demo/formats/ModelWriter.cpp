#include "demo/formats/ModelWriter.h"

#include <charconv>
#include <cmath>
#include <initializer_list>

namespace demo {

namespace {

using Corner = std::array<float, 3>;

// The shortest digits that give the number back, without a "+", which the reader refuses.
std::string Number(float value) {
    char digits[64];
    const auto [end, result] = std::to_chars(digits, digits + sizeof digits, value + 0.0F);
    std::string text(digits, end);
    std::erase(text, '+');
    return text;
}

template <typename Numbers>
std::string NumberList(const Numbers& numbers) {
    std::string text;
    for (const float number : numbers)
        text += Number(number) + " ";
    return text;
}

std::string ChunkText(const ModelChunk& chunk) {
    std::string text = " Chunk {\n";
    for (const ModelTexture& texture : chunk.textures)
        text += "  TextureB { " + std::to_string(texture.stage) + " " + texture.fileName +
                (texture.mipmaps ? " }\n" : " 0 }\n");
    text += "  Vertices { PNT2 " + std::to_string(chunk.vertices.size()) + "\n";
    for (const ModelVertex& v : chunk.vertices)
        text += "   " +
                NumberList(std::initializer_list<float>{v.x, v.y, v.z, v.normalX, v.normalY, v.normalZ, v.u, v.v}) +
                "\n";
    text += "  }\n  Indices { " + std::to_string(chunk.indices.size());
    for (std::size_t i = 0; i < chunk.indices.size(); ++i)
        text += (i % 12 == 0 ? "\n   " : " ") + std::to_string(chunk.indices[i]);
    return text + "\n  }\n }\n";
}

std::string BoneText(const ModelBone& bone) {
    std::string text = "Bone {\n Name { " + bone.name + " }\n";
    if (!bone.mesh.empty()) text += " Mesh { " + bone.mesh + " }\n";
    for (const std::string& child : bone.children)
        text += " Child { " + child + " }\n";
    return text + " ConnectPos { " + NumberList(bone.position) + "}\n ConnectRot { " + NumberList(bone.rotation) +
           "}\n}\n";
}

// FNV-1a, cut to the 24 bits that a float holds, as a number above 0 and at most 1.
float IdentifierOf(const std::string& text) {
    std::uint32_t hash = 2166136261U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return static_cast<float>((hash >> 8) + 1U) / 16777216.0F;
}

Corner Minus(const Corner& a, const Corner& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

}  // namespace

void ModelChunk::AddQuad(const std::array<Corner, 4>& corners) {
    // Left-handed, as the world is on the screen.
    const Corner a = Minus(corners[1], corners[0]);
    const Corner b = Minus(corners[2], corners[0]);
    Corner normal = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    const float length = std::hypot(normal[0], normal[1], normal[2]);
    for (float& part : normal)
        part /= length;
    const auto first = static_cast<std::uint16_t>(vertices.size());
    constexpr float places[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (std::size_t i = 0; i < corners.size(); ++i)
        vertices.push_back(
            {corners[i][0], corners[i][1], corners[i][2], normal[0], normal[1], normal[2], places[i][0], places[i][1]});
    for (const int step : {0, 1, 2, 0, 2, 3})
        indices.push_back(static_cast<std::uint16_t>(first + step));
}

void ModelChunk::AddBox(const Corner& low, const Corner& high) {
    const auto corner = [&](int x, int y, int z) {
        return Corner{x ? high[0] : low[0], y ? high[1] : low[1], z ? high[2] : low[2]};
    };
    AddQuad({corner(1, 0, 1), corner(0, 0, 1), corner(0, 0, 0), corner(1, 0, 0)});  // towards -y
    AddQuad({corner(0, 1, 1), corner(1, 1, 1), corner(1, 1, 0), corner(0, 1, 0)});  // +y
    AddQuad({corner(0, 0, 1), corner(0, 1, 1), corner(0, 1, 0), corner(0, 0, 0)});  // -x
    AddQuad({corner(1, 1, 1), corner(1, 0, 1), corner(1, 0, 0), corner(1, 1, 0)});  // +x
    AddQuad({corner(0, 0, 1), corner(1, 0, 1), corner(1, 1, 1), corner(0, 1, 1)});  // up
    AddQuad({corner(1, 0, 0), corner(0, 0, 0), corner(0, 1, 0), corner(1, 1, 0)});  // down
}

std::string WriteModel(const ModelDrawing& model, float randomID) {
    std::string text;
    for (const ModelMesh& mesh : model.meshes) {
        text += "Mesh {\n Name { " + mesh.name + " }\n";
        for (const ModelChunk& chunk : mesh.chunks)
            text += ChunkText(chunk);
        text += "}\n";
    }
    for (const ModelBone& bone : model.bones)
        text += BoneText(bone);
    return "RandomID { " + Number(randomID == 0.0F ? IdentifierOf(text) : randomID) + " }\n" + text;
}

}  // namespace demo
