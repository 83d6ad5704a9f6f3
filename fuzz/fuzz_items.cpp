#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"
#include "world/ItemTable.h"

std::vector<std::string> fuzz::Seeds() {
    return {"20\n1 lamp.mbm\n2 lamp.mbm x.png y.png\n\n3\n4 none.mbm\n21 lamp.mbm\n", "70000 x\n65535\tlamp.mbm \r\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    const std::string model =
        "Mesh { Name { m } Chunk { Vertices { PNT2 1 0 0 0 0 0 1 0 0 } Indices { 3 0 0 0 } } } Bone { Mesh { m } }\n";
    fuzz::WriteFile("data/items/placeholder.mbm", model);
    fuzz::WriteFile("data/items/lamp.mbm", model);
    fuzz::WriteFile("data/items/items.txt", fuzz::Text(data, size));
    G::Mesh last;
    {
        ItemTable table;
        table.Load();
        for (std::size_t number = 0; number <= table.Size(); ++number)
            if (G::Mesh* found = table.Find(number)) last = *found;
    }
    fuzz::EndModels(last);
    return 0;
}
