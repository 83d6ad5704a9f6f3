#include "world/Camera.h"

#include <cmath>

#include "WorldFixture.h"
#include "graphics/device/DXGState.h"

namespace {

TEST(CameraTracks, DirectionsAreTurnedAndTargetsDrift) {
    Camera camera;
    camera.SetUp({0, 0, 5}, false);  // made 1 long; the square root of 2 away
    camera.Update(0.1F, false, false);
    EXPECT_NEAR(Length(camera.GetUp() - Vec3{1, 0, 0}), 0.0707F, 1e-4F);
    camera.SetUp({0, 0, 5}, true);
    EXPECT_EQ(camera.GetUp().z, 1);
    camera.SetDrift({1, 0, 0});
    camera.Update(0.5F, false, true);
    EXPECT_EQ(camera.GetTarget().x, 0.5F);
}

using OrbitTest = World;

TEST_F(OrbitTest, KeysTurnTheWorldCamera) {
    const auto hold = [this](int key, float expectedQuarterTurns) {
        Press({key});
        UpdateWorldCamera(0.5F);
        Press({});
        WorldCamera().Update(1000, false, false);
        const Vec3 eye = WorldCamera().GetPosition();
        EXPECT_NEAR(eye.x, 40 + 6.8F * std::cos(expectedQuarterTurns * 1.5707963F), 1e-3F) << expectedQuarterTurns;
        EXPECT_NEAR(eye.y, 40 + 6.8F * std::sin(expectedQuarterTurns * 1.5707963F), 1e-3F) << expectedQuarterTurns;
    };
    hold(77, 1.5F);
    hold(75, 0.5F);
    hold(75, -0.5F);
    hold(76, 0.5F);
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
                std::pair picked(-1, -1);
                ScreenToCell(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)), picked.first,
                             picked.second);
                EXPECT_EQ(picked, std::pair(gx, gy)) << x << ", " << y;
            }
        EXPECT_EQ(DXG::GetView().m, Identity().m);
    }
}

}  // namespace
