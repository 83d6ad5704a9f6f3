#pragma once
// The shaders of data/shaders as they were when the program was built, compiled then: a start need not compile them.

#include <string>

#include "platform/ShaderCompiler.h"

namespace platform {

// What CompileShader makes of `source` for the profile, or null: for a source that differs in a single byte from a
// shipped one, for another entry function than "main", and where compiling fails or has something to say.
[[nodiscard]] const CompiledShader* FindShippedShader(const std::string& source, const std::string& entry,
                                                      const std::string& profile);

}  // namespace platform
