#pragma once
// Each labelled marker as a pillar with its two lines of text over it.

#include <string>
#include <vector>

#include "graphics/text/GBText.h"
#include "world/VisibleArea.h"

struct Marker;
namespace DXG {
class Texture;
}

struct PillarVertex {
    float x, y, z;
    float u, v;
};
// Ten segments of two triangles around the cell's centre; the texture goes round twice.
void AppendPillar(int gx, int gy, std::vector<PillarVertex>& out);

// Both lines centred by spaces, "|" shown as a space; `length` is that of the longer line.
G::ColouredText MarkerLabel(const Marker& marker, std::size_t& length);

class MarkerRenderer {
  public:
    // Makes the pillars' texture and the first label's text.
    void Create();
    void Destroy();
    // Nothing when there are no markers. The 2D transforms stand afterwards if a label was drawn.
    void Draw(const ViewCell& view);

  private:
    // A label keeps its text object from frame to frame, so that its quads are rebuilt only when it moves or changes.
    struct Label {
        G::Text* text = nullptr;
        std::string line;
        std::string subLine;
        std::size_t length = 0;
    };
    void DrawPillars(const std::vector<Marker>& markers, const ViewCell& view);
    void DrawLabel(Label& label, const Marker& marker);

    DXG::Texture* texture = nullptr;
    std::vector<Label> labels;  // in the order of the visible markers
    std::vector<PillarVertex> pillars;
};
