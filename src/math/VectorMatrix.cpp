#include "math/VectorMatrix.h"

#include <cmath>

#include "diag/CallStack.h"
#include "diag/LogFile.h"

namespace {

// Lengths, determinants and pivots below this count as nothing.
constexpr float tiny = 0.00001F;

void AddRow(Mat4& a, int target, int source, float factor) {
    for (int c = 0; c < 4; ++c)
        a(target, c) += factor * a(source, c);
}
void DivideRow(Mat4& a, int row, float divisor) {
    for (int c = 0; c < 4; ++c)
        a(row, c) /= divisor;
}

}  // namespace

Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vec3 operator-(const Vec3& a) {
    return {-a.x, -a.y, -a.z};
}
Vec3& operator+=(Vec3& a, const Vec3& b) {
    return a = a + b;
}
Vec3& operator-=(Vec3& a, const Vec3& b) {
    return a = a - b;
}
Vec3 operator*(const Vec3& a, float scale) {
    return {a.x * scale, a.y * scale, a.z * scale};
}
Vec3 operator/(const Vec3& a, float divisor) {
    return a * (1.0F / divisor);
}
Vec4 operator+(const Vec4& a, const Vec4& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
}
Vec4 operator-(const Vec4& a, const Vec4& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w};
}
Vec4& operator+=(Vec4& a, const Vec4& b) {
    return a = a + b;
}
Vec4& operator-=(Vec4& a, const Vec4& b) {
    return a = a - b;
}
Vec4 operator*(const Vec4& a, float scale) {
    return {a.x * scale, a.y * scale, a.z * scale, a.w * scale};
}
Vec4 operator/(const Vec4& a, float divisor) {
    return a * (1.0F / divisor);
}

float Dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
float Length(const Vec3& v) {
    return std::sqrt(Dot(v, v));
}
Vec3 Cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

void Normalize(Vec3& v) {
    const float length = Length(v);
    if (length < tiny) WriteReport(errorLog, "Attepmt to divide by 0 while normalizing.\n", "  -call stack", false);
    v = v / length;
}

Mat4 Identity() {
    Mat4 identity;
    for (int i = 0; i < 4; ++i)
        identity(i, i) = 1.0F;
    return identity;
}

Mat4 Transpose(const Mat4& a) {
    Mat4 transposed;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            transposed(c, r) = a(r, c);
    return transposed;
}

Mat4 Multiply(const Mat4& a, const Mat4& b) {
    Mat4 product;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            product(r, c) = a(r, 0) * b(0, c) + a(r, 1) * b(1, c) + a(r, 2) * b(2, c) + a(r, 3) * b(3, c);
    return product;
}

Vec4 Transform(const Mat4& a, const Vec4& v) {
    const auto row = [&](int r) { return a(r, 0) * v.x + a(r, 1) * v.y + a(r, 2) * v.z + a(r, 3) * v.w; };
    return {row(0), row(1), row(2), row(3)};
}

float Determinant3(float a, float b, float c, float d, float e, float f, float g, float h, float i) {
    return a * (e * i - f * h) - b * (d * i - f * g) + c * (d * h - e * g);
}

float Determinant(const Mat4& a) {
    // The minor of a first-row element: rows 1 to 3 without its column.
    const auto minor = [&](int p, int q, int r) {
        return Determinant3(a(1, p), a(1, q), a(1, r), a(2, p), a(2, q), a(2, r), a(3, p), a(3, q), a(3, r));
    };
    return a(0, 0) * minor(1, 2, 3) - a(0, 1) * minor(0, 2, 3) + a(0, 2) * minor(0, 1, 3) - a(0, 3) * minor(0, 1, 2);
}

