#include "graphics/model/MbmReader.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "graphics/model/GBMesh_BMBM.h"
#include "platform/Caps.h"

namespace G {

struct MbmReader::VertexType {
    const char* name;
    DXG::VertexFormat format;
    unsigned numbersPerVertex;  // in the text
};

namespace {

// Element types and uses of vertex formats (DXGVert.h).
constexpr std::uint32_t twoFloats = 1, threeFloats = 2, packedColour = 4;
constexpr std::uint32_t position = 0, normal = 1, colour = 2, textureCoordinates = 3;

constexpr float leastNormal = 0.1F;  // sum of the absolute values
constexpr float leastScale = 0.998F;
constexpr float mostScale = 1.002F;

// The low 8 bits of the channel times 255, cut towards zero; a number that no integer holds gives 0.
std::uint32_t ColourChannel(float value) {
    constexpr float mostWhole = 9.0e18F;
    const float scaled = value * 255.0F;
    return std::abs(scaled) < mostWhole ? static_cast<std::uint32_t>(static_cast<std::int64_t>(scaled)) & 0xFFU : 0;
}

Mat3 Transposed(const Mat3& matrix) {
    const auto& m = matrix.m;
    return {{m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]}};
}

bool HasScale(const Mat3& rotation) {
    for (std::size_t row = 0; row < 9; row += 3) {
        const float length = Length({rotation.m[row], rotation.m[row + 1], rotation.m[row + 2]});
        if (length < leastScale || length > mostScale) return true;
    }
    return false;
}

}  // namespace

MbmReader::MbmReader(const std::string& modelName, std::string modelText, bool readable, bool weld, bool triedCache,
                     ModelHeader& out)
    : fileName(modelName),
      text(std::move(modelText)),
      readableMeshes(readable),
      optimize(weld),
      cacheTried(triedCache),
      header(out),
      cachePath(MeshCachePath(modelName)),
      messages(caps::repeatedMessages),
      tokens(text, messages) {}

MbmReader::~MbmReader() {
    // Each frees what is below it, so they are told apart first.
    std::vector<Bone*> tops;
    for (const BoneRecord& record : bones)
        if (!record.bone->Parent() && record.bone != header.topBone) tops.push_back(record.bone);
    for (Bone* bone : tops)
        FreeBone(bone);
}

void MbmReader::AddToErrorStack(const std::string& entry) {
    if (tokens.HasError() && errorStack.size() < caps::modelErrorStackBytes) errorStack += entry;
}

bool MbmReader::CanHaveAnother(std::size_t count, std::size_t cap, const char* what) {
    if (count < cap) return true;
    tokens.Fail("Error parsing mesh: more than " + std::to_string(cap) + " " + what + "\n");
    return false;
}

bool MbmReader::ReadConstructs() {
    while (true) {
        const std::string_view keyword = tokens.NextToken();
        if (tokens.AtEnd()) return !tokens.HasError();
        if (firstConstruct && keyword != "RandomID")
            Tell("Warning: .mbm file (" + fileName +
                 "), first construct is not RandomID.  Binary version will not be cached.  Quit being lazy if you want "
                 "the game to load faster...\n");
        if (!ReadConstruct(keyword) || fromCache || tokens.HasError()) return !tokens.HasError();
        firstConstruct = false;
    }
}

bool MbmReader::ReadConstruct(std::string_view keyword) {
    if (keyword == "Mesh") return ReadMesh();
    if (keyword == "Bone") return ReadBone();
    if (keyword == "RandomID" && firstConstruct) return ReadRandomID();
    if (keyword == "RandomID")
        Tell("Warning: .mbm file (" + fileName + "), RandomID is only valid as first construct in the file.\n");
    else
        Tell("Warning parsing mesh(" + fileName + "): unrecognized base construct: " + std::string(keyword) + "\n");
    tokens.SkipScope();
    return true;
}

bool MbmReader::ReadRandomID() {
    if (!tokens.ExpectOpen()) return false;
    hasRandomID = true;
    header.randomID = tokens.ReadFloat();
    messages.Flush();
    fromCache = !cacheTried && LoadCacheOf(fileName, readableMeshes, header);
    if (!fromCache) tokens.ExpectClose();
    return true;
}

std::string MbmReader::ReadName() {
    tokens.ExpectOpen();
    std::string name(tokens.NextToken());
    tokens.ExpectClose();
    return name;
}

