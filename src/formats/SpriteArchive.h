#pragma once
// Numbered palette-index images from sprite archives of both generations (.tsh and .ts2).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct SpriteImage {
    std::uint8_t keyIndex = 0;                    // stands for a transparent pixel
    std::vector<std::vector<std::uint8_t>> rows;  // top row first, all equally long

    [[nodiscard]] unsigned Width() const { return rows.empty() ? 0U : static_cast<unsigned>(rows[0].size()); }
    [[nodiscard]] unsigned Height() const { return static_cast<unsigned>(rows.size()); }
};

struct SpriteArchive {
    std::vector<std::unique_ptr<SpriteImage>> images;  // by image number; null: empty slot
};

// Replaces the table. A missing or empty file is false without a message.
bool LoadTsh(SpriteArchive& archive, const std::string& path);
// Adds to or replaces images of the table, at their numbers plus `indexBase`.
bool LoadTs2(SpriteArchive& archive, const std::string& path, int indexBase);
// The same from bytes; `path` is for the messages.
bool LoadTshBytes(SpriteArchive& archive, std::string_view bytes, const std::string& path);
bool LoadTs2Bytes(SpriteArchive& archive, std::string_view bytes, const std::string& path, int indexBase);
// By extension: a .ts2 is laid over its .tsh, found beside it or in "patches\\default\\".
bool LoadSpriteArchive(SpriteArchive& archive, const std::string& path);
