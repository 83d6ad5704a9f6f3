#include "graphics/model/GBBone.h"

#include <algorithm>
#include <string>
#include <utility>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"

namespace G {

namespace {

constexpr std::size_t bonesPerBlock = 64;

BlockAlloc<Bone>* allocator = nullptr;
std::size_t liveBones = 0;
std::size_t peakBones = 0;

Mat4 MatrixOf(const Mat3& rotation, const Vec3& position) {
    const auto& r = rotation.m;
    Mat4 matrix;
    matrix.m = {r[0], r[1], r[2], position.x,  //
                r[3], r[4], r[5], position.y,  //
                r[6], r[7], r[8], position.z,  //
                0,    0,    0,    1};
    return matrix;
}

}  // namespace

Bone::Bone() {
    peakBones = std::max(peakBones, ++liveBones);
}

Bone::~Bone() {
    LeaveParent();
    ReleaseChildren();
    if (--liveBones > 0) return;
    statLog.Write("Last bone freed.  Peek bone count: " + std::to_string(peakBones) + "\n\n");
    peakBones = 0;
}

void Bone::LeaveParent() {
    if (parent) std::erase(parent->children, this);
    parent = nullptr;
}

void Bone::ReleaseChildren() {
    for (Bone* child : std::exchange(children, {})) {
        child->parent = nullptr;
        if (child->owned) FreeBone(child);
    }
}

void Bone::MarkDirty() {
    if (dirty) return;
    dirty = true;
    for (Bone* child : children)
        child->MarkDirty();
}

void Bone::SetPosition(const Vec3& toPosition, bool alsoRest) {
    position = toPosition;
    if (alsoRest) restPosition = toPosition;
    MarkDirty();
}

void Bone::SetRotation(const Mat3& toRotation, bool alsoRest) {
    rotation = toRotation;
    if (alsoRest) restRotation = toRotation;
    MarkDirty();
}

void Bone::SetLocalMatrix(const Mat4& local, bool alsoRest) {
    Mat3 upperLeft;
    std::size_t at = 0;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            upperLeft.m[at++] = local(row, column);
    SetRotation(upperLeft, alsoRest);
    SetPosition({local(0, 3), local(1, 3), local(2, 3)}, alsoRest);
}

const Mat4& Bone::WorldMatrix() {
    if (!dirty) return worldMatrix;
    dirty = false;
    worldMatrix = MatrixOf(rotation, position);
    if (parent) worldMatrix = Multiply(parent->WorldMatrix(), worldMatrix);
    return worldMatrix;
}

bool Bone::IsAtOrBelow(const Bone& other) const {
    for (const Bone* bone = this; bone; bone = bone->parent)
        if (bone == &other) return true;
    return false;
}

void Bone::AttachChild(Bone& child, bool childIsOwned, bool keepWorld, bool fromRest) {
    if (IsAtOrBelow(child)) return ReportWithStack("Bad: attempt to attach a bone below itself.\n");
    if (keepWorld || fromRest) {
        // Without an inverse, which is reported, the local pose stays.
        if (const auto inverse = Inverse(WorldMatrix())) {
            const Mat4 rest = MatrixOf(child.restRotation, child.restPosition);
            child.SetLocalMatrix(Multiply(*inverse, keepWorld ? child.WorldMatrix() : rest), false);
        }
    }
    child.LeaveParent();
    children.push_back(&child);
    child.parent = this;
    child.owned = childIsOwned;
    child.MarkDirty();
}

void Bone::Detach(bool keepWorld) {
    if (!parent) return;
    if (keepWorld) SetLocalMatrix(Mat4(WorldMatrix()), false);
    LeaveParent();
    owned = true;
    MarkDirty();
}

void Bone::CloneFrom(const Bone& source) {
    if (source.IsAtOrBelow(*this)) return;
    LeaveParent();
    ReleaseChildren();
    owned = true;
    worldMatrix = source.worldMatrix;
    dirty = source.dirty;
    position = source.position;
    rotation = source.rotation;
    restPosition = source.restPosition;
    restRotation = source.restRotation;
    name = source.name;
    tag = source.tag;
    visible = source.visible;
    mesh = source.mesh;
    for (const Bone* child : source.children) {
        if (!child->owned) continue;
        Bone* copy = NewBone();
        copy->CloneFrom(*child);
        copy->parent = this;
        children.push_back(copy);
    }
}

Bone* Bone::Find(const std::string& wantedName) {
    if (name == wantedName) return this;
    for (Bone* child : children)
        if (Bone* found = child->Find(wantedName)) return found;
    return nullptr;
}

void Bone::Draw(bool force) {
    for (Bone* child : children)
        child->Draw(force);
    if ((!visible && !force) || mesh.Mesh().chunks.empty()) return;
    DXG::SetWorld(WorldMatrix());
    UpdateShaderMatrices();
    mesh.Draw(true);
}

void CreateBoneAllocator() {
    if (!allocator)
        allocator = new2<BlockAlloc<Bone>>({"BlockAlloc<Bone>", "BlockAlloc<Bone>", "GBBone", __LINE__}, bonesPerBlock);
}

void DestroyBoneAllocator() {
    if (allocator) delete2(std::exchange(allocator, nullptr), "GBBone", __LINE__);
}

Bone* NewBone() {
    CreateBoneAllocator();
    return allocator->Alloc();
}

void FreeBone(Bone* bone) {
    CreateBoneAllocator();
    allocator->Free(bone);
}

std::size_t LiveBones() {
    return liveBones;
}
std::size_t PeakBones() {
    return peakBones;
}

}  // namespace G
