#include <gtest/gtest.h>

#include <cmath>

#include "math/VectorMatrix.h"
#include "support/TestFolder.h"

namespace {

void ExpectNear(const Vec3& actual, const Vec3& expected, float tolerance = 1e-5F) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

void ExpectRows(const Mat4& actual, const float (&expected)[16]) {
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(actual.m[i], expected[i], 1e-5F) << "element " << i;
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
    Vec3 hit;
    EXPECT_FALSE(IntersectRayPlane({0, 0, 5}, {1, 1, 0}, {0, 0, 1}, hit));
    ASSERT_TRUE(IntersectRayPlane({1, 2, 6}, {1, 0, -2}, {0, 0, 1}, hit));
    ExpectNear(hit, {4, 2, 0});
    EXPECT_EQ(PlaneFromPointNormal({0, 0, 3}, {0, 0, 2}).w, -3);
}

TEST(View, LookAtIsLeftHanded) {
    const Vec3 origin;
    ExpectRows(*LookAt(origin, {0, 1, 0}, {0, 0, 1}, false, false), {-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1});
    // Turning the side turns the upright vector made from it as well.
    ExpectRows(*LookAt(origin, {0, 1, 0}, {0, 0, 1}, false, true), {1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1});
    ExpectRows(*LookAt({5, 0, 2}, {5, 1, 2}, {0, 0, 1}, false, false),
               {-1, 0, 0, 5, 0, 0, 1, -2, 0, 1, 0, 0, 0, 0, 0, 1});
}

// The column form of the projection: w is -100 / 99 times the depth 4.
TEST(View, ProjectAndUnprojectUndoEachOther) {
    const ScreenRectangle screen{10, 20, 800, 600};
    const Mat4 projection = Perspective(3.1415927F / 2, 0.75F, 1, 100);
    Vec3 seen;
    ASSERT_TRUE(Project(Identity(), projection, screen, {2, 1, 4}, seen));
    ExpectNear(seen,
               {410 + 400 * 0.99F * 0.375F, 320 - 300 * 0.99F * 0.25F, 0.5F - 0.5F * 0.99F * (4 * 1.010101F + 1) / 4},
               1e-3F);
    const auto point = Unproject(Identity(), projection, screen, seen.x, seen.y, 2 * seen.z - 1);
    ASSERT_TRUE(point);
    ExpectNear(*point, {2, 1, 4}, 1e-3F);
    EXPECT_FALSE(Project(Identity(), projection, screen, {1, 2, 0}, seen));  // beside the eye
}

}  // namespace
