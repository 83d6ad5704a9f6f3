// info: what is in a model.
#include <iostream>
#include <map>
#include <set>

#include "Commands.h"
#include "LoadedModel.h"

namespace {

std::string Counted(std::size_t count, const std::string& what, const std::string& whats) {
    return std::to_string(count) + " " + (count == 1 ? what : whats);
}

std::string Sizes(std::size_t chunks, std::size_t vertices, std::size_t triangles) {
    return Counted(chunks, "chunk", "chunks") + ", " + Counted(vertices, "vertex", "vertices") + ", " +
           Counted(triangles, "triangle", "triangles");
}

std::string Sizes(const G::MeshRecord& mesh) {
    std::size_t vertices = 0;
    std::size_t triangles = 0;
    for (const G::MeshChunk& chunk : mesh.chunks) {
        vertices += chunk.vertexBuffer.Count();
        triangles += chunk.indexBuffer.Count() / 3;
    }
    return Sizes(mesh.chunks.size(), vertices, triangles);
}

struct Contents {
    std::set<const G::MeshRecord*> meshes;
    std::map<std::string, std::string> textures;  // with their sizes
    std::size_t bones = 0;
    std::size_t chunks = 0;
    std::size_t vertices = 0;
    std::size_t triangles = 0;
};

void AddTexture(const LoadedModel& loaded, const DXG::Texture& texture, Contents& all) {
    if (texture.IsLoaded())
        all.textures[loaded.UsersNameOf(texture)] =
            std::to_string(texture.Width()) + " x " + std::to_string(texture.Height());
}

void Count(const LoadedModel& loaded, const G::Bone& bone, Contents& all) {
    ++all.bones;
    const G::MeshRecord& mesh = bone.mesh.Mesh();
    if (!mesh.chunks.empty() && all.meshes.insert(&mesh).second)
        for (const G::MeshChunk& chunk : mesh.chunks) {
            ++all.chunks;
            all.vertices += chunk.vertexBuffer.Count();
            all.triangles += chunk.indexBuffer.Count() / 3;
            AddTexture(loaded, chunk.texture0, all);
            AddTexture(loaded, chunk.texture1, all);
        }
    for (const G::Bone* child : bone.Children())
        Count(loaded, *child, all);
}

void PrintBone(const G::Bone& bone, std::size_t depth) {
    std::cout << std::string(4 + 2 * depth, ' ') << (bone.name.empty() ? "(nameless)" : bone.name);
    const Vec3& at = bone.Position();
    if (at.x != 0.0F || at.y != 0.0F || at.z != 0.0F) std::cout << " at " << at.x << " " << at.y << " " << at.z;
    const G::MeshRecord& mesh = bone.mesh.Mesh();
    if (!mesh.chunks.empty()) std::cout << ", mesh " << mesh.name << ": " << Sizes(mesh);
    std::cout << "\n";
    for (const G::Bone* child : bone.Children())
        PrintBone(*child, depth + 1);
}

bool PrintFile(const std::string& name) {
    LoadedModel loaded(name);
    const bool isLoaded = loaded.Load(true);
    const std::vector<Problem> problems = loaded.TakeProblems();
    if (!isLoaded) {
        loaded.Print(problems, true);
        return false;
    }
    Contents all;
    const G::Bone& top = *loaded.model.TopBone();
    Count(loaded, top, all);
    std::cout << name << "\n  " << Counted(all.meshes.size(), "mesh", "meshes") << ", "
              << Sizes(all.chunks, all.vertices, all.triangles) << " after welding\n";
    if (const Bounds bounds = BoundsOf(PlacedChunks(loaded)); !bounds.empty)
        std::cout << "  from " << bounds.low.x << " " << bounds.low.y << " " << bounds.low.z << " to " << bounds.high.x
                  << " " << bounds.high.y << " " << bounds.high.z << "\n";
    std::cout << "  RandomID " << loaded.model.Record()->randomID << "\n  "
              << Counted(all.textures.size(), "texture", "textures") << "\n";
    for (const auto& [texture, size] : all.textures)
        std::cout << "    " << texture << ", " << size << "\n";
    std::cout << "  " << Counted(all.bones, "bone", "bones") << "\n";
    PrintBone(top, 0);
    if (!problems.empty()) std::cout << "  " << Counted(problems.size(), "problem", "problems") << ", see check\n";
    return true;
}

}  // namespace

int Info(const Arguments& arguments) {
    if (arguments.files.empty()) throw UsageError{"a model file is missing"};
    const HeadlessFoundation foundation;
    bool good = true;
    for (const std::string& name : arguments.files)
        good = PrintFile(name) && good;
    return good ? 0 : 1;
}
