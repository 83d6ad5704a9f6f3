#pragma once
// Vectors and matrices of 32-bit floats. Matrices are stored row by row and act on column vectors: p' = M p,
// translation in the fourth column, A B applies B first.

#include <array>
#include <cstddef>
#include <optional>

struct Vec3 {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
};
struct Vec4 {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
    float w = 0.0F;
};

Vec3 operator+(const Vec3& a, const Vec3& b);
Vec3 operator-(const Vec3& a, const Vec3& b);
Vec3 operator-(const Vec3& a);
Vec3& operator+=(Vec3& a, const Vec3& b);
Vec3& operator-=(Vec3& a, const Vec3& b);
Vec3 operator*(const Vec3& a, float scale);
Vec3 operator/(const Vec3& a, float divisor);  // multiplies by 1 / divisor
Vec4 operator+(const Vec4& a, const Vec4& b);
Vec4 operator-(const Vec4& a, const Vec4& b);
Vec4& operator+=(Vec4& a, const Vec4& b);
Vec4& operator-=(Vec4& a, const Vec4& b);
Vec4 operator*(const Vec4& a, float scale);
Vec4 operator/(const Vec4& a, float divisor);

float Dot(const Vec3& a, const Vec3& b);
float Length(const Vec3& v);
Vec3 Cross(const Vec3& a, const Vec3& b);
// In place. A vector shorter than 0.00001 is reported with a call stack and divided all the same.
void Normalize(Vec3& v);

struct Mat4 {
    std::array<float, 16> m{};  // element (r, c) at 4 r + c
    float& operator()(int row, int column) { return m[Index(row, column)]; }
    float operator()(int row, int column) const { return m[Index(row, column)]; }

  private:
    static std::size_t Index(int row, int column) {
        return 4 * static_cast<std::size_t>(row) + static_cast<std::size_t>(column);
    }
};

Mat4 Identity();
Mat4 Transpose(const Mat4& a);
Mat4 Multiply(const Mat4& a, const Mat4& b);
Vec4 Transform(const Mat4& a, const Vec4& v);
float Determinant3(float a, float b, float c, float d, float e, float f, float g, float h, float i);  // row by row
float Determinant(const Mat4& a);
// Gauss-Jordan; empty with a message when the determinant is below 0.00001 in size or a pivot comes out as 0.
std::optional<Mat4> Inverse(const Mat4& a);

// The plane through a point: (n, -n.p) with n normalized.
Vec4 PlaneFromPointNormal(const Vec3& point, const Vec3& normal);
// Where the line meets the plane through the world's origin; false, `hit` untouched, when it runs along it.
bool IntersectRayPlane(const Vec3& origin, const Vec3& direction, const Vec3& normal, Vec3& hit);

// In the device's own layout (row vectors): xScale f, f, far / (far - near), with m[2][3] = 1, m[3][2] = near far /
// (near - far).
Mat4 Perspective(float fieldOfViewY, float xScaleFactor, float nearDepth, float farDepth);
// View matrix with the rows side = up x forward, up' = forward x side, forward: looking along +y with z up, the right
// of the screen is -x. Empty with a message for a camera in one point or without orientation.
std::optional<Mat4> LookAt(const Vec3& eye, const Vec3& target, const Vec3& up, bool flipUp, bool flipSide);

struct ScreenRectangle {
    float x = 0.0F;
    float y = 0.0F;
    float width = 0.0F;
    float height = 0.0F;
};
// Both take the projection exactly as Perspective built it and multiply it in column form, so that their w is m[3][2]
// times the depth along the view instead of the depth itself. Against the drawn picture, positions are scaled about the
// viewport's centre by 1 / -m[3][2] = (far - near) / (near far), which is 0.99 for near 1 and far 100.

// The world point under a screen point at a depth from 0 to 1. Empty when the product has no inverse.
std::optional<Vec3> Unproject(const Mat4& view, const Mat4& projection, const ScreenRectangle& viewport, float screenX,
                              float screenY, float depth);
// False for points on the camera's plane.
bool Project(const Mat4& view, const Mat4& projection, const ScreenRectangle& viewport, const Vec3& point,
             Vec3& screen);
