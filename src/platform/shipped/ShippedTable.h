#pragma once
// The table that generate/main.cpp writes at build time.

#include <string>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

struct ShippedShader {
    std::string source;
    std::string entry;
    CompiledShader compiled;
};

const std::vector<ShippedShader>& ShippedTable();

}  // namespace platform
