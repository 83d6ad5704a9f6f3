#include "demo/art/Palettes.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace demo {

namespace {

// A colour that occurs in the pictures, with how often.
struct Sample {
    Shade shade;
    double weight = 0.0;
    double distance = 1e9;  // to the nearest chosen colour, squared
    std::size_t nearest = 0;
};

double Distance(Shade a, Shade b) {
    const double red = a.red - b.red;
    const double green = a.green - b.green;
    const double blue = a.blue - b.blue;
    return 0.9 * red * red + 1.4 * green * green + 0.7 * blue * blue;
}

std::vector<Sample> Collect(std::span<const Canvas* const> pictures) {
    std::map<int, Sample> bins;
    const auto step = [](double value) { return static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 31.0)); };
    for (const Canvas* picture : pictures)
        for (int y = 0; y < picture->Height(); y += 2)
            for (int x = 0; x < picture->Width(); x += 2) {
                const Spot& spot = picture->At(x, y);
                if (spot.matter != Matter::Paint) continue;
                Sample& bin = bins[step(spot.shade.red) << 10 | step(spot.shade.green) << 5 | step(spot.shade.blue)];
                bin.shade = bin.shade + spot.shade;
                bin.weight += 1.0;
            }
    std::vector<Sample> samples;
    for (auto& [key, bin] : bins) {
        bin.shade = bin.shade * (1.0 / bin.weight);
        // Small bright details count for more than their area.
        bin.weight = std::sqrt(bin.weight);
        samples.push_back(bin);
    }
    return samples;
}

// Starts with colours far from each other, then moves each to the middle of those that it stands for.
std::vector<Shade> Cluster(std::vector<Sample>& samples, std::size_t count) {
    std::vector<Shade> chosen;
    while (chosen.size() < count) {
        const auto next = std::max_element(samples.begin(), samples.end(), [](const Sample& a, const Sample& b) {
            return a.weight * a.distance < b.weight * b.distance;
        });
        chosen.push_back(next->shade);
        for (Sample& sample : samples)
            sample.distance = std::min(sample.distance, Distance(sample.shade, chosen.back()));
    }
    for (int round = 0; round < 12; ++round) {
        std::vector<Sample> sums(count);
        for (const Sample& sample : samples) {
            std::size_t best = 0;
            for (std::size_t i = 1; i < count; ++i)
                if (Distance(sample.shade, chosen[i]) < Distance(sample.shade, chosen[best])) best = i;
            sums[best].shade = sums[best].shade + sample.shade * sample.weight;
            sums[best].weight += sample.weight;
        }
        for (std::size_t i = 0; i < count; ++i)
            if (sums[i].weight > 0.0) chosen[i] = sums[i].shade * (1.0 / sums[i].weight);
    }
    std::sort(chosen.begin(), chosen.end(),
              [](Shade a, Shade b) { return a.red + 2.0 * a.green + a.blue < b.red + 2.0 * b.green + b.blue; });
    return chosen;
}

Rgb ToRgb(Shade shade) {
    const auto byte = [](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
    };
    return {byte(shade.red), byte(shade.green), byte(shade.blue)};
}

Shade ToShade(Rgb rgb) {
    return {rgb.red / 255.0, rgb.green / 255.0, rgb.blue / 255.0};
}

constexpr Mood moods[] = {
    {"day.pcx", {1.0, 1.0, 1.0}, {0.0, 0.0, 0.0}, {0.72, 0.86, 0.94}, {1.0, 0.86, 0.45}},
    {"evening.pcx", {0.62, 0.56, 0.80}, {0.02, 0.015, 0.06}, {1.0, 0.82, 0.42}, {1.0, 0.90, 0.60}},
    {"tide.pcx", {0.86, 0.96, 1.0}, {0.0, 0.09, 0.20}, {0.6, 1.0, 0.95}, {0.65, 1.0, 0.85}},
    {"stars.pcx", {0.92, 0.88, 1.08}, {0.01, 0.0, 0.05}, {0.9, 0.85, 1.0}, {0.85, 0.92, 1.0}},
};

}  // namespace

RgbPalette ChoosePalette(std::span<const Canvas* const> pictures) {
    std::vector<Sample> samples = Collect(pictures);
    const std::vector<Shade> chosen = Cluster(samples, glassEntries - 2);
    RgbPalette palette{};
    std::size_t next = 0;
    for (int entry = 1; entry < glassEntries; ++entry)
        if (entry != cleanedEntry) palette[static_cast<std::size_t>(entry)] = ToRgb(chosen[next++]);
    return palette;
}

std::span<const Mood> Moods() {
    return moods;
}

RgbPalette Lit(const RgbPalette& plain, const Mood& mood) {
    RgbPalette lit{};
    for (std::size_t entry = 1; entry < glassEntries; ++entry) {
        const Shade shade = ToShade(plain[entry]);
        const auto blend = [](double value, double black, double white) { return black + value * (white - black); };
        lit[entry] = ToRgb({blend(shade.red, mood.shadow.red, mood.tint.red),
                            blend(shade.green, mood.shadow.green, mood.tint.green),
                            blend(shade.blue, mood.shadow.blue, mood.tint.blue)});
    }
    for (std::size_t i = 0; i < entriesPerLight; ++i) {
        const double brightness = 0.45 + 0.55 * static_cast<double>(i) / (entriesPerLight - 1);
        lit[glassEntries + i] = ToRgb(mood.glass * brightness);
        lit[glowEntries + i] = ToRgb(mood.glow * brightness);
    }
    lit[0] = {};
    return lit;
}

}  // namespace demo
