#include "graphics/model/GBMesh.h"

#include <random>
#include <utility>
#include <vector>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "graphics/model/GBMesh_LoadMBM.h"

namespace G {

namespace {

constexpr int randomSteps = 32767;

// The masters. Never destroyed, because the list may be emptied later than static objects go.
std::vector<Mesh>& Registry() {
    static auto* registry = new std::vector<Mesh>;
    return *registry;
}

template <typename Visit>
void ForEachBone(Bone& bone, Visit visit) {
    visit(bone);
    for (Bone* child : bone.Children())
        ForEachBone(*child, visit);
}

void WriteCount(const char* title, unsigned count) {
    if (count > 0) meshStatsLog.Write(title + std::to_string(count) + "\n");
}

void WriteStatistics(Bone* topBone) {
    ModelStatistics& statistics = ModelStatistics::Current();
    meshStatsLog.Write(" >Total:\n");
    WriteCount("    -POSITION, original verts: ", statistics.positionOriginal);
    WriteCount("    -POSITION, optimized verts: ", statistics.positionOptimized);
    WriteCount("    -GRAPHIC, original verts: ", statistics.graphicOriginal);
    WriteCount("    -GRAPHIC, optimized verts: ", statistics.graphicOptimized);
    WriteCount("    -Triangle Count: ", statistics.triangles);
    if (topBone)
        ForEachBone(*topBone, [&statistics](const Bone& bone) {
            ++statistics.totalBones;
            if (bone.mesh.Mesh().chunks.empty()) ++statistics.wastedBones;
        });
    meshStatsLog.Write("    -Total Bones: " + std::to_string(statistics.totalBones) + "\n");
    meshStatsLog.Write("    -Wasted Bones: " + std::to_string(statistics.wastedBones) + "\n");
    meshStatsLog.Write("\n");
}

const ModelRecord* FindMaster(const std::string& fileName, bool readableMeshes) {
    return Mesh::FindRecord([&](const ModelRecord& model) {
        return !model.isInstance && model.readableMeshes == readableMeshes && model.name == fileName;
    });
}

template <typename Visit>
void ForEachChunkWithNormalMaps(Visit visit) {
    for (const ModelRecord* model : Mesh::Records())
        if (model->normalMaps && model->topBone)
            ForEachBone(*model->topBone, [&visit](Bone& bone) {
                if (bone.mesh.Mesh().chunks.empty()) return;
                for (MeshChunk& chunk : bone.mesh.MutableMesh().chunks)
                    visit(chunk);
            });
}

bool LoadNormalMap(DXG::Texture& normalMap, const DXG::Texture& colour) {
    return normalMap.Load(NormalMapName(colour.FileName()), DXG::TextureType::AsFile, true, true);
}

}  // namespace

void Mesh::ReleaseApi() {
    if (Bone* bone = std::exchange(Record()->topBone, nullptr)) FreeBone(bone);
}

void Mesh::MakeInstance(const ModelRecord& master, bool normalMaps) {
    ModelRecord& made = AllocateRecord();
    made.isInstance = true;
    made.name = master.name;
    made.readableMeshes = master.readableMeshes;
    made.randomID = master.randomID;
    made.normalMaps = normalMaps;
    made.topBone = NewBone();
    made.topBone->CloneFrom(*master.topBone);
}

bool Mesh::Load(const std::string& fileName, bool normalMaps, bool readableMeshes, bool optimize) {
    if (!optimize && !readableMeshes) {
        errorLog.Write(
            "No.  If optimize is false, then readableMeshes must be true.  Read the comment in GBMesh.h ... ...\n");
        return false;
    }
    // A copy, because releasing the current model could take the caller's text with it.
    const std::string name = fileName;  // NOLINT(performance-unnecessary-copy-initialization)
    SRFree();
    if (const ModelRecord* master = FindMaster(name, readableMeshes)) {
        MakeInstance(*master, false);
        return true;
    }
    meshStatsLog.Write("Model: " + name + "\n");
    ModelStatistics::Current() = ModelStatistics();
    if (!EqualsIgnoringCase(ExtensionOf(name), "mbm")) {
        ReportWithStack("Cannot load mesh (" + name + ").  Unrecognized file extension.\n");
        return false;
    }
    ModelHeader header;
    const bool done = LoadMeshMBM(name, readableMeshes, header, optimize);
    if (done) WriteStatistics(header.topBone);
    if (!done || !header.topBone) {
        ReportWithStack("Failed to load mesh: " + name + "\n" + (done ? "  -No bones found...\n" : ""));
        return false;
    }
    Mesh masterHandle;
    ModelRecord& master = masterHandle.AllocateRecord();
    master.name = name;
    master.topBone = header.topBone;
    master.readableMeshes = readableMeshes;
    master.randomID = header.randomID;
    master.normalMaps = normalMaps;
    Registry().push_back(masterHandle);
    MakeInstance(master, normalMaps);
    return true;
}

void Mesh::MakeEmpty(bool normalMaps) {
    static std::minstd_rand random;
    ModelRecord& made = AllocateRecord();
    made.isInstance = true;
    made.randomID =
        static_cast<float>(std::uniform_int_distribution(0, randomSteps)(random)) / static_cast<float>(randomSteps);
    made.normalMaps = normalMaps;
    made.topBone = NewBone();
}

void Mesh::Draw(bool force) {
    if (Bone* bone = TopBone()) bone->Draw(force);
}

Bone* Mesh::FindBone(const std::string& boneName) {
    return TopBone() ? TopBone()->Find(boneName) : nullptr;
}

bool Mesh::SetTexture(const std::string& textureName, const DXG::Texture& texture) {
    if (!TopBone()) return false;
    bool found = false;
    DXG::Texture normalMap;
    ForEachBone(*TopBone(), [&](Bone& bone) {
        const std::vector<MeshChunk>& chunks = bone.mesh.Mesh().chunks;
        for (std::uint32_t i = 0; i < chunks.size(); ++i) {
            const DXG::Texture& own = chunks[i].texture0;
            if (!own.IsLoaded() || FileNameOf(own.FileName()) != textureName) continue;
            if (!std::exchange(found, true)) LoadNormalMap(normalMap, texture);
            bone.mesh.SetOverride(i, texture, normalMap);
        }
    });
    return found;
}

void LoadNormalMaps() {
    ForEachChunkWithNormalMaps([](MeshChunk& chunk) {
        if (chunk.texture0.IsLoaded()) LoadNormalMap(chunk.texture1, chunk.texture0);
    });
}

void UnloadNormalMaps() {
    ForEachChunkWithNormalMaps([](MeshChunk& chunk) { chunk.texture1.Release(); });
}

void EmptyModelRegistry() {
    Registry().clear();
}

void DestroyModelBones() {
    for (ModelRecord* model : Mesh::Records())
        model->topBone = nullptr;
    DestroyBoneAllocator();
}

}  // namespace G
