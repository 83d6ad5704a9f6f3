#pragma once
// A model in the making: a tree of bones with shapes on them.

#include <string>
#include <vector>

#include "demo/formats/ModelWriter.h"
#include "tools/items/Materials.h"
#include "tools/items/Shape.h"

namespace items {

// The first bone, named after the item, stands on the middle of the cell's floor.
class Item {
  public:
    explicit Item(std::string itemName);

    [[nodiscard]] const std::string& Name() const { return name; }
    // Shapes put from now on belong to a new bone, a child of `parent`, that stands at `position` in its parent's axes
    // and is turned about an axis. Names are unique within an item.
    Item& Bone(const std::string& boneName, const std::string& parent, const Vec3& position, Axis axis = Axis::Z,
               float degrees = 0.0F);
    // The shape's coordinates are those of its bone.
    Item& Put(const Material& material, const Shape& shape);
    // The same, all pictures of the flat kinds; the shape takes one colour.
    Item& Paint(int swatch, Shape shape) { return Put(materials::paints, shape.Paint(swatch)); }

    [[nodiscard]] demo::ModelDrawing Drawing() const;
    [[nodiscard]] std::size_t TriangleCount() const;

  private:
    struct Surface {
        Material material;
        Shape shape;
    };
    struct BoneRecord {
        std::string name;
        std::string parent;
        Vec3 position;
        std::array<float, 9> rotation{1, 0, 0, 0, 1, 0, 0, 0, 1};
        std::vector<Surface> surfaces;
    };

    std::string name;
    std::vector<BoneRecord> bones;
};

}  // namespace items
