#include "ObjScene.h"

#include <tiny_obj_loader.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include "ObjText.h"
#include "platform/FileSystem.h"

namespace fs = std::filesystem;

namespace {

// Bytes of an OBJ; its model would be larger than the client reads long before.
constexpr std::uint64_t mostObjBytes = 512ULL << 20;
constexpr std::uint64_t mostMtlBytes = 1ULL << 20;
constexpr int mostMtlFiles = 64;

// Reads material files itself, so that only regular files of a sane size are read.
class Materials : public tinyobj::MaterialReader {
  public:
    Materials(fs::path objFolder, std::vector<std::string>& toTell) : folder(std::move(objFolder)), notes(toTell) {}

    bool operator()(const std::string& name, std::vector<tinyobj::material_t>* materials,
                    std::map<std::string, int>* numbers, std::string* warning, std::string* error) override {
        const fs::path path = folder / name;
        std::string text;
        if (++count > mostMtlFiles || !platform::ReadFileBytes(path.string(), text, mostMtlBytes)) {
            notes.push_back("the material file " + name + " cannot be read");
            return false;
        }
        std::erase(text, '\0');
        std::istringstream stream(text);
        tinyobj::LoadMtl(numbers, materials, &stream, warning, error);
        folders.resize(materials->size(), path.parent_path());
        return true;
    }
    std::vector<fs::path> folders;  // of each material's file

  private:
    const fs::path folder;
    std::vector<std::string>& notes;
    int count = 0;
};

bool IsFinite(const Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

std::vector<Vec3> Vectors(const std::vector<tinyobj::real_t>& numbers) {
    std::vector<Vec3> vectors;
    for (std::size_t i = 0; i + 2 < numbers.size(); i += 3)
        vectors.push_back({numbers[i], numbers[i + 1], numbers[i + 2]});
    return vectors;
}

// What the parser says of materials and faces; the first few, as one often stands for many.
void AddWarnings(const std::string& warnings, std::vector<std::string>& notes) {
    constexpr std::size_t most = 5;
    std::vector<std::string> told;
    std::istringstream lines(warnings);
    for (std::string line; told.size() < most && std::getline(lines, line);)
        if (line.size() > 1 && std::find(told.begin(), told.end(), line) == told.end()) told.push_back(line);
    notes.insert(notes.end(), told.begin(), told.end());
}

// Without its end, which the parser writes as several lines.
std::string FirstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

bool AddTriangle(const ObjScene& scene, const tinyobj::index_t* indices, ObjCorner (&corners)[3]) {
    const auto within = [](int number, std::size_t count) {
        return number >= 0 && static_cast<std::size_t>(number) < count;
    };
    for (int i = 0; i < 3; ++i) {
        const tinyobj::index_t& index = indices[i];
        if (!within(index.vertex_index, scene.positions.size())) return false;
        corners[i].position = index.vertex_index;
        if (within(index.normal_index, scene.normals.size())) corners[i].normal = index.normal_index;
        if (within(index.texcoord_index, scene.places.size())) corners[i].place = index.texcoord_index;
    }
    return corners[0].position != corners[1].position && corners[1].position != corners[2].position &&
           corners[2].position != corners[0].position;
}

void AddTriangles(const tinyobj::mesh_t& mesh, ObjScene& scene, std::size_t& dropped) {
    for (std::size_t i = 0; i + 2 < mesh.indices.size(); i += 3) {
        ObjCorner corners[3];
        if (!AddTriangle(scene, &mesh.indices[i], corners)) {
            ++dropped;
            continue;
        }
        scene.corners.insert(scene.corners.end(), corners, corners + 3);
        const int material = i / 3 < mesh.material_ids.size() ? mesh.material_ids[i / 3] : -1;
        const bool known = material >= 0 && static_cast<std::size_t>(material) < scene.materials.size();
        scene.triangleMaterials.push_back(known ? material : -1);
    }
}

void AddMaterials(const std::vector<tinyobj::material_t>& materials, const std::vector<fs::path>& folders,
                  ObjScene& scene) {
    for (std::size_t i = 0; i < materials.size(); ++i) {
        ObjMaterial& added = scene.materials.emplace_back();
        added.name = materials[i].name;
        for (std::size_t channel = 0; channel < 3; ++channel)
            added.colour[channel] = materials[i].diffuse[channel];
        added.picture = materials[i].diffuse_texname;
        if (i < folders.size()) added.folder = folders[i];
    }
}

}  // namespace

ObjScene ReadObj(const fs::path& path, const std::string& given) {
    std::string text;
    if (platform::FileLength(path.string()) > mostObjBytes) throw std::runtime_error(given + " is too large");
    if (!platform::ReadFileBytes(path.string(), text, mostObjBytes))
        throw std::runtime_error(given + " cannot be read");
    try {
        text = SoundObjText(text);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(given + ":" + error.what());
    }
    ObjScene scene;
    Materials reader(path.parent_path(), scene.notes);
    std::istringstream stream(text);
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warning;
    std::string error;
    if (!tinyobj::LoadObj(&attributes, &shapes, &materials, &warning, &error, &stream, &reader, true, false))
        throw std::runtime_error(given + ": " + (error.empty() ? "no OBJ" : FirstLine(error)));
    scene.positions = Vectors(attributes.vertices);
    scene.normals = Vectors(attributes.normals);
    for (std::size_t i = 0; i + 1 < attributes.texcoords.size(); i += 2)
        scene.places.push_back({attributes.texcoords[i], attributes.texcoords[i + 1]});
    AddMaterials(materials, reader.folders, scene);
    AddWarnings(warning, scene.notes);
    if (!attributes.colors.empty()) scene.notes.push_back("the colours of the vertices are left out");
    for (const Vec3& position : scene.positions)
        if (!IsFinite(position)) throw std::runtime_error(given + ": a vertex is infinitely far away");
    std::size_t dropped = 0;
    for (const tinyobj::shape_t& shape : shapes)
        AddTriangles(shape.mesh, scene, dropped);
    if (scene.corners.empty()) throw std::runtime_error(given + " has no faces");
    if (dropped > 0) scene.notes.push_back(std::to_string(dropped) + " triangles without area are left out");
    return scene;
}
