#include "graphics/model/GBMesh_BMBM.h"

#include <memory>
#include <random>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/ByteCursor.h"
#include "graphics/model/GBBone.h"
#include "graphics/model/MeshCacheFormat.h"
#include "graphics/model/MeshRecord.h"
#include "graphics/model/ProfileRegion.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"
#include "platform/Memory.h"

namespace G {

namespace {

// The longest path, its terminator included.
constexpr std::size_t longestPath = 260;

bool SaveTree(const Bone& bone, std::string& bytes) {
    for (const Bone* child : bone.Children())
        if (child->IsOwned() && !SaveTree(*child, bytes)) return false;
    if (!bone.mesh.Mesh().chunks.empty()) {
        bytes += static_cast<char>(meshCacheMeshRecord);
        if (!BinarySave(bone.mesh.Mesh(), bytes)) return false;
    }
    bytes += static_cast<char>(meshCacheBoneRecord);
    return SaveBone(bone, bytes);
}

bool IsUsablePath(const std::string& path) {
    for (const std::string& part : SplitTokens(path, "\\/"))
        if (part == "..") return false;
    return path.size() < longestPath;
}

bool WriteCache(const std::string& path, const std::string& bytes) {
    const WriteOutcome outcome = WriteWholeFile(path, bytes);
    if (outcome == WriteOutcome::NotOpened) errorLog.Write("Could not open \"" + path + "\" to write to.\n");
    if (outcome == WriteOutcome::CutShort) errorLog.Write("fwrite didn't complete in SaveMeshBMBM???\n");
    return outcome == WriteOutcome::Written;
}

// The folder of the model that a cache path stands for.
std::string ModelFolderOf(const std::string& cachePath) {
    const std::string root = DirectoryOf(MeshCachePath(""));
    const std::string folder = DirectoryOf(cachePath);
    return folder.starts_with(root) ? folder.substr(root.size()) : folder;
}

// The tree of a cache as it grows: children come before their parents.
class Rebuilding {
  public:
    ~Rebuilding() {
        for (Bone* bone : parentless)
            FreeBone(bone);
    }
    Rebuilding(std::string_view records, MeshCacheReading& state) : bytes(records), reading(state) {}
    Rebuilding(const Rebuilding&) = delete;
    Rebuilding& operator=(const Rebuilding&) = delete;

    bool Run(ModelHeader& header);

  private:
    bool ReadRecord(unsigned type);
    std::size_t ReadMesh(std::string_view body);
    std::size_t ReadBone(std::string_view body);
    bool TakeChildren(Bone& parent, const std::vector<std::string>& names);

    std::string_view bytes;
    MeshCacheReading& reading;
    std::vector<Bone*> parentless;
    std::vector<std::string> childNames;
    MeshReference pending;
    bool hasPending = false;
    std::size_t boneCount = 0;
    std::size_t meshCount = 0;
};

bool Rebuilding::Run(ModelHeader& header) {
    while (true) {
        const unsigned type = bytes.empty() ? ~0U : static_cast<unsigned char>(bytes[0]);
        if (type == meshCacheEnd) break;
        if (!ReadRecord(type)) return false;
    }
    if (parentless.size() > 1) {
        errorLog.Write("Too many parent bones after DoLoadBMBMHierarchy finished.\n");
        return false;
    }
    header.topBone = parentless.empty() ? nullptr : parentless[0];
    parentless.clear();
    return true;
}

bool Rebuilding::ReadRecord(unsigned type) {
    if (type != meshCacheMeshRecord && type != meshCacheBoneRecord) {
        errorLog.Write("Bad TYPE byte in DoLoadBMBMHierarchy.\n");
        return false;
    }
    const std::string_view body = bytes.substr(1);
    const std::size_t used = type == meshCacheMeshRecord ? ReadMesh(body) : ReadBone(body);
    if (used == 0) {
        errorLog.Write("Problem during loading a binary mesh...\n");
        return false;
    }
    bytes.remove_prefix(1 + used);
    return type == meshCacheMeshRecord || TakeChildren(*parentless.back(), childNames);
}

std::size_t Rebuilding::ReadMesh(std::string_view body) {
    if (hasPending) errorLog.Write("Note: a mesh went unused in DoLoadBMBMHierarchy.\n");
    pending = MeshReference();
    hasPending = true;
    return ++meshCount > caps::modelMeshes ? 0 : BinaryLoad(body, reading, pending.MutableMesh());
}

std::size_t Rebuilding::ReadBone(std::string_view body) {
    if (++boneCount > caps::modelBones) return 0;
    Bone* bone = NewBone();
    parentless.push_back(bone);
    const std::size_t used = LoadBone(body, *bone, childNames);
    if (used > 0 && hasPending && pending.Mesh().name == bone->mesh.Mesh().name) {
        bone->mesh.ShareMesh(pending);
        pending = MeshReference();
        hasPending = false;
    }
    return used;
}

// `parent` is the last of the list and no child of itself.
bool Rebuilding::TakeChildren(Bone& parent, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        auto child = parentless.begin();
        while (*child != &parent && (*child)->name != name)
            ++child;
        if (*child == &parent) {
            errorLog.Write("Bone " + parent.name + " asked for child " + name + " but it wasn't found...\n");
            return false;
        }
        parent.AttachChild(**child, true, false, false);
        parentless.erase(child);
    }
    return true;
}

}  // namespace

