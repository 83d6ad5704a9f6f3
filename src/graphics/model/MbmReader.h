#pragma once
// One load of a model text.

#include <string>
#include <string_view>
#include <vector>

#include "formats/CappedMessages.h"
#include "graphics/model/GBBone.h"
#include "graphics/model/MeshRecord.h"
#include "graphics/model/MeshTokenizer.h"
#include "graphics/model/ModelHeader.h"

namespace G {

// Loads the model's cache when that has the RandomID of `header`.
bool LoadCacheOf(const std::string& fileName, bool readableMeshes, ModelHeader& header);

// Owns all it makes until Load answers true.
class MbmReader {
  public:
    // `triedCache`: a RandomID at the head was read before and its cache does not serve.
    MbmReader(const std::string& modelName, std::string modelText, bool readable, bool weld, bool triedCache,
              ModelHeader& out);
    ~MbmReader();  // frees the bones that no header took
    MbmReader(const MbmReader&) = delete;
    MbmReader& operator=(const MbmReader&) = delete;
    bool Load();

  private:
    struct BoneRecord {
        Bone* bone = nullptr;
        bool hasParent = false;
        std::vector<std::string> childNames;
        std::string meshName;  // empty: none
    };
    struct VertexType;

    // The texts of constructs. Those that answer false end the load: their opening brace was missing, or the file
    // has more of them than any model.
    bool ReadConstructs();
    bool ReadConstruct(std::string_view keyword);
    bool ReadRandomID();
    bool ReadMesh();
    bool ReadChunk(MeshRecord& mesh);
    void ReadTexture(std::string_view keyword, MeshChunk& chunk);
    void ReadIndices(const MeshRecord& mesh, MeshChunk& chunk);
    void ReadVertices(MeshChunk& chunk);
    void ReadVertex(const VertexType& type, unsigned char* out);
    bool ReadBone();
    void ReadRotation(Bone& bone);
    std::string ReadName();
    bool CanHaveAnother(std::size_t count, std::size_t cap, const char* what);
    // Whether the rest of the text can. If not, reading the list would run into a brace or the end, which fails the
    // load; a negative one is like a buffer that cannot be made, which does not.
    bool CanHoldList(int count, std::size_t numbersEach, const char* list, const char* what);

    // What follows the text.
    void LinkBones();
    bool LinkChild(BoneRecord& parent, const std::string& childName);
    void FindTopBone();
    void AttachMeshes();
    void Finish();
    bool FailedLoad();

    void Tell(std::string message) { tokens.Tell(std::move(message)); }
    void AddToErrorStack(const std::string& entry);

    const std::string& fileName;
    const std::string text;
    const bool readableMeshes;
    const bool optimize;
    const bool cacheTried;
    ModelHeader& header;
    const std::string cachePath;
    CappedMessages messages;
    MeshTokenizer tokens;
    std::vector<MeshReference> meshes;
    std::vector<BoneRecord> bones;
    Bone* topBone = nullptr;
    std::string errorStack;
    std::size_t chunkCount = 0;
    std::size_t textureCount = 0;
    bool firstConstruct = true;
    bool hasRandomID = false;
    bool fromCache = false;
    bool boneErrors = false;
    bool meshErrors = false;
};

}  // namespace G
