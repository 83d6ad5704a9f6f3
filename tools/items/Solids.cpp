#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>

#include "demo/world/MapPainter.h"
#include "tools/items/Shape.h"

namespace items {

namespace {

// A rectangle around `middle`; across x up is its outward normal, of the lengths of its sides. u runs along the longer
// side.
Shape Face(const Vec3& middle, const Vec3& across, const Vec3& up, float perUnit) {
    const float width = Length(across);
    const float height = Length(up);
    const bool upright = height > width;
    const auto corner = [&](float s, float t) {
        const Vec3 p = middle + across * (s - 0.5F) + up * (t - 0.5F);
        const float u = perUnit * width * s;
        const float v = perUnit * height * (1.0F - t);
        return upright ? Corner{p, {}, v, u} : Corner{p, {}, u, v};
    };
    Shape face;
    return face.Quad(corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1));
}

// The vertices of an icosahedron and its faces, split `subdivisions` times and drawn out to radius 1.
std::vector<std::array<Vec3, 3>> BallFaces(int subdivisions) {
    const float g = std::numbers::phi_v<float>;
    const std::array<Vec3, 12> v = {Vec3{-1, g, 0}, {1, g, 0},  {-1, -g, 0}, {1, -g, 0}, {0, -1, g},  {0, 1, g},
                                    {0, -1, -g},    {0, 1, -g}, {g, 0, -1},  {g, 0, 1},  {-g, 0, -1}, {-g, 0, 1}};
    constexpr std::array<std::array<std::size_t, 3>, 20> f = {
        {{0, 11, 5},  {0, 5, 1},  {0, 1, 7},  {0, 7, 10}, {0, 10, 11}, {1, 5, 9}, {5, 11, 4},
         {11, 10, 2}, {10, 7, 6}, {7, 1, 8},  {3, 9, 4},  {3, 4, 2},   {3, 2, 6}, {3, 6, 8},
         {3, 8, 9},   {4, 9, 5},  {2, 4, 11}, {6, 2, 10}, {8, 6, 7},   {9, 8, 1}}};
    std::vector<std::array<Vec3, 3>> faces;
    for (const auto& [a, b, c] : f)
        faces.push_back({Unit(v[a]), Unit(v[b]), Unit(v[c])});
    for (int i = 0; i < subdivisions; ++i) {
        std::vector<std::array<Vec3, 3>> finer;
        for (const auto& [a, b, c] : faces) {
            const Vec3 ab = Unit(a + b);
            const Vec3 bc = Unit(b + c);
            const Vec3 ca = Unit(c + a);
            finer.insert(finer.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
        }
        faces = std::move(finer);
    }
    return faces;
}

// A wavy number from -1 to 1 over the unit ball.
float Dents(const Vec3& p, unsigned seed) {
    float sum = 0.0F;
    for (int i = 0; i < 4; ++i) {
        const float a = 360.0F * Chance(seed, 5 * i);
        const float b = 360.0F * Chance(seed, 5 * i + 1);
        const Vec3 way{CosDegrees(a) * CosDegrees(b), SinDegrees(a) * CosDegrees(b), SinDegrees(b)};
        const float waves = 2.2F + 1.1F * static_cast<float>(i);
        sum += std::sin(waves * Dot(p, way) + 6.3F * Chance(seed, 5 * i + 2)) * (1.0F - 0.15F * static_cast<float>(i));
    }
    return sum / 3.1F;
}

}  // namespace

Shape Box(float width, float depth, float height, float perUnit) {
    const Vec3 x{width, 0, 0};
    const Vec3 y{0, depth, 0};
    const Vec3 z{0, 0, height};
    const Vec3 middle = z / 2.0F;
    Shape box = Face(middle + x / 2.0F, y, z, perUnit);
    box.Add(Face(middle - x / 2.0F, -y, z, perUnit)).Add(Face(middle + y / 2.0F, -x, z, perUnit));
    box.Add(Face(middle - y / 2.0F, x, z, perUnit)).Add(Face(middle + z / 2.0F, x, y, perUnit));
    return box.Add(Face(middle - z / 2.0F, x, -y, perUnit)).Smooth(0);
}

Shape Block(float width, float depth, float height, float bevel, float perUnit) {
    const std::array<float, 3> size = {width, depth, height};
    // The corner in the octant of the signs that belongs to the face across `axis`. Bevels share the corners of the
    // faces with their normals, which rounds them off.
    const auto point = [&](std::size_t axis, float sx, float sy, float sz) {
        const std::array<float, 3> signs = {sx, sy, sz};
        std::array<float, 3> p{};
        for (std::size_t i = 0; i < 3; ++i)
            p[i] = signs[i] * (size[i] / 2.0F - (i == axis ? 0.0F : bevel));
        const std::size_t across = axis == 0 ? 1 : 0;
        const std::size_t up = axis == 2 ? 1 : 2;
        const float u = perUnit * (p[across] + size[across] / 2.0F);
        const float v = perUnit * (size[up] / 2.0F - p[up]);
        const Vec3 normal{axis == 0 ? sx : 0.0F, axis == 1 ? sy : 0.0F, axis == 2 ? sz : 0.0F};
        const bool upright = size[up] > size[across];
        return Corner{{p[0], p[1], p[2]}, normal, upright ? v : u, upright ? u : v};
    };
    Shape block;
    const auto outward = [&block](std::vector<Corner> ring) {
        const Vec3 n = Cross(ring[1].position - ring[0].position, ring[2].position - ring[0].position);
        if (Dot(n, ring[0].position + ring[2].position) < 0.0F) std::reverse(ring.begin(), ring.end());
        if (ring.size() == 3)
            block.Triangle(ring[0], ring[1], ring[2]);
        else
            block.Quad(ring[0], ring[1], ring[2], ring[3]);
    };
    for (const float a : {-1.0F, 1.0F}) {
        outward({point(0, a, -1, -1), point(0, a, 1, -1), point(0, a, 1, 1), point(0, a, -1, 1)});
        outward({point(1, -1, a, -1), point(1, 1, a, -1), point(1, 1, a, 1), point(1, -1, a, 1)});
        outward({point(2, -1, -1, a), point(2, 1, -1, a), point(2, 1, 1, a), point(2, -1, 1, a)});
        for (const float b : {-1.0F, 1.0F}) {
            outward({point(0, a, b, -1), point(0, a, b, 1), point(1, a, b, 1), point(1, a, b, -1)});
            outward({point(0, a, -1, b), point(0, a, 1, b), point(2, a, 1, b), point(2, a, -1, b)});
            outward({point(1, -1, a, b), point(1, 1, a, b), point(2, 1, a, b), point(2, -1, a, b)});
            for (const float c : {-1.0F, 1.0F})
                outward({point(0, a, b, c), point(1, a, b, c), point(2, a, b, c)});
        }
    }
    return block.Move(0, 0, height / 2.0F);
}

Shape Sheet(int columns, int rows, const std::function<Vec3(float s, float t)>& place, float creaseDegrees) {
    const auto corner = [&](int column, int row) {
        const float s = static_cast<float>(column) / static_cast<float>(columns);
        const float t = static_cast<float>(row) / static_cast<float>(rows);
        return Corner{place(s, t), {}, s, 1.0F - t};
    };
    Shape sheet;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            sheet.Quad(corner(column, row), corner(column + 1, row), corner(column + 1, row + 1),
                       corner(column, row + 1));
    return sheet.Smooth(creaseDegrees);
}

Shape Lathe(const std::vector<std::pair<float, float>>& outline, int segments, int repeats, float creaseDegrees) {
    std::vector<float> lengths = {0.0F};
    for (std::size_t i = 1; i < outline.size(); ++i)
        lengths.push_back(lengths.back() + std::hypot(outline[i].first - outline[i - 1].first,
                                                      outline[i].second - outline[i - 1].second));
    const int rows = static_cast<int>(outline.size()) - 1;
    Shape shape = Sheet(
        segments, rows,
        [&](float s, float t) {
            const auto& [radius, height] = outline[static_cast<std::size_t>(std::lround(t * static_cast<float>(rows)))];
            return Vec3{radius * CosDegrees(360.0F * s), radius * SinDegrees(360.0F * s), height};
        },
        creaseDegrees);
    for (Corner& corner : shape.corners) {
        const auto row = static_cast<std::size_t>(std::lround((1.0F - corner.v) * static_cast<float>(rows)));
        corner.v = 1.0F - lengths[row] / lengths.back();
    }
    return shape.Uv(static_cast<float>(repeats), 1.0F);
}

Shape Cylinder(float radius, float height, int segments, int repeats) {
    return Cone(radius, radius, height, segments, repeats);
}

Shape Cone(float bottomRadius, float topRadius, float height, int segments, int repeats) {
    Shape cone = Lathe({{bottomRadius, 0}, {topRadius, height}}, segments, repeats);
    if (topRadius > 0.0F) cone.Add(At(Disc(topRadius, segments), 0, 0, height));
    return cone;
}

Shape Disc(float radius, int segments) {
    Shape disc;
    const auto rim = [&](int i) {
        const float a = 360.0F * static_cast<float>(i) / static_cast<float>(segments);
        return Corner{{radius * CosDegrees(a), radius * SinDegrees(a), 0},
                      {},
                      0.5F + 0.5F * CosDegrees(a),
                      0.5F - 0.5F * SinDegrees(a)};
    };
    for (int i = 0; i < segments; ++i)
        disc.Triangle({{0, 0, 0}, {}, 0.5F, 0.5F}, rim(i), rim(i + 1));
    return disc.Smooth(0);
}

Shape Blob(float radius, int subdivisions, float roughness, unsigned seed, float perUnit) {
    Shape blob;
    for (const auto& [a, b, c] : BallFaces(subdivisions)) {
        const auto corner = [&](const Vec3& p) {
            return Corner{p * (radius * (1.0F + roughness * Dents(p, seed))), {}, 0.0F, 0.0F};
        };
        blob.Triangle(corner(a), corner(b), corner(c));
    }
    return blob.Smooth(80).BoxUv(perUnit);
}

Shape Ball(float radius, int segments) {
    const int rows = std::max(3, segments / 2);
    return Sheet(segments, rows, [&](float s, float t) {
        const float up = 180.0F * t - 90.0F;
        return Vec3{radius * CosDegrees(360.0F * s) * CosDegrees(up), radius * SinDegrees(360.0F * s) * CosDegrees(up),
                    radius * SinDegrees(up)};
    });
}

Shape Tube(const std::vector<Vec3>& path, const std::vector<float>& radii, int segments, float perUnit) {
    const int rows = static_cast<int>(path.size()) - 1;
    std::vector<Vec3> sides;
    std::vector<Vec3> fronts;
    std::vector<float> lengths = {0.0F};
    Vec3 side;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const Vec3 way = Unit(path[std::min(i + 1, path.size() - 1)] - path[i > 0 ? i - 1 : 0]);
        // The side is carried along the path, so that the tube does not twist.
        if (i == 0)
            side = std::abs(way.z) > 0.9F ? Vec3{1, 0, 0} : Vec3{0, 0, 1};
        else
            lengths.push_back(lengths.back() + Length(path[i] - path[i - 1]));
        side = Unit(side - way * Dot(side, way));
        sides.push_back(side);
        fronts.push_back(Cross(way, side));
    }
    Shape tube = Sheet(segments, rows, [&](float s, float t) {
        const auto i = static_cast<std::size_t>(std::lround(t * static_cast<float>(rows)));
        return path[i] + sides[i] * (radii[i] * CosDegrees(360.0F * s)) +
               fronts[i] * (radii[i] * SinDegrees(360.0F * s));
    });
    for (Corner& corner : tube.corners) {
        const auto row = static_cast<std::size_t>(std::lround((1.0F - corner.v) * static_cast<float>(rows)));
        corner.v = corner.u;
        corner.u = lengths[row] * perUnit;
    }
    return tube;
}