bool MbmReader::ReadMesh() {
    if (!tokens.ExpectOpen() || !CanHaveAnother(meshes.size(), caps::modelMeshes, "meshes")) return false;
    MeshRecord& mesh = meshes.emplace_back().MutableMesh();
    while (!tokens.AtBrace() && !tokens.HasEnded()) {
        const std::string keyword(tokens.NextToken());
        if (keyword == "Name") {
            mesh.name = ReadName();
        } else if (keyword == "Chunk") {
            if (!ReadChunk(mesh)) return false;
        } else {
            Tell("Warning parsing mesh: unknown Mesh sub-construct: " + keyword + "\n");
            tokens.SkipScope();
        }
        AddToErrorStack(keyword + " Mesh(name=" + mesh.name + ")    ");
    }
    tokens.ExpectClose();
    return true;
}

bool MbmReader::ReadChunk(MeshRecord& mesh) {
    if (!tokens.ExpectOpen() || !CanHaveAnother(chunkCount++, caps::modelChunks, "chunks")) return false;
    MeshChunk& chunk = mesh.chunks.emplace_back();
    while (!tokens.AtBrace() && !tokens.AtEnd()) {
        const std::string keyword(tokens.NextToken());
        if (keyword == "TextureB" || keyword == "TextureC") {
            ReadTexture(keyword, chunk);
        } else if (keyword == "Indices") {
            ReadIndices(mesh, chunk);
        } else if (keyword == "Vertices") {
            ReadVertices(chunk);
        } else {
            Tell("Warning parsing mesh: unknown Mesh.Chunk sub-construct: " + keyword + "\n");
            tokens.SkipScope();
        }
        AddToErrorStack(keyword + " ");
    }
    tokens.ExpectClose();
    return true;
}

void MbmReader::ReadTexture(std::string_view keyword, MeshChunk& chunk) {
    tokens.ExpectOpen();
    const int stage = tokens.ReadInteger();
    const std::string folder = DirectoryOf(fileName);
    const std::string name(tokens.NextToken());
    const bool mipmaps = tokens.AtBrace() || tokens.ReadInteger() != 0;
    tokens.ExpectClose();
    if (stage != 0 && stage != 1)
        return Tell("Bad texture stage in " + std::string(keyword) + " for texture " + folder + name + ": " +
                    std::to_string(stage) + "\n");
    if (!CanHaveAnother(textureCount++, caps::modelTextures, "textures")) return;
    messages.Flush();
    DXG::Texture& texture = stage == 0 ? chunk.texture0 : chunk.texture1;
    texture.Release();
    const std::string path = ContainedPath(folder, name);
    if (path.empty() || !texture.Load(path, DXG::TextureType::AsFile, mipmaps, true))
        Tell("Note: mesh(" + fileName + ") failed to load texture: " + folder + name + "\n");
}

bool MbmReader::CanHoldList(int count, std::size_t numbersEach, const char* list, const char* what) {
    if (count >= 0 && static_cast<std::size_t>(count) * numbersEach <= tokens.NumbersLeft()) return true;
    const std::string message = list + std::to_string(count) + what + ", which the file does not hold.\n";
    if (count < 0)
        Tell(message);
    else
        tokens.Fail(message);
    return false;
}

void MbmReader::ReadIndices(const MeshRecord& mesh, MeshChunk& chunk) {
    tokens.ExpectOpen();
    const int count = tokens.ReadInteger();
    const bool fits = CanHoldList(count, 1, "Bad.. index list of ", " indices");
    messages.Flush();
    if (!fits || !chunk.indexBuffer.Create(static_cast<unsigned>(count), false, false)) {
        tokens.DropToBrace();
        tokens.ExpectClose();
        return;
    }
    DXG::BufferLock lock = chunk.indexBuffer.Lock();
    if (!lock) {
        ReportWithStack("could not lock IB, trying to load mesh.\n");
        tokens.DropToBrace();
    }
    auto* indices = static_cast<std::uint16_t*>(lock.Data());
    for (int i = 0; lock && i < count; ++i) {
        const int index = tokens.ReadInteger();
        if (index < 0 || index > 0xFFFF)
            Tell(
                "Bad.. loading index list from mesh.. an index is out of range (must be 0 to 65535).\n"
                "  -index value: " +
                std::to_string(index) + "\n" + "  -curMesh name: " + mesh.name + "\n");
        indices[i] = static_cast<std::uint16_t>(index);
    }
    lock.Unlock();
    tokens.ExpectClose();
}

