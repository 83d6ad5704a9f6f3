#include "tools/items/Painter.h"

#include <algorithm>
#include <cmath>

namespace items {

namespace {

std::uint32_t Byte(double value) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

std::uint32_t Word(double alpha, double red, double green, double blue) {
    return Byte(alpha) << 24 | Byte(red) << 16 | Byte(green) << 8 | Byte(blue);
}

// Spreads colour from what is painted into what is clear, a ring of texels at a time.
void Bleed(Texels& texels, unsigned width, unsigned height) {
    std::vector<bool> known(texels.size());
    for (std::size_t i = 0; i < texels.size(); ++i)
        known[i] = texels[i] >> 24 != 0;
    for (int ring = 0; ring < 6; ++ring) {
        const std::vector<bool> before = known;
        for (unsigned i = 0; i < texels.size(); ++i) {
            if (before[i]) continue;
            std::uint32_t red = 0;
            std::uint32_t green = 0;
            std::uint32_t blue = 0;
            std::uint32_t count = 0;
            for (const auto& [dx, dy] : {std::pair{1U, 0U}, {width - 1, 0U}, {0U, 1U}, {0U, height - 1}}) {
                const unsigned at = (i / width + dy) % height * width + (i % width + dx) % width;
                if (!before[at]) continue;
                red += texels[at] >> 16 & 255;
                green += texels[at] >> 8 & 255;
                blue += texels[at] & 255;
                ++count;
            }
            if (count == 0) continue;
            texels[i] = red / count << 16 | green / count << 8 | blue / count;
            known[i] = true;
        }
    }
}

}  // namespace

Texels PaintTexels(unsigned width, unsigned height, const Paint& paint) {
    constexpr int fine = 3;
    Texels texels;
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) {
            demo::Shade sum;
            double alpha = 0.0;
            for (int i = 0; i < fine * fine; ++i) {
                const Tone tone = paint((x + (i % fine + 0.5) / fine) / width, (y + (i / fine + 0.5) / fine) / height);
                sum = sum + tone.shade * tone.alpha;
                alpha += tone.alpha;
            }
            const demo::Shade mean = alpha > 0.0 ? sum * (1.0 / alpha) : demo::Shade{};
            texels.push_back(alpha * 2.0 < fine * fine ? 0U : Word(1.0, mean.red, mean.green, mean.blue));
        }
    Bleed(texels, width, height);
    return texels;
}

Texels PaintNormals(unsigned width, unsigned height, const Paint& paint) {
    Texels texels;
    const double du = 1.0 / width;
    const double dv = 1.0 / height;
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) {
            const double u = (x + 0.5) * du;
            const double v = (y + 0.5) * dv;
            const auto heightAt = [&](double s, double t) {
                return paint(s - std::floor(s), t - std::floor(t)).height;
            };
            const double slopeX = (heightAt(u + du, v) - heightAt(u - du, v)) / (2.0 * du);
            const double slopeY = (heightAt(u, v + dv) - heightAt(u, v - dv)) / (2.0 * dv);
            const double length = std::sqrt(slopeX * slopeX + slopeY * slopeY + 1.0);
            texels.push_back(Word(1.0, 0.5 - 0.5 * slopeX / length, 0.5 - 0.5 * slopeY / length, 0.5 + 0.5 / length));
        }
    return texels;
}

}  // namespace items
