#pragma once
// The world in 3D: floors, walls, characters, markers, items and the hovered cell around the view position.

#include <string>

class WorldPort;

namespace TolvRenderer {

bool Init();  // makes the renderers; the camera starts at its place
void Update(float seconds);
void Render();
void SetHoverCell(int gx, int gy);
void Shutdown();
// What the session may ask of the world.
WorldPort& Port();

}  // namespace TolvRenderer
