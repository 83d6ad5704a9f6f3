#pragma once
// The models of the map's objects, by object number, from "data\items\items.txt".

#include <cstddef>
#include <string>
#include <vector>

#include "graphics/model/GBMesh.h"

class CappedMessages;

class ItemTable {
  public:
    // Reads the list and its models. Bad lines, models and textures are told to the error log and cost no more than
    // themselves; without a list the table is empty.
    void Load();

    // The model to move and draw, or null: entry 0, numbers beyond the table and entries whose model is missing. One
    // model serves every cell with the number, and the placeholder several numbers.
    [[nodiscard]] G::Mesh* Find(std::size_t objectNumber) {
        if (objectNumber >= entries.size() || !entries[objectNumber].IsLoaded()) return nullptr;
        return &entries[objectNumber];
    }
    [[nodiscard]] std::size_t Size() const { return entries.size(); }

  private:
    void LoadLine(const std::vector<std::string>& words, const std::string& lineNumber, CappedMessages& messages);
    static void ReplaceTextures(G::Mesh& model, const std::vector<std::string>& words, const std::string& lineNumber);

    std::vector<G::Mesh> entries;
};
