// HLSL of the Direct3D 9 era: what is taken, what is refused and why. What the programs draw is tested with the device.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "platform/ShaderCompiler.h"

using namespace platform;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string Repeated(const std::string& text, unsigned times) {
    std::string all;
    for (unsigned at = 0; at < times; ++at)
        all += text;
    return all;
}

// The body of a fragment stage with a sampler, two inputs and a result.
std::string Fragment(const std::string& body, const std::string& before = "") {
    return "sampler2D s; float n; " + before +
           " float4 main(float4 c : COLOR, float2 t : TEXCOORD0) : COLOR { float4 r = c; " + body + " return r; }";
}

std::string Vertex(const std::string& body, const std::string& before = "") {
    return before + " float4 main(float4 p : POSITION) : POSITION { " + body + " return p; }";
}

const ShaderConstant* Find(const CompiledShader& shader, const std::string& name) {
    for (const ShaderConstant& constant : shader.constants)
        if (constant.name == name) return &constant;
    return nullptr;
}

}  // namespace

TEST(ShaderCompiler, TakesWhatItsProfilesAllow) {
    const std::string dependent = "float2 a = tex2D(s, t).xy;";
    const struct {
        const char* name;
        std::string source;
        const char* profile;
        const char* refusal;  // empty: taken
    } rows[] = {
        {"plain fragment", Fragment("r *= tex2D(s, t);"), "ps_2_0", ""},
        {"old sampler word, half, static const",
         "sampler s; static const half4 k = half4(1,2,3,4); half4 main(half2 t : TEXCOORD) : COLOR { return tex2D(s, t) * k; }",
         "ps_2_0", ""},
        {"result by parameter", "void main(float4 p : POSITION, out float4 q : POSITION) { q = p; }", "vs_2_0", ""},
        {"counted loop", Fragment("for (int i = 0; i < 4; i++) r += tex2D(s, t * i);"), "ps_2_0", ""},
        {"open loop", Fragment("for (int i = 0; i < n; i++) r += c;"), "ps_2_0", "a loop cannot be unrolled"},
        {"open loop in 3.0", Fragment("for (int i = 0; i < n; i++) r += c;"), "ps_3_0", ""},
        {"endless loops", Fragment("for (int i = 0; i < 100000; i++) for (int j = 0; j < 100000; j++) r += c * i * j;"),
         "ps_2_0", "a loop cannot be unrolled"},
        {"too many instructions", Fragment(Repeated("r = r * c + sin(r);", 30)), "ps_2_0", "of at most 64"},
        {"the same in 2.a", Fragment(Repeated("r = r * c + sin(r);", 30)), "ps_2_a", ""},
        {"unrolled instructions", Fragment("for (int i = 0; i < 60; i++) r = r * c + sin(r);"), "ps_2_0",
         "of at most 64"},
        {"levels around a loop", Fragment(dependent + "for (int i = 0; i < 5; i++) a = tex2D(s, a).xy; r.xy = a;"),
         "ps_2_0", "levels of dependent"},
        {"four levels", Fragment(dependent + Repeated("a = tex2D(s, a).xy;", 3) + "r.xy = a;"), "ps_2_0", ""},
        {"five levels", Fragment(dependent + Repeated("a = tex2D(s, a).xy;", 4) + "r.xy = a;"), "ps_2_0",
         "5 levels of dependent"},
        {"too many constants", Vertex("p += k[int(p.x)];", "float4 k[200];"), "vs_1_0",
         "200 constant registers, of at most 96"},
        {"no main", "float4 other(float4 p : POSITION) : POSITION { return p; }", "vs_2_0",
         "entry function \"main\" not found"},
        {"effect sampler", "\n\nsampler k = sampler_state { Filter = 1; }; " + Fragment(""), "ps_2_0",
         "line 3: \"sampler_state\""},
        {"two on one register",
         Fragment("r = tex2D(a, t) + tex2D(b, t);", "sampler a : register(s1); sampler b : register(s1);"), "ps_2_0",
         "two samplers share register s1"},
        {"no result", "void main(float4 c : COLOR) { }", "ps_2_0", "writes no COLOR0"},
    };
    for (const auto& row : rows) {
        CompiledShader shader;
        std::string messages;
        const bool taken = CompileShader(row.source, "test.hlsl", "main", row.profile, shader, messages);
        EXPECT_EQ(taken, *row.refusal == 0) << row.name << ": " << messages;
        if (taken) continue;
        EXPECT_THAT(messages, HasSubstr(row.refusal)) << row.name;
        EXPECT_THAT(messages, HasSubstr("test.hlsl")) << row.name;
        EXPECT_EQ(messages.back(), '\n') << row.name;
    }
}

