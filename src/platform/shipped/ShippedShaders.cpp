#include "platform/ShippedShaders.h"

#include "platform/shipped/ShippedTable.h"

namespace platform {

const CompiledShader* FindShippedShader(const std::string& source, const std::string& entry,
                                        const std::string& profile) {
    for (const ShippedShader& shipped : ShippedTable())
        if (shipped.compiled.profile == profile && shipped.entry == entry && shipped.source == source)
            return &shipped.compiled;
    return nullptr;
}

}  // namespace platform
