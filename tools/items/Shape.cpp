#include "tools/items/Shape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>

namespace items {

namespace {

Vec3 TurnVector(const Vec3& v, Axis axis, float c, float s) {
    switch (axis) {
        case Axis::X:
            return {v.x, c * v.y - s * v.z, s * v.y + c * v.z};
        case Axis::Y:
            return {c * v.x + s * v.z, v.y, -s * v.x + c * v.z};
        case Axis::Z:
            break;
    }
    return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

using PlaceKey = std::array<std::int64_t, 3>;

PlaceKey KeyOf(const Vec3& p) {
    return {std::llround(p.x * 20000.0), std::llround(p.y * 20000.0), std::llround(p.z * 20000.0)};
}

// Twice the triangle's area long.
Vec3 FaceNormal(const Corner* corner) {
    return Cross(corner[1].position - corner[0].position, corner[2].position - corner[0].position);
}

}  // namespace

Vec3 Unit(const Vec3& v) {
    const float length = Length(v);
    return length > 1e-9F ? v / length : Vec3{0.0F, 0.0F, 1.0F};
}

Shape& Shape::Add(const Shape& other) {
    corners.insert(corners.end(), other.corners.begin(), other.corners.end());
    return *this;
}

Shape& Shape::Triangle(const Corner& a, const Corner& b, const Corner& c) {
    corners.insert(corners.end(), {a, b, c});
    // Poles of lathes and balls give triangles without area.
    if (Length(FaceNormal(corners.data() + corners.size() - 3)) < 1e-8F) corners.resize(corners.size() - 3);
    return *this;
}

Shape& Shape::Quad(const Corner& a, const Corner& b, const Corner& c, const Corner& d) {
    return Triangle(a, b, c).Triangle(a, c, d);
}

Shape& Shape::Move(float x, float y, float z) {
    for (Corner& corner : corners)
        corner.position += Vec3{x, y, z};
    return *this;
}

Shape& Shape::Turn(Axis axis, float degrees) {
    const float c = CosDegrees(degrees);
    const float s = SinDegrees(degrees);
    for (Corner& corner : corners) {
        corner.position = TurnVector(corner.position, axis, c, s);
        corner.normal = TurnVector(corner.normal, axis, c, s);
    }
    return *this;
}

Shape& Shape::Scale(float x, float y, float z) {
    for (Corner& corner : corners) {
        const Vec3& p = corner.position;
        const Vec3& n = corner.normal;
        corner.position = {p.x * x, p.y * y, p.z * z};
        corner.normal = Unit({n.x / x, n.y / y, n.z / z});
    }
    if (x * y * z > 0.0F) return *this;
    // A mirrored shape runs the other way around.
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        std::swap(corners[i + 1], corners[i + 2]);
    return *this;
}

Shape& Shape::Bend(const std::function<Vec3(const Vec3&)>& bend, float creaseDegrees) {
    for (Corner& corner : corners)
        corner.position = bend(corner.position);
    return Smooth(creaseDegrees);
}

Shape& Shape::Uv(float scaleU, float scaleV, float moveU, float moveV) {
    for (Corner& corner : corners) {
        corner.u = corner.u * scaleU + moveU;
        corner.v = corner.v * scaleV + moveV;
    }
    return *this;
}

Shape& Shape::BoxUv(float perUnit) {
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        const Vec3 n = FaceNormal(&corners[i]);
        const float ax = std::abs(n.x);
        const float ay = std::abs(n.y);
        const float az = std::abs(n.z);
        for (std::size_t k = i; k < i + 3; ++k) {
            const Vec3& p = corners[k].position;
            corners[k].u = perUnit * (ax > ay && ax > az ? p.y : p.x);
            corners[k].v = -perUnit * (az >= ax && az >= ay ? p.y : p.z);
        }
    }
    return *this;
}

Shape& Shape::Paint(int swatch) {
    if (corners.empty()) return *this;
    const auto [low, high] = std::minmax_element(
        corners.begin(), corners.end(), [](const Corner& a, const Corner& b) { return a.position.z < b.position.z; });
    const float bottom = low->position.z;
    const float height = std::max(high->position.z - bottom, 1e-6F);
    for (Corner& corner : corners) {
        // Swatches are an eighth of the picture wide and high; a margin keeps the neighbours out of the mipmaps.
        const float up = (corner.position.z - bottom) / height;
        corner.u = (static_cast<float>(swatch % 8) + 0.5F) / 8.0F;
        corner.v = (static_cast<float>(swatch / 8) + 0.75F - 0.5F * up) / 8.0F;
    }
    return *this;
}

Shape& Shape::Light(const Vec3& normal) {
    for (Corner& corner : corners)
        corner.normal = normal;
    return *this;
}

Shape& Shape::TwoSided() {
    Shape back = *this;
    return Add(back.Flip());
}

Shape& Shape::Flip() {
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        std::swap(corners[i + 1], corners[i + 2]);
    for (Corner& corner : corners)
        corner.normal = -corner.normal;
    return *this;
}

Shape& Shape::Smooth(float creaseDegrees) {
    std::vector<Vec3> faces;
    std::map<PlaceKey, std::vector<std::size_t>> facesAt;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        for (std::size_t k = i; k < i + 3; ++k)
            facesAt[KeyOf(corners[k].position)].push_back(i / 3);
        faces.push_back(FaceNormal(&corners[i]));
    }
    const float limit = CosDegrees(creaseDegrees);
    for (std::size_t k = 0; k < corners.size(); ++k) {
        const Vec3 own = Unit(faces[k / 3]);
        Vec3 sum;
        for (const std::size_t face : facesAt[KeyOf(corners[k].position)])
            if (face == k / 3 || Dot(Unit(faces[face]), own) > limit) sum += faces[face];
        corners[k].normal = Unit(sum);
    }
    return *this;
}

Shape At(Shape shape, float x, float y, float z) {
    return shape.Move(x, y, z);
}

Shape Turned(Shape shape, Axis axis, float degrees) {
    return shape.Turn(axis, degrees);
}

float SinDegrees(float degrees) {
    return static_cast<float>(std::sin(degrees * std::numbers::pi / 180.0));
}

float CosDegrees(float degrees) {
    return static_cast<float>(std::cos(degrees * std::numbers::pi / 180.0));
}

}  // namespace items