std::string MeshCachePath(const std::string& fileName) {
    return "gen\\" + WithoutExtension(fileName) + ".bmbm";
}

bool SaveMeshBMBM(const std::string& path, const ModelHeader& header) {
    std::string bytes;
    AppendNumber(bytes, meshCacheMagic, 4);
    AppendFloat(bytes, header.randomID);
    if (!IsUsablePath(path) || (header.topBone && !SaveTree(*header.topBone, bytes))) {
        errorLog.Write("An error occured trying to save " + path + "\n");
        return false;
    }
    bytes += static_cast<char>(meshCacheEnd);
    MakePathDirectories(path);
    return WriteCache(path, bytes);
}

float ReadStoredIdentifier(const std::string& path) {
    char start[meshCacheHeaderBytes];
    platform::File file(path, platform::OpenMode::Read);
    ByteCursor cursor({start, file.Read(start, sizeof start)});
    const std::uint32_t magic = cursor.U32();
    const float stored = cursor.F32();
    if (magic == meshCacheMagic && !cursor.Failed()) return stored;
    constexpr int steps = 32767;
    static std::minstd_rand random;
    return -static_cast<float>(std::uniform_int_distribution(1, steps)(random)) / static_cast<float>(steps);
}

bool LoadMeshBMBM(const std::string& path, bool readableMeshes, ModelHeader& header) {
    platform::File file(path, platform::OpenMode::Read);
    const auto size = static_cast<std::size_t>(file.Size());
    if (!file.IsOpen() || size > caps::modelCacheBytes) {
        errorLog.Write("Could not open file \"" + path + "\" for LoadMeshBMBM.\n");
        return false;
    }
    const ProfileRegion region("Load BMBM file (binary)", "GBMesh_BMBM");
    const auto bytes = platform::AllocateToFill(size);
    const std::string_view all(bytes.get(), file.Read(bytes.get(), size));
    file.Close();
    if (ByteCursor(all).U32() != meshCacheMagic) {
        errorLog.Write("old version of: " + path + " so not loadable.  delete the cached mesh please.\n");
        return false;
    }
    MeshCacheReading reading{path, ModelFolderOf(path), readableMeshes, caps::modelTextures};
    const std::string_view records = all.substr(std::min(all.size(), meshCacheHeaderBytes));
    if (DoLoadBMBMHierarchy(records, reading, header)) return true;
    errorLog.Write("Failed to load " + path + "\n");
    return false;
}

bool DoLoadBMBMHierarchy(std::string_view records, MeshCacheReading& reading, ModelHeader& header) {
    return Rebuilding(records, reading).Run(header);
}

}  // namespace G
