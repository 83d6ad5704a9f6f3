#include <algorithm>

#include "demo/formats/ModelWriter.h"
#include "demo/formats/PcxWriter.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"
#include "world/ItemTable.h"

namespace {

void WriteItemFiles() {
    demo::ModelChunk box;
    box.textures.push_back({0, "x.pcx"});
    box.AddBox({0, 0, 0}, {1, 1, 1});
    demo::ModelDrawing drawing;
    drawing.meshes = {{"m", {box}}};
    drawing.bones = {{"b", "m", {}}};
    fuzz::WriteFile("data/items/lamp.mbm", demo::WriteModel(drawing));
    drawing.meshes[0].chunks[0].textures.clear();
    fuzz::WriteFile("data/items/placeholder.mbm", demo::WriteModel(drawing));
    for (const char* picture : {"x.pcx", "y.pcx"})
        fuzz::WriteFile(std::string("data/items/") + picture, demo::WritePcx(2, 2, {1, 2, 3, 4}, demo::RgbPalette()));
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    return {"20\n1 lamp.mbm\n2 lamp.mbm x.pcx y.pcx\n\n3\n4 none.mbm\n21 lamp.mbm\n", "70000 x\n65535\tlamp.mbm \r\n",
            "3\n1 lamp.mbm x.pcx\n0 lamp.mbm\n2 ..\\lamp.mbm\n3 lamp.mbm z.pcx y.pcx\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    static const bool written = (WriteItemFiles(), true);
    (void)written;
    fuzz::WriteFile("data/items/items.txt", fuzz::Text(data, size));
    G::Mesh last;
    {
        ItemTable table;
        table.Load();
        const std::size_t mostFinds = 64;
        for (std::size_t number = 0; number <= std::min(table.Size(), mostFinds); ++number)
            if (G::Mesh* found = table.Find(number)) last = *found;
        (void)table.Find(table.Size());
    }
    fuzz::EndModels(last);
    return 0;
}
