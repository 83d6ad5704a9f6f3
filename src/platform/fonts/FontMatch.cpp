#include "platform/fonts/FontMatch.h"

#include <fontconfig/fontconfig.h>

#include <memory>

namespace platform {
namespace {

constexpr const char* lastResort = "Liberation Sans";

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

// The pattern of a name, enlarged by the system's substitutions.
Pattern SubstitutedPattern(FcConfig* config, const std::string& faceName) {
    Pattern pattern(FcPatternCreate(), &FcPatternDestroy);
    if (!pattern) return pattern;
    if (!faceName.empty())
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(faceName.c_str()));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FC_WEIGHT_NORMAL);
    FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    return pattern;
}

// The name itself and its aliases are bound strongly in the pattern, generic stand-ins weakly.
bool IsWanted(const FcPattern* asked, const FcPattern* found) {
    for (int i = 0;; ++i) {
        FcValue value;
        FcValueBinding binding = FcValueBindingWeak;
        if (FcPatternGetWithBinding(asked, FC_FAMILY, i, &value, &binding) != FcResultMatch) return false;
        if (binding == FcValueBindingWeak || value.type != FcTypeString) continue;
        FcChar8* family = nullptr;
        for (int j = 0; FcPatternGetString(found, FC_FAMILY, j, &family) == FcResultMatch; ++j)
            if (FcStrCmpIgnoreCase(value.u.s, family) == 0) return true;
    }
}

bool MatchName(FcConfig* config, const std::string& faceName, bool anyFamily, FontFile& out) {
    const Pattern pattern = SubstitutedPattern(config, faceName);
    if (!pattern) return false;
    FcResult result = FcResultNoMatch;
    const Pattern found(FcFontMatch(config, pattern.get(), &result), &FcPatternDestroy);
    if (!found || (!anyFamily && !IsWanted(pattern.get(), found.get()))) return false;

    FcChar8* path = nullptr;
    if (FcPatternGetString(found.get(), FC_FILE, 0, &path) != FcResultMatch) return false;
    int index = 0;
    FcPatternGetInteger(found.get(), FC_INDEX, 0, &index);
    out = {reinterpret_cast<const char*>(path), index};
    return true;
}

}  // namespace

bool MatchFont(const std::string& faceName, FontFile& out) {
    // Never destroyed: the message boxes of the last static destructors still write.
    static FcConfig* const config = FcInitLoadConfigAndFonts();
    if (!config) return false;
    return (!faceName.empty() && MatchName(config, faceName, false, out)) || MatchName(config, lastResort, true, out);
}

}  // namespace platform
