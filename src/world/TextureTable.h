#pragma once
// The texture slots of the floor and wall renderers.

#include <cstddef>
#include <vector>

#include "graphics/device/DXGTexture.h"

using TextureList = std::vector<DXG::Texture>;

// A fixed number of slots, filled from a list that may be shorter or longer.
class TextureTable {
  public:
    explicit TextureTable(std::size_t slotCount) : slots(slotCount) {}

    // Releases every slot, then takes a reference to the textures of the list's first entries. What is over is dropped.
    void Fill(const TextureList& list) {
        for (std::size_t i = 0; i < slots.size(); ++i) {
            slots[i].Release();
            if (i < list.size()) slots[i] = list[i];
        }
    }
    // Null for an empty slot and for a number that is none.
    [[nodiscard]] const DXG::Texture* Loaded(long number) const {
        if (number < 0 || static_cast<std::size_t>(number) >= slots.size()) return nullptr;
        const DXG::Texture& slot = slots[static_cast<std::size_t>(number)];
        return slot.IsLoaded() ? &slot : nullptr;
    }
    [[nodiscard]] std::size_t Size() const { return slots.size(); }

  private:
    std::vector<DXG::Texture> slots;
};
