#include "world/Camera.h"

#include <cmath>
#include <span>

#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGState.h"
#include "input/KeyboardStateManager.h"
#include "session/TolvDataManager.h"

namespace {

constexpr float pi = 3.1415927F;
constexpr float fullTurn = 6.2831855F;
constexpr float restAngle = pi / 4.0F;

// Scan codes of the keypad.
constexpr std::uint8_t keypad4 = 75;
constexpr std::uint8_t keypad5 = 76;
constexpr std::uint8_t keypad6 = 77;

const Camera* activeCamera = nullptr;
float orbitAngle = restAngle;  // radians from +gx towards +gy

struct SpeedKnot {
    float x;
    float speed;  // units per second
};
constexpr SpeedKnot placeSpeeds[] = {{0.0F, 0.0F},  {0.05F, 4.0F},  {0.1F, 12.0F}, {0.2F, 20.0F},
                                     {0.4F, 40.0F}, {0.8F, 100.0F}, {1.0F, 300.0F}};
constexpr SpeedKnot upSpeeds[] = {{0.0F, 0.0F}, {0.25F, 0.2F}, {0.5F, 0.5F}, {1.0F, 1.0F}};

float SpeedAt(std::span<const SpeedKnot> knots, float x) {
    if (x <= knots.front().x) return knots.front().speed;
    for (std::size_t i = 1; i < knots.size(); ++i) {
        const SpeedKnot& from = knots[i - 1];
        const SpeedKnot& to = knots[i];
        if (x < to.x) return from.speed + (to.speed - from.speed) * (x - from.x) / (to.x - from.x);
    }
    return knots.back().speed;
}

void OrbitByKeys(float seconds) {
    const KeyboardStateManager& keyboard = KeyboardStateManager::Default();
    if (keyboard.IsKeyDown(keypad4)) orbitAngle -= pi * seconds;
    if (keyboard.IsKeyDown(keypad6)) orbitAngle += pi * seconds;
    if (keyboard.IsKeyDown(keypad5)) orbitAngle = restAngle;
    if (orbitAngle < 0.0F) orbitAngle += fullTurn;
    if (orbitAngle > fullTurn) orbitAngle -= fullTurn;
}

ScreenRectangle DeviceViewport() {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    DXG::GetViewport(x, y, width, height);
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(width), static_cast<float>(height)};
}

// Truncated toward zero; false when no cell has such a number.
bool CellNumber(float place, int& number) {
    const float shifted = place + 0.5F;
    if (!(std::abs(shifted) < 2.0e9F)) return false;
    number = static_cast<int>(shifted);
    return true;
}

}  // namespace

Camera::Camera() {
    target.current = target.goal = {0.0F, 0.0F, 10.0F};
    up.current = up.goal = {1.0F, 0.0F, 0.0F};
}

Camera::~Camera() {
    if (activeCamera == this) activeCamera = nullptr;
}

void Camera::SetTrack(Track& track, const Vec3& goal, bool snap) {
    track.goal = goal;
    if (!snap) return;
    track.current = goal;
    track.velocity = Vec3();
}

void Camera::SetUp(const Vec3& newUp, bool snap) {
    SetTrack(up, newUp, snap);
    Normalize(up.current);
    Normalize(up.goal);
}

void Camera::SetPosition(const Vec3& newPosition, bool snap) {
    SetTrack(position, newPosition, snap);
}

void Camera::SetTarget(const Vec3& newTarget, bool snap) {
    SetTrack(target, newTarget, snap);
}

bool Camera::EaseToGoal(Track& track, float seconds, bool isUp) {
    const Vec3 way = track.goal - track.current;
    const float distance = Length(way);
    if (distance < 0.0001F) return false;
    const float speed = isUp ? SpeedAt(upSpeeds, 0.5F * distance) : SpeedAt(placeSpeeds, 0.02F * distance);
    const float step = speed * seconds;
    if (step <= distance) {
        track.current += way * (step / distance);
        return false;
    }
    track.current = track.goal;
    track.velocity = Vec3();
    return true;
}

void Camera::Update(float seconds, bool moveGoals, bool moveCurrents) {
    for (Track* track : {&position, &target}) {
        const bool arrived = EaseToGoal(*track, seconds, false);
        if (arrived) continue;
        if (moveCurrents) track->current += drift * seconds;
        if (moveGoals) track->goal += drift * seconds;
    }
    (void)EaseToGoal(up, seconds, true);
}

void Camera::Apply(const Mat4* model) const {
    const std::optional<Mat4> view = LookAt(GetPosition(), GetTarget(), GetUp(), false, false);
    if (!view) return;
    DXG::SetView(model ? Multiply(*view, *model) : *view);
    activeCamera = this;
}

const Camera* ActiveCamera() {
    return activeCamera;
}

Camera& WorldCamera() {
    static Camera camera;
    return camera;
}

void SetCameraViewport(int x, int y, int width, int height, float nearDepth, float farDepth) {
    if (DXG::IsDeviceLost()) return;
    DXG::SetViewport(x, y, width, height);
    DXG::SetProjection(
        Perspective(pi / 4.0F, static_cast<float>(height) / static_cast<float>(width), nearDepth, farDepth));
}

void SetWorldViewport() {
    SetCameraViewport(0, 0, 800, 600, 1.0F, 100.0F);
}

void UpdateWorldCamera(float seconds) {
    OrbitByKeys(seconds);
    Camera& camera = WorldCamera();
    camera.SetUp({0.0F, 0.0F, 1.0F}, false);
    int gx = 0;
    int gy = 0;
    TolvDataManager::Default().GetViewPosition(gx, gy);
    const float x = static_cast<float>(gx);
    const float y = static_cast<float>(gy);
    camera.SetTarget({x, y, 0.0F}, false);
    camera.SetPosition({x + 6.8F * std::cos(orbitAngle), y + 6.8F * std::sin(orbitAngle), 7.9F}, false);
    camera.Update(2.0F * seconds, false, true);
}

bool ProjectToScreen(const Vec3& point, Vec3& screen) {
    return Project(DXG::GetView(), DXG::GetProjection(), DeviceViewport(), point, screen);
}

void ScreenToCell(int mouseX, int mouseY, int& gx, int& gy) {
    if (!DXG::IsInitialized() || DXG::IsDeviceLost()) return;
    const Mat4 keptWorld = DXG::GetWorld();
    const Mat4 keptView = DXG::GetView();
    const Mat4 keptProjection = DXG::GetProjection();
    DXG::SetWorld(Identity());
    WorldCamera().Apply();
    SetWorldViewport();
    const Mat4 view = DXG::GetView();
    const Mat4 projection = DXG::GetProjection();
    const ScreenRectangle viewport = DeviceViewport();
    const float x = static_cast<float>(mouseX);
    const float y = static_cast<float>(mouseY);
    const std::optional<Vec3> near = Unproject(view, projection, viewport, x, y, 0.0F);
    const std::optional<Vec3> far = Unproject(view, projection, viewport, x, y, 1.0F);
    DXG::SetWorld(keptWorld);
    DXG::SetView(keptView);
    DXG::SetProjection(keptProjection);

    Vec3 hit;
    int column = 0;
    int row = 0;
    if (!near || !far || !IntersectRayPlane(*near, *far - *near, {0.0F, 0.0F, 1.0F}, hit)) return;
    if (!CellNumber(hit.x, column) || !CellNumber(hit.y, row)) return;
    gx = column;
    gy = row;
}