std::optional<Mat4> Inverse(const Mat4& a) {
    Mat4 left = a;
    Mat4 right = Identity();
    bool invertible = std::abs(Determinant(a)) >= tiny;
    for (int i = 0; invertible && i < 4; ++i) {
        for (int j = i + 1; j < 4 && std::abs(left(i, i)) < tiny; ++j) {
            AddRow(left, i, j, 1.0F);
            AddRow(right, i, j, 1.0F);
        }
        const float pivot = left(i, i);
        if (pivot == 0.0F) {
            invertible = false;
            break;
        }
        DivideRow(left, i, pivot);
        DivideRow(right, i, pivot);
        for (int k = i + 1; k < 4; ++k) {
            const float factor = left(k, i);
            if (std::abs(factor) <= tiny) continue;
            AddRow(left, k, i, -factor);
            AddRow(right, k, i, -factor);
        }
    }
    if (!invertible) {
        errorLog.Write("Attempt to take the inverse of a matrix that doesn't have an inverse.\n");
        return std::nullopt;
    }
    for (int i = 1; i < 4; ++i)
        for (int r = 0; r < i; ++r) {
            const float factor = left(r, i);
            AddRow(left, r, i, -factor);
            AddRow(right, r, i, -factor);
        }
    return right;
}

Vec4 PlaneFromPointNormal(const Vec3& point, const Vec3& normal) {
    Vec3 unit = normal;
    Normalize(unit);
    return {unit.x, unit.y, unit.z, -Dot(unit, point)};
}

bool IntersectRayPlane(const Vec3& origin, const Vec3& direction, const Vec3& normal, Vec3& hit) {
    const float along = Dot(direction, normal);
    if (!(std::abs(along) > tiny)) return false;
    hit = origin + direction * (-Dot(origin, normal) / along);
    return true;
}

Mat4 Perspective(float fieldOfViewY, float xScaleFactor, float nearDepth, float farDepth) {
    const float f = 1.0F / std::tan(fieldOfViewY / 2.0F);
    Mat4 m;
    m(0, 0) = xScaleFactor * f;
    m(1, 1) = f;
    m(2, 2) = farDepth / (farDepth - nearDepth);
    m(2, 3) = 1.0F;
    m(3, 2) = nearDepth * farDepth / (nearDepth - farDepth);
    return m;
}

std::optional<Mat4> LookAt(const Vec3& eye, const Vec3& target, const Vec3& up, bool flipUp, bool flipSide) {
    if (Length(eye - target) < tiny) {
        errorLog.Write("Tamsel's making another attempt to construct a singularity camera.\n");
        return std::nullopt;
    }
    if (Length(up) < tiny) {
        errorLog.Write("Tamsel's trying to make a camera with no orientation.\n");
        return std::nullopt;
    }
    Vec3 forward = target - eye;
    Normalize(forward);
    Vec3 side = Cross(up, forward);
    Normalize(side);
    if (flipSide) side = -side;
    Vec3 upright = Cross(forward, side);
    if (flipUp) upright = -upright;

    Mat4 view;
    const Vec3 rows[3] = {side, upright, forward};
    for (int r = 0; r < 3; ++r) {
        view(r, 0) = rows[r].x;
        view(r, 1) = rows[r].y;
        view(r, 2) = rows[r].z;
        view(r, 3) = -Dot(rows[r], eye);
    }
    view(3, 3) = 1.0F;
    return view;
}

std::optional<Vec3> Unproject(const Mat4& view, const Mat4& projection, const ScreenRectangle& viewport, float screenX,
                              float screenY, float depth) {
    const std::optional<Mat4> inverse = Inverse(Multiply(projection, view));
    if (!inverse) return std::nullopt;
    const float nx = -2.0F * ((screenX - viewport.x) / viewport.width - 0.5F);
    const float ny = 2.0F * ((screenY - viewport.y) / viewport.height - 0.5F);
    const Vec4 q = Transform(*inverse, {nx, ny, depth, 1.0F});
    return Vec3{q.x, q.y, q.z} / q.w;
}

bool Project(const Mat4& view, const Mat4& projection, const ScreenRectangle& viewport, const Vec3& point,
             Vec3& screen) {
    Vec4 q = Transform(projection, Transform(view, {point.x, point.y, point.z, 1.0F}));
    if (std::abs(q.w) < tiny) return false;
    q = q / q.w;
    screen.x = (1.0F - q.x) * viewport.width * 0.5F + viewport.x;
    screen.y = (q.y + 1.0F) * viewport.height * 0.5F + viewport.y;
    screen.z = (q.z + 1.0F) * 0.5F;
    return true;
}
