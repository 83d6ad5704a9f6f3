#pragma once
// Geometry for the item models: triangles with normals and texture coordinates, and the solids they are built from.
//
// x and y lie on the floor, z points up, one unit is one map cell. Triangles run counter-clockwise around their outward
// normal in these axes, which is clockwise in the picture, where the world's x is mirrored.

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "math/VectorMatrix.h"

namespace items {

struct Corner {
    Vec3 position;
    Vec3 normal;
    float u = 0.0F;
    float v = 0.0F;
};

enum class Axis { X, Y, Z };

// Three corners for each triangle. The operations change the shape and give it back, so that they can be chained.
class Shape {
  public:
    std::vector<Corner> corners;

    Shape& Add(const Shape& other);
    Shape& Triangle(const Corner& a, const Corner& b, const Corner& c);
    // A quad a, b, c, d around its outward normal.
    Shape& Quad(const Corner& a, const Corner& b, const Corner& c, const Corner& d);

    Shape& Move(float x, float y, float z);
    Shape& Turn(Axis axis, float degrees);
    Shape& Scale(float x, float y, float z);
    Shape& Scale(float factor) { return Scale(factor, factor, factor); }
    // Moves every position by what `bend` makes of it; normals are made anew with this crease.
    Shape& Bend(const std::function<Vec3(const Vec3&)>& bend, float creaseDegrees);
    Shape& Uv(float scaleU, float scaleV, float moveU = 0.0F, float moveV = 0.0F);
    // Texture coordinates as if the picture were thrown along the nearest axis, `perUnit` pictures to the unit.
    Shape& BoxUv(float perUnit);
    // The whole shape shows one colour of the paint box, lighter toward its top; see Materials.h for the numbers.
    Shape& Paint(int swatch);
    // Every normal becomes this one, as plants want that would else be lit card by card.
    Shape& Light(const Vec3& normal);
    // Adds the back of every triangle.
    Shape& TwoSided();
    Shape& Flip();
    // Normals from the triangles; those that meet at an angle below the crease share one. 0 makes facets.
    Shape& Smooth(float creaseDegrees);
};

// A copy at another place, for shapes used several times.
Shape At(Shape shape, float x, float y, float z);
Shape Turned(Shape shape, Axis axis, float degrees);

// Solids stand on z = 0 around the z axis. Pictures repeat `perUnit` times to the unit with u along the longer side of
// a face.
Shape Box(float width, float depth, float height, float perUnit = 1.0F);
// With edges cut off by `bevel`.
Shape Block(float width, float depth, float height, float bevel, float perUnit = 1.0F);
// Radius and height of the points of an outline, from the bottom up the outside, over the rim and down the inside. The
// picture goes `repeats` times around and once from the last point (top of the picture) to the first.
Shape Lathe(const std::vector<std::pair<float, float>>& outline, int segments, int repeats = 1,
            float creaseDegrees = 50);
Shape Cylinder(float radius, float height, int segments, int repeats = 1);
Shape Cone(float bottomRadius, float topRadius, float height, int segments, int repeats = 1);
// A flat round plate facing up; the picture fits around it.
Shape Disc(float radius, int segments);
// A ball of 20 * 4^subdivisions triangles, dented by up to `roughness` of its radius, around the origin; pictures as in
// BoxUv.
Shape Blob(float radius, int subdivisions, float roughness, unsigned seed, float perUnit = 1.0F);
// A smooth ball with the picture wrapped around it like a map.
Shape Ball(float radius, int segments);
// A pipe along a path with a radius at each point; the picture runs along it `perUnit` times to the unit.
Shape Tube(const std::vector<Vec3>& path, const std::vector<float>& radii, int segments, float perUnit = 1.0F);
Shape Tube(const std::vector<Vec3>& path, float radius, int segments, float perUnit = 1.0F);
// A flat outline (x, z), star-shaped around its middle and counter-clockwise seen from -y, made `depth` thick along y.
Shape Extrude(const std::vector<std::pair<float, float>>& outline, float depth, float perUnit = 1.0F);
// A surface of columns x rows patches; `place` takes s and t from 0 to 1, the picture's left to right and bottom to
// top. The front is where s x t points.
Shape Sheet(int columns, int rows, const std::function<Vec3(float s, float t)>& place, float creaseDegrees = 60);

// Part of a picture, 0 to 1 from its top left.
struct Patch {
    float left = 0.0F;
    float top = 0.0F;
    float right = 1.0F;
    float bottom = 1.0F;
};
// An upright picture of a plant, seen from both sides and lit from above, its foot in the middle at z = 0.
Shape Card(float width, float height, const Patch& patch);
// `count` cards turned about the z axis.
Shape Cards(int count, float width, float height, const Patch& patch);
// A flat picture facing +y, one side only, its foot in the middle at z = 0.
Shape Picture(float width, float height, const Patch& patch);

// From 0 up to, not including, 1; the same for the same numbers.
float Chance(unsigned seed, int index);
float Between(float low, float high, unsigned seed, int index);
// Of length 1; straight up for a vector without length.
Vec3 Unit(const Vec3& v);
float SinDegrees(float degrees);
float CosDegrees(float degrees);

}  // namespace items
