#pragma once
// The camera that eases towards its goals, the orbit control of the world's camera, and picking.

#include "math/VectorMatrix.h"

class Camera {
  public:
    Camera();
    virtual ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    // Sets the goal; `snap` also the current value, with no velocity left.
    virtual void SetUp(const Vec3& up, bool snap);
    [[nodiscard]] virtual Vec3 GetUp() const { return up.current; }
    virtual void SetPosition(const Vec3& position, bool snap);
    [[nodiscard]] virtual Vec3 GetPosition() const { return position.current; }
    virtual void SetTarget(const Vec3& target, bool snap);
    [[nodiscard]] virtual Vec3 GetTarget() const { return target.current; }
    virtual void SetDrift(const Vec3& newDrift) { drift = newDrift; }
    [[nodiscard]] virtual Vec3 GetDrift() const { return drift; }
    // Advances the tracks by `seconds`.
    virtual void Update(float seconds, bool moveGoals, bool moveCurrents);

    // Hands the view (times `model`, if given) to the device and becomes the active camera.
    void Apply(const Mat4* model = nullptr) const;

  private:
    struct Track {
        Vec3 current;
        Vec3 goal;
        Vec3 velocity;
    };
    static void SetTrack(Track& track, const Vec3& goal, bool snap);
    // True when the track has just arrived at its goal.
    static bool EaseToGoal(Track& track, float seconds, bool isUp);

    Track position;
    Track target;
    Track up;
    Vec3 drift;
};

// The camera applied last; null before the first.
const Camera* ActiveCamera();
// The world's one camera.
Camera& WorldCamera();

// The device's viewport and a projection of 45 degrees; nothing while the device is lost.
void SetCameraViewport(int x, int y, int width, int height, float nearDepth, float farDepth);

// The same for the world's picture of 800 x 600 pixels, depths 1 to 100, whatever the size of the output.
void SetWorldViewport();

// The orbit control, once per frame: keypad 4 and 6 turn the world camera, 5 puts it back; it follows the view
// position. Seen from the starting angle, the right of the screen is +gx -gy and away is -gx -gy.
void UpdateWorldCamera(float seconds);

// Where the device's current view, projection and viewport show a world point; false for a point on the camera's plane.
bool ProjectToScreen(const Vec3& point, Vec3& screen);
// The grid cell under a mouse position; untouched when the ray runs along the floor or while there is no device. The
// device's transforms are as before afterwards, its viewport is the world's.
void ScreenToCell(int mouseX, int mouseY, int& gx, int& gy);