// The compiler drops initial values; they come back as the block's first contents.
TEST(ShaderCompiler, KeepsInitialValues) {
    CompiledShader shader;
    std::string messages;
    const std::string constants =
        "float a = -2.5; uniform float3 b = float3(1, .5, 2e1); float4 c = 3; int d[2] = {7, -8};"
        "float e, f = sin(1); /* float g = 1; */ static float h = 4;\n#define SIX 6\n"
        "#if 0\nfloat2 e;\n#else\nfloat2 i = {1, 5}, j : register(c9) = SIX;\n#endif\n";
    ASSERT_TRUE(CompileShader(Vertex("p += a + b.xyzz + c + d[0] + d[1] + e + f + h + i.xyxy + j.xyxy;", constants),
                              "test.hlsl", "main", "vs_2_0", shader, messages));
    EXPECT_EQ(messages, "test.hlsl: warning: the initial value of \"f\" is not a list of numbers and is not applied\n");
    const auto value = [&](const char* name, std::size_t at) {
        float result = 0;
        std::memcpy(&result, &shader.initialConstants.at(Find(shader, name)->offset + at), 4);
        return result;
    };
    EXPECT_THAT((std::vector{value("a", 0), value("b", 4), value("b", 8), value("c", 12), value("e", 0), value("i", 4),
                             value("j", 4)}),
                ElementsAre(-2.5F, 0.5F, 20, 3, 0, 5, 6));
    std::int32_t second = 0;
    std::memcpy(&second, &shader.initialConstants.at(Find(shader, "d")->offset + 16), 4);
    EXPECT_EQ(second, -8);
}

TEST(ShaderCompiler, GivesSamplersTheirStages) {
    CompiledShader shader;
    std::string messages;
    ASSERT_TRUE(CompileShader(Fragment("r = tex2D(third, t) + tex2D(s, t) + tex2D(free, t);",
                                       "sampler third : register(s1); sampler2D unread; sampler2D free;"),
                              "test.hlsl", "main", "ps_2_0", shader, messages));
    std::vector<std::string> stages;
    for (const ShaderSampler& sampler : shader.samplers)
        stages.push_back(sampler.name + "=" + std::to_string(sampler.stage));
    EXPECT_THAT(stages, testing::UnorderedElementsAre("kvSampler_s=0", "kvSampler_third=1", "kvSampler_free=2"));
}

TEST(ShaderCompiler, SurvivesHostileText) {
    std::string doubling = "#define m0 r +\n";
    for (unsigned at = 1; at < 40; ++at) {
        const std::string last = " m" + std::to_string(at - 1);
        doubling += "#define m" + std::to_string(at) + last + last + "\n";
    }
    const std::string sources[] = {
        std::string("float4 main\0() {}", 17),
        doubling + Fragment("m39;"),
        doubling + "#if m39 0\n#endif\n" + Fragment(""),
        "#include \"other.hlsl\"\n" + Fragment(""),
        "float4 main(float4 c : COLOR) : COLOR { return main(c); }",
        "float4 k[100000000]; " + Fragment("r = k[n];"),
        "float k; float4 k; " + Fragment("r = k;"),
        "float4 k; float kt4x4 k; " + Fragment("r = k;"),
        Fragment("r = tex2D(wrong ++n) + r;"),
        "#define N k\nfloat3 k, j; float4 i = 1, N = 2; " + Fragment("r = k;"),
    };
    for (const std::string& source : sources) {
        CompiledShader shader;
        std::string messages;
        EXPECT_FALSE(CompileShader(source, "test.hlsl", "main", "ps_2_0", shader, messages)) << source.substr(0, 100);
        EXPECT_THAT(messages, HasSubstr("test.hlsl")) << source.substr(0, 100);
        const bool tookLong = source.starts_with("#define m0") && messages.find("broke down") != std::string::npos;
        EXPECT_FALSE(tookLong) << "macros that double are refused before the compiler sees them";
    }
}

TEST(ShaderCompiler, WorksFromSeveralThreads) {
    const auto compile = [] {
        CompiledShader shader;
        std::string messages;
        EXPECT_TRUE(CompileShader(Fragment("r *= tex2D(s, t);"), "test.hlsl", "main", "ps_2_0", shader, messages));
    };
    std::thread other(compile);
    compile();
    other.join();
}
