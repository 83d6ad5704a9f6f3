#include "world/Camera.h"

#include <cmath>

#include "WorldFixture.h"
#include "graphics/device/DXGState.h"

namespace {

TEST(CameraTracks, SpeedFollowsTheWayLeft) {
    const struct {
        float way;
        float speed;
    } rows[] = {{1, 1.6F}, {2.5F, 4}, {7.5F, 16}, {30, 70}, {45, 200}, {100, 300}};
    for (const auto& row : rows) {
        Camera camera;
        camera.SetPosition({0, row.way, 0}, false);
        camera.Update(0.001F, false, false);
        EXPECT_NEAR(camera.GetPosition().y, row.speed * 0.001F, row.speed * 1e-5F) << row.way;
        camera.Update(1000, false, false);
        EXPECT_EQ(camera.GetPosition().y, row.way);
    }
    Camera camera;
    camera.SetUp({0, 0, 5}, false);  // made 1 long; the square root of 2 away
    camera.Update(0.1F, false, false);
    EXPECT_NEAR(Length(camera.GetUp() - Vec3{1, 0, 0}), 0.0707F, 1e-4F);
    camera.SetUp({0, 0, 5}, true);
    EXPECT_EQ(camera.GetUp().z, 1);
    // A drift moves what stands at its goal, away from it or together with it.
    camera.SetDrift({1, 0, 0});
    camera.Update(0.5F, false, true);
    EXPECT_EQ(camera.GetTarget().x, 0.5F);
    camera.Update(0.5F, true, true);
    EXPECT_GT(camera.GetTarget().x, 0.5F);
    EXPECT_EQ(camera.GetTarget().z, 10);
}

using OrbitTest = World;

TEST_F(OrbitTest, KeysTurnTheWorldCamera) {
    const auto expectAngle = [](float quarterTurns) {
        UpdateWorldCamera(0);
        WorldCamera().Update(1000, false, false);
        const Vec3 eye = WorldCamera().GetPosition();
        EXPECT_NEAR(eye.x, 40 + 6.8F * std::cos(quarterTurns * 1.5707963F), 1e-3F) << quarterTurns;
        EXPECT_NEAR(eye.y, 40 + 6.8F * std::sin(quarterTurns * 1.5707963F), 1e-3F) << quarterTurns;
        EXPECT_NEAR(eye.z, 7.9F, 1e-4F);
    };
    expectAngle(0.5F);
    const auto hold = [this](int key) {
        Press({key});
        UpdateWorldCamera(0.5F);
        Press({});
    };
    hold(77);
    expectAngle(1.5F);
    hold(75);
    hold(75);
    expectAngle(-0.5F);
    hold(76);
    expectAngle(0.5F);
}

// Every cell is picked at the very pixel at which the device draws its centre; the wrong handedness or a wrong scale
// misses.
TEST_F(OrbitTest, PicksLandOnTheDrawnCells) {
    for (const float turn : {0.0F, 0.3F, 1.1F}) {
        Press({77});
        UpdateWorldCamera(turn);
        Press({});
        WorldCamera().Update(1000, false, false);
        SetWorldViewport();
        WorldCamera().Apply();
        const Mat4 drawn = Multiply(Transpose(DXG::GetProjection()), DXG::GetView());
        DXG::SetView(Identity());
        for (int gx = 35; gx <= 45; ++gx)
            for (int gy = 35; gy <= 45; ++gy) {
                const Vec4 clip = Transform(drawn, {static_cast<float>(gx), static_cast<float>(gy), 0, 1});
                const float x = (clip.x / clip.w + 1) * 400;
                const float y = (1 - clip.y / clip.w) * 300;
                if (x < 0 || y < 0 || x >= 800 || y >= 600) continue;
                int pickedX = -1;
                int pickedY = -1;
                ScreenToCell(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)), pickedX, pickedY);
                EXPECT_EQ(pickedX, gx) << x << ", " << y;
                EXPECT_EQ(pickedY, gy) << x << ", " << y;
            }
        EXPECT_EQ(DXG::GetView().m, Identity().m);
    }
}

}  // namespace