void MbmReader::ReadVertices(MeshChunk& chunk) {
    static const VertexType types[] = {
        {"PNC", {{threeFloats, position}, {threeFloats, normal}, {packedColour, colour}}, 10},
        {"PNT2", {{threeFloats, position}, {threeFloats, normal}, {twoFloats, textureCoordinates}}, 8},
    };
    tokens.ExpectOpen();
    const std::string typeName(tokens.NextToken());
    const VertexType* type = nullptr;
    for (const VertexType& known : types)
        if (typeName == known.name) type = &known;
    if (!type) Tell("Unsupported vertex type in Mesh.Chunk.Vertices: " + typeName + "\n");
    const int count = tokens.ReadInteger();
    const bool fits = type && CanHoldList(count, type->numbersPerVertex, "Bad.. vertex list of ", " vertices");
    messages.Flush();
    const unsigned stride = fits ? DXG::StrideOf(type->format) : 0;
    if (!fits || !chunk.vertexBuffer.Create(static_cast<unsigned>(count), type->format, stride, false, false)) {
        tokens.DropToBrace();
        tokens.ExpectClose();
        return;
    }
    DXG::BufferLock lock = chunk.vertexBuffer.Lock(false);
    if (!lock) {
        ReportWithStack("could not lock VB, trying to load mesh.\n");
        tokens.DropToBrace();
    }
    auto* out = static_cast<unsigned char*>(lock.Data());
    for (int i = 0; lock && i < count; ++i, out += stride)
        ReadVertex(*type, out);
    lock.Unlock();
    tokens.ExpectClose();
}

void MbmReader::ReadVertex(const VertexType& type, unsigned char* out) {
    float numbers[10];
    for (unsigned i = 0; i < type.numbersPerVertex; ++i)
        numbers[i] = tokens.ReadFloat();
    constexpr std::size_t positionAndNormal = 6;
    constexpr std::size_t placed = positionAndNormal * sizeof(float);
    std::memcpy(out, numbers, placed);
    const bool isColoured = type.format.back().use == colour;
    if (isColoured) {
        const float* channels = numbers + positionAndNormal;
        const std::uint32_t packed = ColourChannel(channels[3]) << 24 | ColourChannel(channels[0]) << 16 |
                                     ColourChannel(channels[1]) << 8 | ColourChannel(channels[2]);
        std::memcpy(out + placed, &packed, sizeof packed);
        return;
    }
    std::memcpy(out + placed, numbers + positionAndNormal, 2 * sizeof(float));
    if (std::abs(numbers[3]) + std::abs(numbers[4]) + std::abs(numbers[5]) < leastNormal)
        Tell("loading mbm mesh problem found: Mesh " + fileName + " has a normal of magnitude near 0\n");
}

bool MbmReader::ReadBone() {
    if (!tokens.ExpectOpen() || !CanHaveAnother(bones.size(), caps::modelBones, "bones")) return false;
    BoneRecord& record = bones.emplace_back();
    record.bone = NewBone();
    record.bone->SetPosition({}, true);
    record.bone->SetRotation({}, true);
    while (!tokens.AtBrace() && !tokens.HasEnded()) {
        const std::string keyword(tokens.NextToken());
        if (keyword == "Name") {
            record.bone->name = ReadName();
        } else if (keyword == "Mesh") {
            record.meshName = ReadName();
        } else if (keyword == "Child") {
            record.childNames.push_back(ReadName());
        } else if (keyword == "ConnectPos") {
            tokens.ExpectOpen();
            record.bone->SetPosition(tokens.ReadVector(), true);
            tokens.ExpectClose();
        } else if (keyword == "ConnectRot") {
            ReadRotation(*record.bone);
        } else {
            Tell("Warning parsing mesh: unknown Bone sub-construct: " + keyword + "\n");
            tokens.SkipScope();
        }
    }
    tokens.ExpectClose();
    return true;
}

void MbmReader::ReadRotation(Bone& bone) {
    tokens.ExpectOpen();
    bone.SetRotation(Transposed(tokens.ReadMatrix()), true);
    tokens.ExpectClose();
    if (HasScale(bone.Rotation()))
        Tell("Warning: Bone \"" + bone.name + "\" in model \"" + fileName +
             "\" has a scale component in its rotation.\n");
}

}  // namespace G
