#include "world/ItemTable.h"

#include <algorithm>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/CappedMessages.h"
#include "platform/Caps.h"

namespace {

const std::string itemFolder = "data\\items\\";
const std::string placeholderName = "data\\items\\placeholder.mbm";

bool LoadModel(G::Mesh& model, const std::string& name) {
    const std::string path = ContainedPath(itemFolder, name);
    return !path.empty() && model.Load(path, true, false, true);
}

// The largest object number of the first line.
std::size_t LargestNumber(const std::string& line) {
    const int stated = DecimalOf(line);
    if (stated > caps::itemNumbers)
        errorLog.Write("Note: items.txt names " + std::to_string(stated) +
                       " as the max number, but no map has more than " + std::to_string(caps::itemNumbers) + ".\n");
    return static_cast<std::size_t>(std::clamp(stated, 0, caps::itemNumbers));
}

}  // namespace

void ItemTable::Load() {
    entries.clear();
    const std::string listName = itemFolder + "items.txt";
    std::vector<std::string> lines;
    if (!ReadLines(listName, lines, caps::itemTableBytes) || lines.empty()) {
        errorLog.Write("Failed to load item table, no items are drawn: " + listName + "\n");
        return;
    }
    G::Mesh placeholder;
    (void)placeholder.Load(placeholderName, true, false, true);
    entries.assign(LargestNumber(lines[0]) + 1, placeholder);
    entries[0].Release();
    CappedMessages messages(caps::repeatedMessages);
    for (std::size_t i = 1; i < lines.size(); ++i)
        LoadLine(SplitTokens(lines[i], " \t"), std::to_string(i), messages);
}

void ItemTable::LoadLine(const std::vector<std::string>& words, const std::string& lineNumber,
                         CappedMessages& messages) {
    if (words.empty()) return;
    const std::string error = "Error in line " + lineNumber;
    if (words.size() % 2 != 0)
        return messages.Add(error + " of items.txt: " +
                            (words.size() <= 2 ? "missing model name?\n" : "mismatched texture replacement pair?\n"));
    const int number = DecimalOf(words[0]);
    if (number < 1) return messages.Add(error + " of items.txt: object number must be >=1\n");
    if (static_cast<std::size_t>(number) >= entries.size())
        return messages.Add(error + " of items.txt: an object number greater than the max number was specified.\n");
    messages.Flush();
    G::Mesh model;
    if (!LoadModel(model, words[1])) return;
    ReplaceTextures(model, words, lineNumber);
    entries[static_cast<std::size_t>(number)] = model;
}

void ItemTable::ReplaceTextures(G::Mesh& model, const std::vector<std::string>& words, const std::string& lineNumber) {
    for (std::size_t i = 2; i + 1 < words.size(); i += 2) {
        DXG::Texture texture;
        const std::string path = ContainedPath(itemFolder, words[i + 1]);
        if (path.empty() || !texture.Load(path, DXG::TextureType::AsFile, true, true))
            errorLog.Write("Warning: Texture replacement failed to load, in loading an item: items.txt, line " +
                           lineNumber + ", name: " + itemFolder + words[i + 1] + "\n");
        else if (!model.SetTexture(words[i], texture))
            errorLog.Write("Warning: Texture replacement operation failed, in loading an item: items.txt, line " +
                           lineNumber + ", name: " + words[i] + "\n");
    }
}
