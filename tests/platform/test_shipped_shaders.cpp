// The table of shaders that were compiled as part of the build.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/ShippedShaders.h"
#include "support/TestFolder.h"

namespace {

struct Shipped {
    std::string name;
    std::string source;
};

std::vector<Shipped> ShippedFiles() {
    std::vector<Shipped> files;
    const std::string folder = std::getenv("KELVANE_SOURCE_DIR") + std::string("/data/shaders");
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back({entry.path().filename(), support::LogText(entry.path())});
    return files;
}

TEST(ShippedShaders, AreWhatTheCompilerMakes) {
    const std::vector<Shipped> files = ShippedFiles();
    ASSERT_FALSE(files.empty());
    for (const auto& [name, source] : files) {
        const bool vertex = name.ends_with(".hlsl_v");
        // The profile that the client tries first has to be among them.
        EXPECT_TRUE(platform::FindShippedShader(source, "main", vertex ? "vs_2_0" : "ps_2_0")) << name;
        for (const char* profile : {"vs_1_0", "vs_2_0", "vs_3_0", "ps_2_0", "ps_2_a"}) {
            const platform::CompiledShader* found = platform::FindShippedShader(source, "main", profile);
            platform::CompiledShader made;
            std::string messages;
            const bool ofStage = vertex == (profile[0] == 'v');
            const bool silent =
                ofStage && platform::CompileShader(source, name, "main", profile, made, messages) && messages.empty();
            ASSERT_EQ(found != nullptr, silent) << name << " " << profile << "\n" << messages;
            EXPECT_TRUE(!found || *found == made) << name << " " << profile << "\n" << made.code;
        }
    }
}

}  // namespace
