#include <gtest/gtest.h>

#include <utility>

#include "app/RunState.h"
#include "app/Scene.h"
#include "app/SceneManager.h"
#include "diag/CMemMan.h"
#include "support/TestFolder.h"

namespace {

std::string journal;

class NotedScene : public Scene {
  public:
    explicit NotedScene(std::string sceneName) : name(std::move(sceneName)) {}
    ~NotedScene() override { journal += name + " gone;"; }
    void Update(float seconds) override {
        journal += name + " " + std::to_string(seconds).substr(0, 5) + ";";
        if (!replacement) return;
        manager->RemoveScene();
        manager->AddScene(std::exchange(replacement, nullptr));
    }
    void Render() override { journal += name + " drawn;"; }
    void PreRender() override { journal += name + " before;"; }
    void OnEnter() override { journal += name + " in;"; }
    void OnLeave() override { journal += name + " out;"; }
    [[nodiscard]] std::string GetName() const override { return name; }

    SceneManager* manager = nullptr;
    Scene* replacement = nullptr;

  private:
    std::string name;
};

NotedScene* Make(const char* name) {
    return new2<NotedScene>({"NotedScene", "NotedScene", "test", 1}, name);
}

class Scenes : public testing::Test {
  protected:
    void SetUp() override {
        journal.clear();
        RunState::Default().Start();
    }
    std::string Journal() { return std::exchange(journal, {}); }
    support::TestFolder folder;
    SceneManager manager;
};

TEST_F(Scenes, StepsAreClampedAndTheFirstIsShort) {
    manager.AddScene(Make("a"));
    EXPECT_EQ(Journal(), "a in;");
    manager.Update(2.0F);
    manager.Update(2.0F);
    manager.Update(0.1F);
    EXPECT_EQ(Journal(), "a 0.001;a 0.250;a 0.100;");
    manager.PreRender();
    manager.Render();
    EXPECT_EQ(Journal(), "a before;a drawn;");
    manager.Shutdown();
    EXPECT_EQ(Journal(), "a out;a gone;");
}

TEST_F(Scenes, ACoveredSceneWaitsAndTheOneBelowIsNotEnteredAgain) {
    manager.AddScene(Make("a"));
    manager.AddScene(Make("b"));
    EXPECT_EQ(Journal(), "a in;a out;b in;");
    manager.Update(0.1F);
    manager.RemoveScene();
    EXPECT_EQ(Journal(), "b 0.001;b out;");
    manager.Update(0.1F);
    EXPECT_EQ(Journal(), "a 0.100;b gone;");
    manager.Shutdown();
}

TEST_F(Scenes, ASceneMayReplaceItselfAndLivesTillItsUpdateEnds) {
    NotedScene* first = Make("a");
    first->manager = &manager;
    first->replacement = Make("b");
    manager.AddScene(first);
    Journal();
    manager.Update(0.1F);
    EXPECT_EQ(Journal(), "a 0.001;a out;b in;a gone;");
    // The last scene ends the loop.
    manager.RemoveScene();
    EXPECT_TRUE(RunState::Default().IsRunning());
    manager.Update(0.1F);
    EXPECT_FALSE(RunState::Default().IsRunning());
    EXPECT_EQ(Journal(), "b out;b gone;");
}

TEST_F(Scenes, StatisticsAreWrittenOnceAndLeaveFirstUpdatesOut) {
    manager.AddScene(Make("a"));
    manager.Update(0.125F);  // not counted
    for (int i = 0; i < 30; ++i)
        manager.Update(0.125F);
    manager.AddScene(Make("b"));
    manager.Update(0.125F);
    manager.Update(9.0F);  // counted as a quarter of a second
    manager.RemoveAllScenes();
    const std::string expected =
        "average FPS for invididual scenes:\n"
        "  -a (over 3 seconds): 8 frames/sec\n"
        "  -b (over 0 seconds): 4 frames/sec\n"
        "\n";
    EXPECT_EQ(support::LogText("_stat.txt"), expected);
    manager.Shutdown();
    EXPECT_EQ(support::LogText("_stat.txt"), expected);
}

TEST_F(Scenes, MisuseIsReportedAndChangesNothing) {
    manager.AddScene(nullptr);
    manager.RemoveScene();
    EXPECT_EQ(manager.Top(), nullptr);
    EXPECT_EQ(support::ErrorLogWithoutStacks(),
              "Bad.. attempt to add null pointer as a scene.\n  -attempt made from:\n\n"
              "Bad.. attempt to remove a scene when none exist.\n  -attempt made from:\n\n");
}

}  // namespace
