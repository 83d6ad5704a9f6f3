#pragma once
#include <string>
#include <vector>

#include "tools/items/Painter.h"

namespace items {

struct Texture {
    std::string name;  // without extension
    unsigned width = 0;
    unsigned height = 0;
    bool normals = false;  // has a companion with "_norm" behind its name
    Paint paint;
};

// Every picture that the models use or that items.txt puts in the place of another.
std::vector<Texture> AllTextures();

// By the part of the picture that they fill, for AllTextures.
// A handful of leaves, cut out.
Tone PaintSpray(double u, double v, unsigned dark, unsigned light);
Tone PaintFlora(double u, double v);
Tone PaintSigns(double u, double v);
Tone PaintSwatches(double u, double v);

}  // namespace items
