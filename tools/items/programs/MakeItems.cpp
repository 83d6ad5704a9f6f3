// Makes the item models, their pictures and the item table: kelvane-make-items FOLDER, where FOLDER is data/items/ of
// the source tree. The same sources always give the same bytes.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "demo/art/PngFile.h"
#include "demo/formats/ModelWriter.h"
#include "tools/items/Items.h"
#include "tools/items/Textures.h"

namespace {

bool WriteText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    return file.good();
}

bool WritePictures(const std::filesystem::path& folder) {
    for (const items::Texture& texture : items::AllTextures()) {
        const std::string base = (folder / texture.name).string();
        const items::Texels texels = items::PaintTexels(texture.width, texture.height, texture.paint);
        if (!demo::WritePngFile(base + ".png", texture.width, texture.height, texels)) return false;
        if (!texture.normals) continue;
        const items::Texels normals = items::PaintNormals(texture.width, texture.height, texture.paint);
        if (!demo::WritePngFile(base + "_norm.png", texture.width, texture.height, normals)) return false;
    }
    return true;
}

bool WriteModels(const std::filesystem::path& folder) {
    for (const items::Item& item : items::AllItems()) {
        if (!WriteText(folder / (item.Name() + ".mbm"), demo::WriteModel(item.Drawing()))) return false;
        std::cout << item.Name() << ": " << item.TriangleCount() << " triangles\n";
    }
    return WriteText(folder / "items.txt", items::ItemTableText());
}

}  // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "usage: kelvane-make-items FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = words[1];
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    if (WritePictures(folder) && WriteModels(folder)) return 0;
    std::cerr << "kelvane-make-items: a file cannot be written to " << folder.string() << "\n";
    return 1;
}
