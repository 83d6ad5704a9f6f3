// Shaders on the scripted device with a compiler that the test answers for.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"
#include "support/ScriptedFoundation.h"

namespace {

using support::TakeErrors;

const std::string stack = "  -call stack:\n\n";

// Which profiles the compiler takes, what it says, and the constants that a stage's source names, one a word.
std::vector<std::string> compiledFor;
std::string compilerText;
std::vector<std::string> attempts;

bool CompileForTest(const std::string& source, const std::string& fileName, const std::string& entry,
                    const std::string& profile, platform::CompiledShader& out, std::string& messages) {
    attempts.push_back(fileName + " " + entry + " " + profile);
    messages = compilerText;
    out.profile = profile;
    std::istringstream words(source);
    for (platform::ShaderConstant constant; words >> constant.name;)
        out.constants.push_back(constant);
    return std::find(compiledFor.begin(), compiledFor.end(), profile) != compiledFor.end();
}

struct Shaders : testing::Test {
    support::TestFolder folder;
    support::ScriptedFoundation foundation;
    platform::ScriptedGraphics& scripted = foundation.scripted;
    G::ShaderCompiler before = G::SetShaderCompiler(CompileForTest);
    Shaders() {
        compiledFor = {"vs_2_0", "vs_1_0", "vs_3_0", "ps_2_0", "ps_2_a"};
        compilerText.clear();
        attempts.clear();
        folder.Write("s/a.hlsl_v", "Tint Both ModelMatrix");
        folder.Write("s/a.hlsl_f", "Both Only Values");
    }
    ~Shaders() override {
        foundation.Stop();
        G::SetShaderCompiler(before);
        EXPECT_TRUE(scripted.faults.empty()) << scripted.faults.front();
    }
    static std::string ShaderLog() {
        std::string kept;
        std::istringstream lines(support::LogText("_shaders.txt"));
        for (std::string line; std::getline(lines, line);)
            if (!line.starts_with("   ")) kept += line + "\n";
        return kept;
    }
    static const platform::ScriptedShader& Stage(const std::unique_ptr<platform::DeviceShader>& stage) {
        return dynamic_cast<const platform::ScriptedShader&>(*stage);
    }
};

// The program in the client's own table and the one that the compiler makes of an edited file.
TEST_F(Shaders, AnEditedShippedFileIsCompiled) {
    G::SetShaderCompiler(nullptr);
    const std::string file = "data/shaders/gbfont.hlsl_f";
    std::string source = support::LogText(std::getenv("KELVANE_SOURCE_DIR") + ("/" + file));
    const auto codeOf = [&] {
        folder.Write(file, source);
        G::Shader shader;
        EXPECT_TRUE(shader.Load("", "data\\shaders\\gbfont"));
        return shader.IsLoaded() ? Stage(shader.Record()->api.fragment).compiled.code : "";
    };
    EXPECT_EQ(codeOf().find("0.25"), std::string::npos);
    source.insert(source.find("* colour"), "* 0.25 ");
    EXPECT_NE(codeOf().find("0.25"), std::string::npos);
    EXPECT_EQ(ShaderLog() + TakeErrors(), "");
    source.insert(source.find("* colour"), "* none ");
    folder.Write(file, source);
    EXPECT_FALSE(G::Shader().Load("", "data\\shaders\\gbfont"));
    EXPECT_NE(ShaderLog().find("'none' : unknown variable"), std::string::npos) << ShaderLog();
    (void)TakeErrors();
}

TEST_F(Shaders, VertexProfilesAreTriedInOrder) {
    const auto load = [&](std::vector<std::string> compiled, std::vector<std::string> refused) {
        attempts.clear();
        compiledFor = std::move(compiled);
        scripted.script.refusedProfiles = std::move(refused);
        support::ClearLog("_shaders.txt");
        G::Shader shader;
        const bool loaded = shader.Load("s\\a", "");
        EXPECT_EQ(shader.IsLoaded(), loaded);
        return loaded;
    };
    const std::string warned = "Shader warning(s) (s\\a.hlsl_v):\nhm\n";
    compilerText = "hm";
    EXPECT_TRUE(load({"vs_2_0", "vs_1_0", "vs_3_0"}, {}));
    EXPECT_EQ(attempts, std::vector<std::string>{"s\\a.hlsl_v main vs_2_0"});
    EXPECT_TRUE(load({"vs_1_0", "vs_3_0"}, {}));
    EXPECT_EQ(attempts.size(), 2U);
    EXPECT_EQ(ShaderLog(), "") << "the first two are silent";
    EXPECT_TRUE(load({"vs_2_0", "vs_3_0"}, {"vs_2_0"}));
    EXPECT_EQ(attempts.size(), 3U);
    EXPECT_EQ(ShaderLog(), warned + "note: s\\a.hlsl_v loaded, but likely running in software.\n");
    EXPECT_FALSE(load({"vs_3_0"}, {"vs_3_0"}));
    EXPECT_EQ(ShaderLog(), warned +
                               "Failed to create shader (s\\a.hlsl_v), though it did compile... hardware can't "
                               "handle it probably.\n");
    EXPECT_EQ(TakeErrors(), "");
    EXPECT_FALSE(load({}, {}));
    EXPECT_EQ(attempts.size(), 3U);
    EXPECT_EQ(support::LogText("_shaders.txt"), "Failed to compile shader: s\\a.hlsl_v:\nhm");
    EXPECT_EQ(TakeErrors(), "Failed to compile shader: s\\a.hlsl_v\n");
}

TEST_F(Shaders, FragmentProfilesBothReport) {
    const std::string failed = "Failed to compile shader: s\\a.hlsl_f";
    compiledFor = {"ps_2_a", "vs_2_0"};
    G::Shader shader;
    EXPECT_TRUE(shader.Load("", "s\\a"));
    EXPECT_EQ(attempts, (std::vector<std::string>{"s\\a.hlsl_f main ps_2_0", "s\\a.hlsl_f main ps_2_a"}));
    EXPECT_EQ(TakeErrors(), failed + "\n");
    compiledFor = {"vs_2_0"};
    EXPECT_FALSE(shader.Load("s\\a", "s\\a")) << "a named stage failed";
    EXPECT_FALSE(shader.IsLoaded());
    EXPECT_EQ(TakeErrors(), failed + "\n" + failed + "\n");
    EXPECT_EQ(scripted.liveObjects, 0);
    EXPECT_FALSE(shader.Load("", ""));
    EXPECT_FALSE(shader.Load("", "s\\none"));
    EXPECT_EQ(TakeErrors(), "Failed to compile shader: s\\none.hlsl_f\nFailed to compile shader: s\\none.hlsl_f\n");
    EXPECT_NE(ShaderLog().find("s\\none.hlsl_f: the source file is empty or cannot be opened\n"), std::string::npos);
}

TEST_F(Shaders, ConstantsAreFoundByName) {
    G::Shader shader;
    ASSERT_TRUE(shader.Load("s\\a", "s\\a"));
    EXPECT_EQ(ShaderLog(), "") << "standard names may be missing";
    const Vec4 vectors[] = {{1, 2, 3, 4}, {5, 6, 7, 8}};
    shader.SetVectorArray("Tint", vectors, 2);
    shader.SetFloat("Both", 3);
    shader.SetFloat("Only", 4);
    shader.SetMatrix("Values", Identity(), true);
    const platform::ScriptedShader& vertex = Stage(shader.Record()->api.vertex);
    const platform::ScriptedShader& fragment = Stage(shader.Record()->api.fragment);
    EXPECT_EQ(vertex.values.at("Tint").floats, (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(vertex.values.at("Both").floats, std::vector<float>{3});
    EXPECT_EQ(fragment.values.count("Both"), 0U);
    EXPECT_EQ(fragment.values.at("Only").floats, std::vector<float>{4});
    EXPECT_TRUE(fragment.values.at("Values").transposed);
    const std::string both =
        "Warning: constant name(Both) exists in both fragment and vertex shader... fragment constant is "
        "unreachable.\n";
    EXPECT_EQ(TakeErrors(), both);
    shader.SetFloat("None", 1);
    shader.SetInt("Tint", 1);
    G::Shader().SetFloat("None", 1);
    EXPECT_EQ(ShaderLog(),
              both + stack + "Warning: Asking for constant (None) in a shader, but it's not there.\n" + stack);
    EXPECT_EQ(TakeErrors(), "Shader::SetInt not implemented yet in DX.\n");
}

// A B by the textbook, so that the sums here do not come from the code under test.
Mat4 Product(const Mat4& a, const Mat4& b) {
    Mat4 product;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            for (int k = 0; k < 4; ++k)
                product(i, j) += a(i, k) * b(k, j);
    return product;
}

TEST_F(Shaders, StandardMatricesAreWrittenExactly) {
    folder.Write("s/m.hlsl_v", "ModelViewProjectionMatrix ViewProjectionMatrix ModelMatrix ViewMatrix");
    folder.Write("s/m.hlsl_f", "ModelViewMatrix ProjectionMatrix WorldRotMatrix");
    Mat4 world, view, projection;
    for (std::size_t i = 0; i < 16; ++i) {
        world.m[i] = static_cast<float>(i * i % 7);
        view.m[i] = static_cast<float>(i * 3 % 11);
        projection.m[i] = static_cast<float>(i * i % 13) - 5;
    }
    G::Shader shader, other;
    ASSERT_TRUE(shader.Load("s\\m", "s\\m"));
    DXG::SetWorld(Identity());
    DXG::SetView(view);
    DXG::SetProjection(projection);
    shader.Set();
    DXG::SetWorld(world);
    G::UpdateShaderMatrices();
    struct Row {
        const char* name;
        bool inVertex;
        Mat4 value;
        bool transposed;
    };
    const Row rows[] = {
        {"ModelViewProjectionMatrix", true, Transpose(Product(Transpose(Product(view, world)), projection)), true},
        {"ViewProjectionMatrix", true, Product(Transpose(view), projection), true},
        {"ModelViewMatrix", false, Product(world, view), true},
        {"ModelMatrix", true, world, false},
        {"ViewMatrix", true, view, true},
        {"ProjectionMatrix", false, projection, true},
        {"WorldRotMatrix", false, world, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const G::SShaderApiData& api = shader.Record()->api;
        const auto& value = Stage(row.inVertex ? api.vertex : api.fragment).values.at(row.name);
        EXPECT_TRUE(std::equal(value.floats.begin(), value.floats.end(), row.value.m.begin()));
        EXPECT_EQ(value.transposed, row.transposed);
        EXPECT_EQ(value.writes, 2) << "by Set and by the update";
    }
    EXPECT_EQ(scripted.device->current.vertexShader, shader.Record()->api.vertex.get());
    ASSERT_TRUE(other.Load("s\\a", ""));
    other.Set();
    EXPECT_EQ(scripted.device->current.fragmentShader, nullptr) << "a missing stage is the fixed function's";
    const platform::ScriptedShader& stage = Stage(other.Record()->api.vertex);
    G::Shader().Set();
    G::UpdateShaderMatrices();
    EXPECT_EQ(stage.values.at("ModelMatrix").writes, 1) << "none is current";
    other.Set();
    other.Release();
    G::UpdateShaderMatrices();
    EXPECT_EQ(scripted.device->current.vertexShader, nullptr) << "the current shader went";
    shader.Set();
    foundation.Stop();
    EXPECT_FALSE(shader.IsLoaded()) << "shaders go with the device";
    EXPECT_FALSE(shader.Load("s\\a", ""));
    EXPECT_TRUE(TakeErrors().starts_with(
        "Error: G::Shader::Load used when graphics foundation is not initialized.\n  -call made from:\n"));
}

}  // namespace
