// check: what the client says of a model when it loads and draws it.
#include <iostream>

#include "Commands.h"
#include "LoadedModel.h"
#include "graphics/device/DXGDevice.h"

namespace {

// What the loader takes without a word although the model will not look as it is written.
void AddSilentFaults(G::Bone& bone, std::vector<Problem>& problems) {
    const G::MeshRecord& mesh = bone.mesh.Mesh();
    for (std::size_t i = 0; i < mesh.chunks.size(); ++i) {
        const G::MeshChunk& chunk = mesh.chunks[i];
        const std::string which = "chunk " + std::to_string(i) + " of mesh " + mesh.name;
        if (!chunk.vertexBuffer.IsCreated() || !chunk.indexBuffer.IsCreated()) {
            problems.push_back({0, which + " has no vertices or no indices and is not drawn"});
            continue;
        }
        const unsigned count = chunk.indexBuffer.Record()->count;
        if (count > 0xFFFFU)
            problems.push_back({0, which + " has " + std::to_string(count) + " indices, of which " +
                                       std::to_string(chunk.indexBuffer.Count()) + " are drawn: at most 65535 count"});
        else if (count % 3 != 0)
            problems.push_back({0, which + " has " + std::to_string(count) + " indices: not three for each triangle"});
    }
    for (G::Bone* child : bone.Children())
        AddSilentFaults(*child, problems);
}

bool CheckFile(const std::string& name) {
    LoadedModel loaded(name);
    const bool isLoaded = loaded.Load(false);
    if (isLoaded && DXG::BeginFrame(0.0F, false, true)) {
        loaded.model.Draw(true);
        DXG::EndFrame0();
        DXG::EndFrame1();
    }
    std::vector<Problem> problems = loaded.TakeProblems();
    if (isLoaded) AddSilentFaults(*loaded.model.TopBone(), problems);
    loaded.Print(problems, false);
    if (problems.empty()) std::cout << name << ": ok\n";
    return isLoaded && problems.empty();
}

}  // namespace

int Check(const Arguments& arguments) {
    if (arguments.files.empty()) throw UsageError{"a model file is missing"};
    const HeadlessFoundation foundation;
    bool good = true;
    for (const std::string& name : arguments.files)
        good = CheckFile(name) && good;
    return good ? 0 : 1;
}
