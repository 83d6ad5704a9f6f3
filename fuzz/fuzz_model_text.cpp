#include "demo/formats/ModelWriter.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"

std::vector<std::string> fuzz::Seeds() {
    demo::ModelChunk box;
    box.textures.push_back({0, "x.png"});
    box.AddBox({0, 0, 0}, {1, 1, 1});
    demo::ModelDrawing drawing;
    drawing.meshes = {{"a", {box, box}}, {"b", {box}}};
    drawing.bones = {{"top", "a", {"low"}}, {"low", "b", {}}};
    return {demo::WriteModel(drawing),
            "Mesh { Name { m } Chunk { Vertices { PNC 1 0 0 0 0 0 1 1 0 1e9 .5 } Indices { 3 0 0 9 } } } "
            "Bone { Mesh { m } Child { c } ConnectRot { 1 0 0 0 1 0 0 0 1 } } Bone { Name { c } Foo { { } } }\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    fuzz::WriteFile("m.mbm", fuzz::Text(data, size));
    // The first load may write a cache, which the second one reads.
    for (const bool readable : {true, false}) {
        G::Mesh model;
        (void)model.Load("m.mbm", true, readable, true);
        fuzz::EndModels(model);
    }
    fuzz::RemoveFolder("gen");
    return 0;
}
