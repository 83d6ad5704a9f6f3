#include "ObjTextures.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <map>

#include "OutputFile.h"
#include "platform/FileSystem.h"
#include "platform/ImageCodec.h"

namespace fs = std::filesystem;

namespace {

// Texels of a colour's square: its middle is its own with any filter, as long as there are no mipmaps.
constexpr std::uint32_t square = 4;

bool IsSane(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == '.';
}

std::uint32_t Texel(const std::array<float, 3>& colour) {
    std::uint32_t texel = 0xFF;
    for (const float channel : colour) {
        const float clamped = std::isfinite(channel) ? std::clamp(channel, 0.0F, 1.0F) : 0.0F;
        texel = texel << 8 | static_cast<std::uint32_t>(std::lround(clamped * 255.0F));
    }
    return texel;
}

// The colours that were asked for, as one picture with a square for each.
class ColourSheet {
  public:
    std::size_t Add(const std::array<float, 3>& colour) {
        colours.push_back(Texel(colour));
        return colours.size() - 1;
    }
    [[nodiscard]] bool IsEmpty() const { return colours.empty(); }
    [[nodiscard]] std::array<float, 2> PlaceOf(std::size_t number) const {
        const float one = 1.0F / static_cast<float>(Across());
        return {(static_cast<float>(number % Across()) + 0.5F) * one,
                (static_cast<float>(number / Across()) + 0.5F) * one};
    }
    void Write(const fs::path& path) const {
        const std::uint32_t side = static_cast<std::uint32_t>(Across()) * square;
        std::vector<std::uint32_t> argb;
        for (std::size_t i = 0; i < std::size_t{side} * side; ++i) {
            const std::size_t number = i / side / square * Across() + i % side / square;
            argb.push_back(colours[std::min(number, colours.size() - 1)]);
        }
        ReplaceFile(path, [&](const fs::path& temporary) {
            return platform::WritePng(temporary.string(), argb.data(), side, side);
        });
    }

  private:
    // Squares in a row, a power of two.
    [[nodiscard]] std::size_t Across() const {
        std::size_t across = 1;
        while (across * across < colours.size())
            across *= 2;
        return across;
    }
    std::vector<std::uint32_t> colours;
};

// The power of two that is nearest by ratio, as large as the client's smallest cards take at most.
std::uint32_t PowerNear(std::uint32_t side) {
    const double power = std::exp2(std::round(std::log2(static_cast<double>(side))));
    return static_cast<std::uint32_t>(std::clamp(power, 1.0, 2048.0));
}

// Each texel is the mean of sixteen places of the image within it.
std::vector<std::uint32_t> Scaled(const platform::ImagePixels& image, std::uint32_t width, std::uint32_t height) {
    constexpr std::uint64_t steps = 4;
    std::vector<std::uint32_t> argb;
    for (std::uint64_t y = 0; y < height; ++y)
        for (std::uint64_t x = 0; x < width; ++x) {
            std::array<std::uint32_t, 4> sums{};
            for (std::uint64_t i = 0; i < steps * steps; ++i) {
                const std::uint64_t row = (y * steps + i / steps) * image.height / (height * steps);
                const std::uint64_t column = (x * steps + i % steps) * image.width / (width * steps);
                const std::uint32_t texel = image.argb[row * image.width + column];
                for (unsigned channel = 0; channel < 4; ++channel)
                    sums[channel] += texel >> (8 * channel) & 0xFFU;
            }
            std::uint32_t mean = 0;
            for (unsigned channel = 0; channel < 4; ++channel)
                mean |= sums[channel] / static_cast<std::uint32_t>(steps * steps) << (8 * channel);
            argb.push_back(mean);
        }
    return argb;
}

// The name by which a model in `folder` has the picture; empty when it cannot.
std::string NameBelow(const fs::path& picture, const fs::path& folder) {
    const fs::path below = picture.lexically_relative(folder);
    std::string name = below.string();
    const bool sane =
        !name.empty() && std::all_of(name.begin(), name.end(), [](char c) { return IsSane(c) || c == '/'; });
    if (!sane || *below.begin() == ".." || platform::HasLinkBelow(folder.string(), name)) return {};
    std::replace(name.begin(), name.end(), '/', '\\');
    return name;
}

class Placing {
  public:
    Placing(const fs::path& modelFile, std::vector<std::string>& toTell)
        : folder(modelFile.parent_path()), stem(SaneName(modelFile.stem().string())), notes(toTell) {}