Shape Tube(const std::vector<Vec3>& path, float radius, int segments, float perUnit) {
    return Tube(path, std::vector<float>(path.size(), radius), segments, perUnit);
}

Shape Extrude(const std::vector<std::pair<float, float>>& outline, float depth, float perUnit) {
    Shape shape;
    float middleX = 0.0F;
    float middleZ = 0.0F;
    for (const auto& [x, z] : outline) {
        middleX += x / static_cast<float>(outline.size());
        middleZ += z / static_cast<float>(outline.size());
    }
    const float half = depth / 2.0F;
    const auto corner = [&](float x, float z, float y) { return Corner{{x, y, z}, {}, perUnit * x, -perUnit * z}; };
    float length = 0.0F;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const auto& [x0, z0] = outline[i];
        const auto& [x1, z1] = outline[(i + 1) % outline.size()];
        shape.Triangle(corner(middleX, middleZ, -half), corner(x0, z0, -half), corner(x1, z1, -half));
        shape.Triangle(corner(middleX, middleZ, half), corner(x1, z1, half), corner(x0, z0, half));
        const float next = length + std::hypot(x1 - x0, z1 - z0);
        const auto side = [&](float x, float z, float y, float along) {
            return Corner{{x, y, z}, {}, perUnit * along, perUnit * y};
        };
        shape.Quad(side(x0, z0, half, length), side(x1, z1, half, next), side(x1, z1, -half, next),
                   side(x0, z0, -half, length));
        length = next;
    }
    return shape.Smooth(30);
}

Shape Picture(float width, float height, const Patch& patch) {
    const float half = width / 2.0F;
    Shape picture;
    // Seen from +y, the right of the screen is +x.
    picture.Quad({{half, 0, 0}, {}, patch.right, patch.bottom}, {{-half, 0, 0}, {}, patch.left, patch.bottom},
                 {{-half, 0, height}, {}, patch.left, patch.top}, {{half, 0, height}, {}, patch.right, patch.top});
    return picture.Smooth(0);
}

Shape Card(float width, float height, const Patch& patch) {
    return Picture(width, height, patch).TwoSided().Light({0, 0, 1});
}

Shape Cards(int count, float width, float height, const Patch& patch) {
    Shape cards;
    for (int i = 0; i < count; ++i)
        cards.Add(Card(width, height, patch)
                      .Turn(Axis::Z, 20.0F + 180.0F * static_cast<float>(i) / static_cast<float>(count)));
    return cards;
}

float Chance(unsigned seed, int index) {
    return static_cast<float>(demo::Scatter(index, index / 7 + 1, seed + 101U));
}

float Between(float low, float high, unsigned seed, int index) {
    return low + (high - low) * Chance(seed, index);
}

}  // namespace items
