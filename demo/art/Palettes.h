#pragma once
// The palettes of the demo world: the same indices, lit differently.

#include <span>
#include <string>
#include <vector>

#include "demo/art/Canvas.h"
#include "demo/formats/PcxWriter.h"

namespace demo {

// Entry 0 is the transparent one, 206 is left alone because the game cleans it out of walls, the last sixteen are
// lights.
constexpr int glassEntries = 240;  // eight, dark to bright
constexpr int glowEntries = 248;   // eight, dark to bright
constexpr int entriesPerLight = 8;
constexpr int cleanedEntry = 206;

// The colours that suit these pictures best.
RgbPalette ChoosePalette(std::span<const Canvas* const> pictures);

struct Mood {
    const char* fileName;
    Shade tint;    // what white becomes
    Shade shadow;  // what black becomes
    Shade glass;   // the brightest pane
    Shade glow;    // the brightest light
};
// day.pcx, evening.pcx and one for each dream.
std::span<const Mood> Moods();
RgbPalette Lit(const RgbPalette& plain, const Mood& mood);

}  // namespace demo
