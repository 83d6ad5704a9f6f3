#include "session/PlayerData.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/TestFolder.h"

namespace {

TEST(PlayerData, Files) {
    const support::TestFolder folder;
    const std::string warning = "Warning: player ini file \"ab.ini\" not a recognized version.\n";
    const std::string missing = "Error: Could not load all vital data fields from player .ini: ab.ini\n";
    // The content, then name|password|colors|desc|spec|spec, then the log.
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"V1.6\nName=Ab\nPassword=x y\nColors=#SAAAAAA\nDesc=Hello there\nSpec=00\n", "Ab|x y|#SAAAAAA|Hello there|0|0",
         ""},
        {"V1.6.2\r\nSpec=123\r\nname=no\r\nName=A\r\nName=B  \r\nPassword=\r\nColors=C\r\nDesc=", "B  ||C||1|2", ""},
        {"\nName=Ab\nPassword=p\nColors=c\nDesc=d\nSpec=0\xFF", "Ab|p|c|d|0|-49", warning},
        {"V1.6\nName=Ab\nPassword=p\n\nColors=c\nDesc=d\nSpec=12", "Ab|p|||0|0", missing},
        {"V1.6\nName=Ab\nPassword=p\nColors=c\nDesc=d\nSpec=1", "Ab|p|c|d|0|0", missing},
        {std::string("V1.6\nName=A") + '\0' + "b\nPassword=p\nColors=c\nDesc=d\nSpec=12", "A|p|c|d|1|2", ""},
        {"V1.", "||||0|0", warning + missing},
    };
    for (const auto& [content, fields, log] : rows) {
        GetPlayerData() = PlayerData();
        support::ClearErrorLog();
        folder.Write("ab.ini", content);
        EXPECT_EQ(LoadPlayerIni("ab.ini"), !log.ends_with(missing)) << content;
        const PlayerData& data = GetPlayerData();
        EXPECT_EQ(data.name + "|" + data.password + "|" + data.colors + "|" + data.desc + "|" +
                      std::to_string(data.spec[0]) + "|" + std::to_string(data.spec[1]),
                  fields);
        EXPECT_EQ(folder.Read("_error.txt"), log);
    }
    support::ClearErrorLog();
    EXPECT_FALSE(LoadPlayerIni("none.ini"));
    EXPECT_EQ(folder.Read("_error.txt"), "Failed to open player ini file: none.ini\n");
}

}  // namespace
