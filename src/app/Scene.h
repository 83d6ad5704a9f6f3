#pragma once
// What the player sees at one time: the chooser, the game.

#include <string>

// Scenes are made by the checked allocator; once added, the scene manager owns them. Main thread.
class Scene {
  public:
    virtual void Update(float seconds) = 0;
    virtual void Render() = 0;
    // Before the frame is begun on the graphics device, with the graphics lock held.
    virtual void PreRender() {}
    // Pushed on top of the stack.
    virtual void OnEnter() {}
    // No longer on top: covered or removed.
    virtual void OnLeave() {}
    // For the statistics.
    [[nodiscard]] virtual std::string GetName() const { return "Unknown"; }
    virtual ~Scene() = default;
};
