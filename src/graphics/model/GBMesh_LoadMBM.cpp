#include "graphics/model/GBMesh_LoadMBM.h"

#include <algorithm>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "graphics/model/GBMesh_BMBM.h"
#include "graphics/model/MbmReader.h"
#include "graphics/model/ProfileRegion.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"

namespace G {

namespace {

// The number at the head of a text that begins with a sound RandomID. With a cache of that number the rest of the text,
// which is nearly all of it, need not be read.
bool ReadRandomIDAtHead(const std::string& fileName, float& randomID) {
    char head[256];
    platform::File file(fileName, platform::OpenMode::Read);
    const auto words = SplitTokens(std::string(head, file.Read(head, sizeof head)), " \t\n\v\f\r");
    const bool isSound =
        words.size() > 3 && words[0] == "RandomID" && words[1] == "{" && MeshTokenizer::IsFloat(words[2]);
    if (!isSound) return false;
    CappedMessages none(0);
    randomID = MeshTokenizer(words[2], none).ReadFloat();
    return true;
}

}  // namespace

bool LoadCacheOf(const std::string& fileName, bool readableMeshes, ModelHeader& header) {
    const std::string path = MeshCachePath(fileName);
    return ReadStoredIdentifier(path) == header.randomID && LoadMeshBMBM(path, readableMeshes, header);
}

bool LoadMeshMBM(const std::string& fileName, bool readableMeshes, ModelHeader& header, bool optimize) {
    const ProfileRegion region("Load Mesh (mbm or bmbm)", "GBMesh_LoadMBM");
    header.topBone = nullptr;
    const bool tooLong = platform::FileLength(fileName) > caps::modelTextBytes;
    const bool cacheTried = !tooLong && ReadRandomIDAtHead(fileName, header.randomID);
    if (cacheTried && LoadCacheOf(fileName, readableMeshes, header)) return true;
    std::string text;
    if (tooLong || !platform::ReadFileText(fileName, text, caps::modelTextBytes)) {
        errorLog.Write("Failed to open file: " + fileName + "\n");
        return false;
    }
    return MbmReader(fileName, std::move(text), readableMeshes, optimize, cacheTried, header).Load();
}

bool MbmReader::Load() {
    ReadConstructs();
    if (fromCache) return true;
    const bool parsed = !tokens.HasError();
    if (parsed) LinkBones();
    FindTopBone();
    if (parsed) AttachMeshes();
    messages.Flush();
    if (!parsed || boneErrors || meshErrors) return FailedLoad();
    Finish();
    return true;
}

void MbmReader::LinkBones() {
    for (BoneRecord& record : bones)
        for (const std::string& childName : record.childNames)
            if (!LinkChild(record, childName)) {
                boneErrors = true;
                return;
            }
}

bool MbmReader::LinkChild(BoneRecord& parent, const std::string& childName) {
    const auto child = std::find_if(bones.begin(), bones.end(), [&](const BoneRecord& other) {
        return &other != &parent && other.bone->name == childName;
    });
    const std::string asked = "Bone(" + parent.bone->name + ") asked for child \"" + childName;
    if (child == bones.end()) {
        Tell(asked + "\" that doesn't exist.\n");
        return false;
    }
    if (child->hasParent) {
        Tell(asked + "\", but that child already has a parent(" + child->bone->Parent()->name + ")\n");
        return false;
    }
    if (parent.bone->IsAtOrBelow(*child->bone)) {
        Tell(asked + "\", but that child is above it.\n");
        return false;
    }
    parent.bone->AttachChild(*child->bone, true, false, false);
    child->hasParent = true;
    return true;
}

void MbmReader::FindTopBone() {
    for (const BoneRecord& record : bones) {
        if (record.bone->Parent()) continue;
        if (!topBone) {
            topBone = record.bone;
            continue;
        }
        boneErrors = true;
        Tell(
            "Error arranging bones: more than one bone with no parent was found.\n"
            "  -previosly found top-bone name: " +
            topBone->name + "\n" + "  -other top bone found: " + record.bone->name + "\n");
    }
}

void MbmReader::AttachMeshes() {
    for (const MeshReference& mesh : meshes)
        if (mesh.Mesh().name.empty()) {
            meshErrors = true;
            Tell("Error: A Mesh has no name (and hence no way for a bone to use it) in model: " + fileName + "\n");
        }
    if (boneErrors || meshErrors) return;
    for (const BoneRecord& record : bones) {
        if (record.meshName.empty()) continue;
        const auto mesh = std::find_if(meshes.begin(), meshes.end(), [&](const MeshReference& reference) {
            return reference.Mesh().name == record.meshName;
        });
        if (mesh != meshes.end()) {
            record.bone->mesh.ShareMesh(*mesh);
            continue;
        }
        meshErrors = true;
        Tell("Error attaching meshes to bones: Bone(" + record.bone->name + ") asked for Mesh(" + record.meshName +
             ") that couldn't be found.\n");
    }
}

bool MbmReader::FailedLoad() {
    std::erase(errorStack, '\0');  // which would end the log's piece
    if (tokens.HasError())
        errorLog.Write("Errors occured parsing the file " + fileName + "\n  error stack: " + errorStack + "\n");
    if (boneErrors) errorLog.Write("Errors in bones of model file: " + fileName + "\n");
    if (meshErrors) errorLog.Write("Errors in meshes of model file: " + fileName + "\n");
    return false;
}

void MbmReader::Finish() {
    header.topBone = topBone;
    // Asked before the welder, which keeps the low 16 bits of the index counts.
    const bool fitsCache = !hasRandomID || std::all_of(meshes.begin(), meshes.end(), [](const MeshReference& mesh) {
        return IndicesFitCache(mesh.Mesh());
    });
    for (MeshReference& mesh : meshes) {
        if (optimize) mesh.MutableMesh().Optimize(true);
        mesh.MutableMesh().RebuildPositionsMesh();
        mesh.MutableMesh().MeasureIndices();
        mesh.Mesh().TellOfUndrawnChunks(fileName);
    }
    if (!fitsCache)
        errorLog.Write("An error occured trying to save " + cachePath + "\n");
    else if (hasRandomID)
        SaveMeshBMBM(cachePath, header);
    if (readableMeshes || !optimize) return;
    for (MeshReference& mesh : meshes)
        mesh.MutableMesh().Optimize(false, true);
}

}  // namespace G
