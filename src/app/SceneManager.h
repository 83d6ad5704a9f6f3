#pragma once
// The stack of scenes, the frame-rate display over them and their statistics.

#include <array>
#include <string>
#include <vector>

class Scene;
namespace G {
class Text;
}

class SceneManager {
  public:
    static SceneManager& Default();

    // Pushes a scene and takes it over. The first call registers the device hooks.
    void AddScene(Scene* scene);
    // Takes the top scene off; it is destroyed at the end of the next update.
    void RemoveScene();
    // The first call also writes the frame rates of the scenes.
    void RemoveAllScenes();

    // The calls of every frame, in this order; PreRender and Render hold the graphics lock.
    void PreRender();
    void Render();
    void Update(float seconds);
    void Shutdown();

    [[nodiscard]] Scene* Top() const { return scenes.empty() ? nullptr : scenes.back(); }

  private:
    struct SceneStats {
        std::string name;
        int updates = 0;
        float seconds = 0.0F;
    };

    static void ReleaseHook();
    static void RestoreHook();
    void UpdateFrameRateText(float seconds);
    void UpdateTop(float seconds);
    void CountUpdate(float seconds);
    void WriteStatistics();
    void DestroyRemoved();

    std::vector<Scene*> scenes;   // the top is the last
    std::vector<Scene*> removed;  // oldest first
    bool sceneChanged = false;
    G::Text* frameRateText = nullptr;
    std::array<float, 4> lastRates{};  // newest first
    std::vector<SceneStats> statistics;
    bool statisticsWritten = false;
    bool hooksRegistered = false;
};
