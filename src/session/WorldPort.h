#pragma once
// What the session asks of the world that is drawn. The world implements it; the main scene plugs it in.

#include <string>

class WorldPort {
  public:
    virtual ~WorldPort() = default;
    // The floor of this cell has changed.
    virtual void MarkFloorsDirtyNear(int gx, int gy) = 0;
    // Builds the textures of a folder's floors and walls; the folder ends in a separator.
    virtual void LoadDreamGraphics(const std::string& folder) = 0;
};
