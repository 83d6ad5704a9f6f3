#include <gtest/gtest.h>

#include <cmath>

#include "math/VectorMatrix.h"
#include "support/TestFolder.h"

namespace {

constexpr float quarterTurn = 3.1415927F / 4.0F;

void ExpectNear(const Vec3& actual, const Vec3& expected, float tolerance = 1e-5F) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

void ExpectRows(const Mat4& actual, const float (&expected)[16]) {
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(actual.m[i], expected[i], 1e-5F) << "element " << i;
}

// The eye of the world's camera over `view` at an orbit angle.
Mat4 OrbitView(const Vec3& view, float angle) {
    const Vec3 eye{view.x + 6.8F * std::cos(angle), view.y + 6.8F * std::sin(angle), 7.9F};
    return LookAt(eye, view, {0, 0, 1}, false, false).value();
}

// Where the device draws a point: row vectors, clip space divided by its w, y up in the picture turned down.
Vec3 DrawnAt(const Mat4& view, const Mat4& projection, const Vec3& point) {
    const Vec4 clip = Transform(Transpose(projection), Transform(view, {point.x, point.y, point.z, 1}));
    return {(clip.x / clip.w + 1) * 400, (1 - clip.y / clip.w) * 300, clip.z / clip.w};
}

TEST(Matrix, InverseTimesMatrixIsIdentity) {
    const Mat4 cases[] = {
        {{0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0}},      // a row permutation: every pivot starts as 0
        {{2, 1, -3, 4, 5, -6, 7, 8, -9, 1, 2, 3, 4, 7, -1, 1}},  // nothing special
        {{0, 0, 2, 1, 0, 3, 0, 0, 5, 0, 0, 0, 1, 0, 0, 4}},
    };
    for (const Mat4& matrix : cases) {
        const auto inverse = Inverse(matrix);
        ASSERT_TRUE(inverse);
        ExpectRows(Multiply(*inverse, matrix), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    }
    EXPECT_NEAR(Determinant(cases[0]), -1, 1e-6F);  // of an odd permutation
    EXPECT_NEAR(Determinant(cases[2]), -15 * 8, 1e-4F);
}

TEST(Matrix, RefusalsAreReportedAndNothingIsThrown) {
    const support::TestFolder folder;
    Mat4 singular = Identity();
    singular(2, 2) = 0.000009F;
    EXPECT_FALSE(Inverse(singular));
    EXPECT_FALSE(LookAt({1, 2, 3}, {1, 2, 3}, {0, 0, 1}, false, false));
    EXPECT_FALSE(LookAt({1, 2, 3}, {1, 2, 4}, {0, 0, 0}, false, false));
    Vec3 nothing{0, 0, 0};
    Normalize(nothing);
    EXPECT_FALSE(std::isfinite(nothing.x));
    const std::string log = support::ErrorLogText();
    EXPECT_EQ(log.find("Attempt to take the inverse of a matrix that doesn't have an inverse.\n"
                       "Tamsel's making another attempt to construct a singularity camera.\n"
                       "Tamsel's trying to make a camera with no orientation.\n"
                       "Attepmt to divide by 0 while normalizing.\n  -call stack"),
              0U);
    Vec3 hit{7, 7, 7};
    EXPECT_FALSE(IntersectRayPlane({0, 0, 5}, {1, 1, 0}, {0, 0, 1}, hit));
    EXPECT_EQ(hit.x, 7);
    ASSERT_TRUE(IntersectRayPlane({1, 2, 6}, {1, 0, -2}, {0, 0, 1}, hit));
    ExpectNear(hit, {4, 2, 0});
    const Vec4 plane = PlaneFromPointNormal({0, 0, 3}, {0, 0, 2});
    EXPECT_EQ(plane.z, 1);
    EXPECT_EQ(plane.w, -3);
}

TEST(View, LookAtIsLeftHanded) {
    const Vec3 origin{0, 0, 0};
    ExpectRows(*LookAt(origin, {0, 1, 0}, {0, 0, 1}, false, false), {-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1});
    ExpectRows(*LookAt(origin, {0, 1, 0}, {0, 0, 1}, true, false), {-1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1});
    // Turning the side turns the upright vector made from it as well.
    ExpectRows(*LookAt(origin, {0, 1, 0}, {0, 0, 1}, false, true), {1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1});
    ExpectRows(*LookAt({5, 0, 2}, {5, 1, 2}, {0, 0, 1}, false, false),
               {-1, 0, 0, 5, 0, 0, 1, -2, 0, 1, 0, 0, 0, 0, 0, 1});
}

// Orbit angle 45 degrees: the eye stands towards +x +y, so away is -x -y, and right is +x -y because the view is
// left-handed.
TEST(View, ScreenRightIsPlusXMinusY) {
    const Mat4 view = OrbitView({20, 30, 0}, quarterTurn);
    const auto drawn = [&](float x, float y, float z) {
        return DrawnAt(view, Perspective(quarterTurn, 0.75F, 1, 100), {x, y, z});
    };
    ExpectNear({drawn(20, 30, 0).x, drawn(20, 30, 0).y, 0}, {400, 300, 0}, 0.01F);
    EXPECT_TRUE(drawn(21, 29, 0).x > 450 && drawn(19, 31, 0).x < 350);
    EXPECT_TRUE(drawn(19, 29, 0).y < 270 && drawn(21, 31, 0).y > 330 && drawn(20, 30, 2).y < 250);
    EXPECT_TRUE(0 < drawn(21, 31, 0).z && drawn(21, 31, 0).z < drawn(19, 29, 0).z && drawn(19, 29, 0).z < 1);
}

TEST(View, ProjectAndUnprojectAgreeWithThePictureUpToTheirScale) {
    const ScreenRectangle screen{0, 0, 800, 600};
    const Mat4 projection = Perspective(quarterTurn, 0.75F, 1, 100);
    for (const float angle : {0.0F, quarterTurn, 2.5F, 5.0F}) {
        const Mat4 view = OrbitView({-3, 8, 0}, angle);
        for (float dx = -4; dx <= 4; ++dx)
            for (float dy = -4; dy <= 4; ++dy) {
                const Vec3 cell{-3 + dx, 8 + dy, 0};
                Vec3 projected;
                ASSERT_TRUE(Project(view, projection, screen, cell, projected));
                const Vec3 drawn = DrawnAt(view, projection, cell);
                EXPECT_NEAR(projected.x, 400 + (drawn.x - 400) * 0.99F, 0.05F);
                EXPECT_NEAR(projected.y, 300 + (drawn.y - 300) * 0.99F, 0.05F);

                const auto from = Unproject(view, projection, screen, projected.x, projected.y, 0);
                const auto towards = Unproject(view, projection, screen, projected.x, projected.y, 1);
                ASSERT_TRUE(from && towards);
                Vec3 hit;
                ASSERT_TRUE(IntersectRayPlane(*from, *towards - *from, {0, 0, 1}, hit));
                ExpectNear(hit, cell, 0.02F);
            }
    }
    Vec3 screenPoint;
    EXPECT_FALSE(Project(Identity(), projection, screen, {1, 2, 0}, screenPoint));  // beside the eye
}

}  // namespace
