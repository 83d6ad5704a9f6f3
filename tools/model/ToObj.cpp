// to-obj: a model at rest as a Wavefront OBJ and its material file.
#include <charconv>
#include <filesystem>
#include <iostream>
#include <map>

#include "Commands.h"
#include "LoadedModel.h"
#include "OutputFile.h"
#include "Scratch.h"
#include "diag/PathFiles.h"

namespace fs = std::filesystem;

namespace {

void Append(std::string& text, float number) {
    char digits[64];
    const auto [end, result] = std::to_chars(digits, digits + sizeof digits, number + 0.0F);
    text.append(1, ' ').append(digits, end);
}

// The world's axes to the OBJ's, which are its mirror image.
void AppendVector(std::string& text, const char* keyword, const Vec3& v, bool zUp) {
    text += keyword;
    Append(text, v.x);
    Append(text, zUp ? -v.y : v.z);
    Append(text, zUp ? v.z : v.y);
}

void AppendVertex(std::string& text, const PlacedVertex& vertex, bool coloured, bool zUp) {
    AppendVector(text, "v", vertex.position, zUp);
    for (const unsigned shift : {16U, 8U, 0U})
        if (coloured) Append(text, static_cast<float>(vertex.colour >> shift & 0xFFU) / 255.0F);
    AppendVector(text, "\nvn", vertex.normal, zUp);
    text += "\nvt";
    Append(text, vertex.u);
    Append(text, 1.0F - vertex.v);
    text += "\n";
}

// Materials by the picture that they draw.
class MaterialList {
  public:
    const std::string& NameOf(const std::string& texture) {
        const auto [entry, isNew] = names.try_emplace(texture);
        if (isNew) entry->second = texture.empty() ? "plain" : "material" + std::to_string(names.size());
        return entry->second;
    }
    [[nodiscard]] std::string Text(const fs::path& folder) const {
        std::string text;
        for (const auto& [texture, name] : names) {
            text += "newmtl " + name + "\nKd 1 1 1\n";
            if (!texture.empty()) text += "map_Kd " + UserPath(texture).lexically_relative(folder).string() + "\n";
        }
        return text;
    }

  private:
    std::map<std::string, std::string> names;
};

std::string ObjText(const std::vector<PlacedChunk>& chunks, MaterialList& materials, bool zUp) {
    std::string text;
    std::size_t first = 1;
    for (const PlacedChunk& chunk : chunks) {
        text += "g " + chunk.bone + "\nusemtl " + materials.NameOf(chunk.texture) + "\n";
        for (const PlacedVertex& vertex : chunk.vertices)
            AppendVertex(text, vertex, chunk.coloured, zUp);
        for (std::size_t i = 0; i + 2 < chunk.indices.size(); i += 3) {
            text += "f";
            for (const std::size_t corner : {0, 2, 1}) {
                const std::string number = std::to_string(first + chunk.indices[i + corner]);
                text += " " + number + "/" + number + "/" + number;
            }
            text += "\n";
        }
        first += chunk.vertices.size();
    }
    return text;
}

}  // namespace

int ToObj(const Arguments& arguments) {
    arguments.NeedFiles({"IN.mbm", "OUT.obj"});
    const std::string& out = arguments.files[1];
    const bool zUp = IsZUp(arguments);
    if (!EqualsIgnoringCase(ExtensionOf(out), "obj")) throw UsageError{"OUT.obj has to end in .obj, not " + out};
    const HeadlessFoundation foundation;
    LoadedModel loaded(arguments.files[0]);
    const bool isLoaded = loaded.Load(true);
    loaded.Print(loaded.TakeProblems(), true);
    if (!isLoaded) return 1;
    const fs::path outPath = UserPath(out);
    const fs::path materialPath = fs::path(outPath).replace_extension(".mtl");
    MaterialList materials;
    const std::vector<PlacedChunk> chunks = PlacedChunks(loaded);
    const std::string text = ObjText(chunks, materials, zUp);
    ReplaceFile(materialPath, materials.Text(outPath.parent_path()));
    ReplaceFile(outPath, "mtllib " + materialPath.filename().string() + "\n" + text);
    std::cout << out << ": chunks " << chunks.size() << "\n";
    return 0;
}
