#include "fuzz/FuzzEntry.h"
#include "platform/ShaderCompiler.h"

std::vector<std::string> fuzz::Seeds() {
    return {
        "float4x4 toScreen; float time = 1; struct Out { float4 at : POSITION; float2 uv : TEXCOORD0; };\n"
        "Out main(float4 at : POSITION, float2 uv : TEXCOORD0) { Out o; o.at = mul(toScreen, at * time); o.uv = uv; "
        "return o; }\n",
        "sampler2D picture : register(s0); float4 main(float2 uv : TEXCOORD0) : COLOR {\n"
        "#if 1\n  float4 c = tex2D(picture, uv); for (int i = 0; i < 4; ++i) c += i; return c;\n#endif\n}\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    const std::string source(fuzz::Text(data, size));
    for (const char* profile : {"vs_2_0", "ps_2_0"}) {
        platform::CompiledShader shader;
        std::string messages;
        (void)platform::CompileShader(source, "fuzz.hlsl", "main", profile, shader, messages);
    }
    return 0;
}
