#pragma once
// Models: the handle through which the program loads, draws and poses them.
//
// The flags of a load. `normalMaps`: the model takes part in LoadNormalMaps and UnloadNormalMaps. `readableMeshes`: the
// CPU can read the buffers afterwards, as MeshReference::Duplicate and the welder must. `optimize`: the chunks of a
// model text are welded. A load that asks for neither of the last two is refused: write-only buffers are made by
// the pass of the welder that ends a load from text, so without it the buffers would stay readable against the wish.
//
// The first load of a file builds the model and keeps it as a master in the registry; every handle gets a copy of the
// master's bones, which it can pose on its own, while the meshes are shared.

#include <string>

#include "graphics/device/DXGTexture.h"
#include "graphics/device/SharedResource_TCPP.h"
#include "graphics/model/GBBone.h"

namespace G {

struct ModelRecord : ResType {
    bool readableMeshes = false;
    bool isInstance = false;  // false for the masters
    std::string name;         // of the file
    float randomID = 0.0F;
    bool normalMaps = false;
    Bone* topBone = nullptr;  // owned
};

class Mesh : public SharedResource<ModelRecord> {
  public:
    Mesh() = default;
    ~Mesh() override { SRFree(); }
    Mesh(const Mesh& other) : SharedResource() { CopyFrom(other); }
    Mesh& operator=(const Mesh& other) {
        CopyFrom(other);
        return *this;
    }

    // From an .mbm file. On failure the handle is empty and the error log says why.
    bool Load(const std::string& fileName, bool normalMaps, bool readableMeshes, bool optimize);
    // A model of one nameless bone.
    void MakeEmpty(bool normalMaps);
    void Release() { SRFree(); }

    // `force` draws invisible bones too. Uses the shader and the view of now; changes the world transform.
    void Draw(bool force);
    // The first of that name, depth first; null when there is none.
    Bone* FindBone(const std::string& boneName);
    [[nodiscard]] Bone* TopBone() const { return Record() ? Record()->topBone : nullptr; }
    // For every chunk whose colour texture's file is called `textureName` (without its folder), this handle's model
    // draws `texture` and its normal map instead. False when there is none.
    bool SetTexture(const std::string& textureName, const DXG::Texture& texture);

    [[nodiscard]] bool IsLoaded() const { return Record() != nullptr; }

  private:
    void ReleaseApi() override;
    void MakeInstance(const ModelRecord& master, bool normalMaps);
};

// Over all chunks of the live models that were loaded with `normalMaps`.
void LoadNormalMaps();
void UnloadNormalMaps();

// Lets the masters go, so that the next loads read their files again.
void EmptyModelRegistry();
// Takes the bones of every live model and destroys the bone allocator. For the end of the program, when the registry
// is empty and all handles are gone; handles that are not draw nothing any more.
void DestroyModelBones();

}  // namespace G
