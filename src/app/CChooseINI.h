#pragma once
// The first scene: the list of player files, one of which the player picks.

#include <string>
#include <vector>

#include "app/Scene.h"
#include "graphics/device/DXGTexture.h"
#include "graphics/text/GBText.h"

class CChooseINI : public Scene {
  public:
    CChooseINI();

    void Update(float seconds) override;
    void Render() override;
    [[nodiscard]] std::string GetName() const override { return "CChooseINI"; }

  private:
    struct Entry {
        std::string display;  // the player's name and the file name in brackets
        std::string fileName;
    };

    void CollectEntries();
    void Choose();

    G::Text listText;
    std::vector<Entry> entries;
    int selected = 0;
    float markerPhase = 0.0F;  // radians
    DXG::Texture marker;
    G::Text banner;
};
