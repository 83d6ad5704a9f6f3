#pragma once
// Bones: the tree of poses of a model. Each may carry a mesh.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "graphics/model/BlockAlloc.h"
#include "graphics/model/MeshRecord.h"
#include "math/VectorMatrix.h"

namespace G {

// 3 x 3 floats, row by row; element (r, c) at 3 r + c.
struct Mat3 {
    std::array<float, 9> m{1, 0, 0, 0, 1, 0, 0, 0, 1};
};

// Made by NewBone and freed by FreeBone. Whoever marks a bone dirty has marked its descendants: a dirty bone has no
// clean ones below it.
class Bone {
  public:
    Bone();
    ~Bone();  // frees the owned children, forgets the others
    Bone(const Bone&) = delete;
    Bone& operator=(const Bone&) = delete;

    // The pose relative to the parent; with `alsoRest` the rest pose too.
    void SetPosition(const Vec3& toPosition, bool alsoRest);
    void SetRotation(const Mat3& toRotation, bool alsoRest);
    // Rotation from the upper left 3 x 3, position from the fourth column.
    void SetLocalMatrix(const Mat4& local, bool alsoRest);
    // The parent's world matrix times the local one; computed again only after a change.
    const Mat4& WorldMatrix();

    // Makes `child` the last child. `keepWorld` keeps its world matrix; else `fromRest` makes its rest pose its world
    // pose; else its local pose stays. A bone cannot go below itself: that is reported and nothing changes.
    void AttachChild(Bone& child, bool childIsOwned, bool keepWorld, bool fromRest);
    // Leaves the parent, if any; the bone belongs to the caller from then on.
    void Detach(bool keepWorld);
    // Becomes a top bone like `source`, with copies of its owned children and sharing its meshes.
    void CloneFrom(const Bone& source);
    // True for the bone itself and every bone above it.
    [[nodiscard]] bool IsAtOrBelow(const Bone& other) const;
    // This bone or the first of that name below it, depth first; null when none.
    Bone* Find(const std::string& wantedName);
    // Children first. `force` draws invisible bones too.
    void Draw(bool force);

    [[nodiscard]] Bone* Parent() const { return parent; }
    [[nodiscard]] const std::vector<Bone*>& Children() const { return children; }
    [[nodiscard]] bool IsOwned() const { return owned; }
    [[nodiscard]] const Vec3& Position() const { return position; }
    [[nodiscard]] const Mat3& Rotation() const { return rotation; }
    [[nodiscard]] const Vec3& RestPosition() const { return restPosition; }
    [[nodiscard]] const Mat3& RestRotation() const { return restRotation; }

    std::string name;
    std::uint32_t tag = 0;
    MeshReference mesh;
    bool visible = true;

  private:
    void MarkDirty();
    void ReleaseChildren();
    void LeaveParent();

    bool owned = true;
    bool dirty = false;
    Mat4 worldMatrix = Identity();
    Bone* parent = nullptr;
    Vec3 position;
    Mat3 rotation;
    Vec3 restPosition;
    Mat3 restRotation;
    std::vector<Bone*> children;
};

// From the process-wide allocator, which the first bone makes if nobody has.
Bone* NewBone();
void FreeBone(Bone* bone);
void CreateBoneAllocator();
// Reports bones that are still there. Their memory goes: nothing may touch them afterwards.
void DestroyBoneAllocator();

std::size_t LiveBones();
std::size_t PeakBones();

}  // namespace G