    // The name of a picture for the model; empty when it is none, which is told.
    std::string NameOf(const ObjMaterial& material) {
        const auto [entry, isNew] = names.try_emplace(material.folder.string() + "/" + material.picture);
        if (isNew) entry->second = Place(material);
        return entry->second;
    }
    [[nodiscard]] fs::path ColoursFile() const { return folder / (stem + "_colours.png"); }

  private:
    std::string Place(const ObjMaterial& material) {
        std::string asWritten = material.picture;
        std::replace(asWritten.begin(), asWritten.end(), '\\', '/');
        const fs::path picture = platform::ResolvePath((material.folder / asWritten).lexically_normal().string());
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        if (platform::ReadImageSize(picture.string(), width, height) != platform::ImageStatus::Ok)
            return CannotRead(material);
        const bool fits = std::has_single_bit(width) && std::has_single_bit(height);
        if (fits)
            if (std::string name = NameBelow(picture, folder); !name.empty()) return name;
        if (!fits) return PlaceScaled(material, picture);
        const std::string name = stem + "_" + SaneName(picture.filename().string());
        ReplaceFile(folder / name, [&picture](const fs::path& temporary) {
            std::error_code failure;
            return fs::copy_file(picture, temporary, failure) && !failure;
        });
        notes.push_back("the picture " + material.picture + " is copied to " + name);
        return name;
    }

    std::string PlaceScaled(const ObjMaterial& material, const fs::path& picture) {
        platform::ImagePixels image;
        if (platform::DecodeImageFile(picture.string(), image) != platform::ImageStatus::Ok)
            return CannotRead(material);
        const std::string name = stem + "_" + SaneName(picture.stem().string()) + ".png";
        const std::uint32_t width = PowerNear(image.width);
        const std::uint32_t height = PowerNear(image.height);
        const std::vector<std::uint32_t> scaled = Scaled(image, width, height);
        ReplaceFile(folder / name, [&](const fs::path& temporary) {
            return platform::WritePng(temporary.string(), scaled.data(), width, height);
        });
        notes.push_back("the picture " + material.picture + ", " + std::to_string(image.width) + " x " +
                        std::to_string(image.height) + ", is scaled to powers of two in " + name);
        return name;
    }

    std::string CannotRead(const ObjMaterial& material) {
        notes.push_back("the picture " + material.picture + " of material " + material.name +
                        " cannot be read; its colour is taken");
        return {};
    }

    const fs::path folder;
    const std::string stem;
    std::vector<std::string>& notes;
    std::map<std::string, std::string> names;
};

}  // namespace

std::string SaneName(const std::string& name) {
    std::string sane = name;
    std::replace_if(
        sane.begin(), sane.end(), [](char c) { return !IsSane(c); }, '_');
    constexpr std::size_t longest = 100;
    if (sane.size() > longest) sane = sane.substr(sane.size() - longest);
    return sane.empty() ? "model" : sane;
}

std::vector<ChunkTexture> PlaceTextures(const ObjScene& scene, const fs::path& modelFile,
                                        std::vector<std::string>& notes) {
    Placing placing(modelFile, notes);
    ColourSheet colours;
    std::vector<bool> isUsed(scene.materials.size() + 1);
    for (const int material : scene.triangleMaterials)
        isUsed[material < 0 ? scene.materials.size() : static_cast<std::size_t>(material)] = true;
    std::vector<ChunkTexture> textures(isUsed.size());
    std::map<std::size_t, std::size_t> coloured;  // the material's colour in the sheet
    for (std::size_t i = 0; i < isUsed.size(); ++i) {
        if (!isUsed[i]) continue;
        const ObjMaterial material = i < scene.materials.size() ? scene.materials[i] : ObjMaterial();
        if (!material.picture.empty()) textures[i].texture.fileName = placing.NameOf(material);
        if (textures[i].texture.fileName.empty()) coloured[i] = colours.Add(material.colour);
    }
    for (const auto& [material, number] : coloured)
        textures[material] = {{0, placing.ColoursFile().filename().string(), false}, true, colours.PlaceOf(number)};
    if (!colours.IsEmpty()) colours.Write(placing.ColoursFile());
    return textures;
}
