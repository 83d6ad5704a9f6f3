#pragma once
// What the readers of model files give.

namespace G {

class Bone;

struct ModelHeader {
    Bone* topBone = nullptr;  // the root of the tree, the caller's; null when the file has no bones
    float randomID = 0.0F;    // of the file's RandomID construct
};

}  // namespace G
