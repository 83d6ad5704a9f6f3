#include "fuzz/FuzzEntry.h"
#include "session/PlayerData.h"

std::vector<std::string> fuzz::Seeds() {
    return {"V1.6\r\nSpec=12 3\r\nDesc=a figure=of speech\r\nColors=t)))))\r\nName=Someone\r\nPassword=secret\r\n\r\n",
            "V1.5\nName=\nSpec=x\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::WriteFile("player.ini", fuzz::Text(data, size));
    (void)LoadPlayerIni("player.ini");
    return 0;
}
