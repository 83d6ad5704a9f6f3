#include "demo/formats/ModelWriter.h"
#include "demo/formats/PcxWriter.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"

std::vector<std::string> fuzz::Seeds() {
    demo::ModelChunk box;
    box.textures = {{0, "x.pcx"}, {1, "y.pcx", false}};
    box.AddBox({0, 0, 0}, {1, 1, 1});
    demo::ModelDrawing drawing;
    drawing.meshes = {{"a", {box, box}}, {"b", {box}}};
    drawing.bones = {{"top", "a", {"low"}}, {"low", "b", {}}};
    return {demo::WriteModel(drawing),
            "Mesh { Name { m } Chunk { Vertices { PNC 1 0 0 0 0 0 1 1 0 1e9 .5 } Indices { 3 0 0 9 } } } "
            "Bone { Mesh { m } Child { c } ConnectRot { 1 0 0 0 1 0 0 0 1 } } Bone { Name { c } Foo { { } } }\n"};
}

namespace {

// What the client does with a model besides drawing it.
void Use(G::Mesh& model) {
    G::Mesh copy = model;
    DXG::Texture other;
    if (other.Load("y.pcx", DXG::TextureType::AsFile, true, true)) (void)copy.SetTexture("x.pcx", other);
    (void)copy.FindBone("low");
    G::UnloadNormalMaps();
    G::LoadNormalMaps();
    copy.Release();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    static bool picturesWritten = false;
    for (const char* name : {"x.pcx", "y.pcx"})
        if (!picturesWritten) fuzz::WriteFile(name, demo::WritePcx(2, 2, {1, 2, 3, 4}, demo::RgbPalette()));
    picturesWritten = true;
    fuzz::WriteFile("m.mbm", fuzz::Text(data, size));
    // The first load may write a cache, which the second one reads.
    for (const bool readable : {true, false}) {
        G::Mesh model;
        if (model.Load("m.mbm", true, readable, true)) Use(model);
        fuzz::EndModels(model);
    }
    fuzz::RemoveFolder("gen");
    return 0;
}
