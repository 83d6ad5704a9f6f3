#include "platform/gl/GlStates.h"

#include <bit>

namespace platform::gl {

namespace {

GLenum FunctionOf(std::uint32_t function) {
    constexpr std::array<GLenum, 8> functions{GL_NEVER, GL_ALWAYS, GL_EQUAL,   GL_NOTEQUAL,
                                              GL_LESS,  GL_LEQUAL, GL_GREATER, GL_GEQUAL};
    return functions[function < functions.size() ? function : 1];
}

GLenum FactorOf(std::uint32_t factor) {
    constexpr std::array<GLenum, 11> factors{GL_ZERO,
                                             GL_ONE,
                                             GL_SRC_COLOR,
                                             GL_ONE_MINUS_SRC_COLOR,
                                             GL_SRC_ALPHA,
                                             GL_ONE_MINUS_SRC_ALPHA,
                                             GL_DST_ALPHA,
                                             GL_ONE_MINUS_DST_ALPHA,
                                             GL_DST_COLOR,
                                             GL_ONE_MINUS_DST_COLOR,
                                             GL_SRC_ALPHA_SATURATE};
    return factors[factor < factors.size() ? factor : factors.size() - 1];
}

void Enable(GLenum what, bool on) {
    if (on)
        glEnable(what);
    else
        glDisable(what);
}

constexpr std::uint32_t BitOf(RenderState state) {
    return 1U << static_cast<unsigned>(state);
}

template <typename Enumeration>
constexpr std::uint32_t Number(Enumeration value) {
    return static_cast<std::uint32_t>(value);
}

}  // namespace

void States::SetDefaults(bool hasStencil) {
    stencilUsable = hasStencil;
    values.fill(0);
    Set(RenderState::DepthTest, Number(DepthMode::On));
    Set(RenderState::DepthWrite, 1);
    Set(RenderState::Lighting, 1);
    Set(RenderState::Fill, Number(FillMode::Solid));
    Set(RenderState::ColourWrite, 15);
    Set(RenderState::Clipping, 1);
    Set(RenderState::Shade, Number(ShadeMode::Gouraud));
    Set(RenderState::Cull, Number(CullMode::CounterClockwise));
    Set(RenderState::AlphaFunction, Number(CompareFunction::Always));
    Set(RenderState::DepthFunction, Number(CompareFunction::LessEqual));
    Set(RenderState::BlendSource, Number(BlendFactor::One));
    Set(RenderState::BlendDestination, Number(BlendFactor::Zero));
    changes = (1U << count) - 1;
    alphaChanged = true;
}

void States::Set(RenderState state, std::uint32_t value) {
    if (static_cast<unsigned>(state) >= count || Get(state) == value) return;
    values[static_cast<unsigned>(state)] = value;
    changes |= BitOf(state);
    alphaChanged = alphaChanged || state == RenderState::AlphaTest || state == RenderState::AlphaReference ||
                   state == RenderState::AlphaFunction;
}

void States::ForgetMasks() {
    changes |= BitOf(RenderState::ColourWrite) | BitOf(RenderState::DepthWrite);
}

void States::Apply() {
    while (changes != 0) {
        const auto state = static_cast<unsigned>(std::countr_zero(changes));
        changes &= changes - 1;
        Send(static_cast<RenderState>(state));
    }
}

void States::Send(RenderState state) const {
    const std::uint32_t value = Get(state);
    switch (state) {
        case RenderState::DepthTest:
            return Enable(GL_DEPTH_TEST, value != 0);
        case RenderState::DepthWrite:
            return glDepthMask(value != 0 ? GL_TRUE : GL_FALSE);
        case RenderState::AlphaBlend:
            return Enable(GL_BLEND, value != 0);
        case RenderState::Stencil:
            return Enable(GL_STENCIL_TEST, value != 0 && stencilUsable);
        case RenderState::Fill: {
            constexpr std::array<GLenum, 3> modes{GL_POINT, GL_LINE, GL_FILL};
            return glPolygonMode(GL_FRONT_AND_BACK, modes[value < modes.size() ? value : 2]);
        }
        case RenderState::ColourWrite:
            return glColorMask((value & 1) != 0, (value & 2) != 0, (value & 4) != 0, (value & 8) != 0);
        case RenderState::Cull:
            // Clockwise faces are front faces.
            Enable(GL_CULL_FACE, value != Number(CullMode::None));
            return glCullFace(value == Number(CullMode::Clockwise) ? GL_FRONT : GL_BACK);
        case RenderState::DepthFunction:
            return glDepthFunc(FunctionOf(value));
        case RenderState::BlendSource:
        case RenderState::BlendDestination:
            return glBlendFunc(FactorOf(Get(RenderState::BlendSource)), FactorOf(Get(RenderState::BlendDestination)));
        // Alpha test and shading are the programs' matter. There are no lights to switch on, clipping is always on, and
        // the stencil's operations keep what is there on both sides.
        default:
            return;
    }
}

std::array<float, 4> States::AlphaTest(bool& changed) {
    changed = alphaChanged;
    alphaChanged = false;
    if (!Has(RenderState::AlphaTest)) return {0.0F, 1.0F, 1.0F, 1.0F};
    const auto function = static_cast<CompareFunction>(Get(RenderState::AlphaFunction));
    const auto passes = [&](CompareFunction strict, CompareFunction orEqual) {
        const bool yes = function == strict || function == orEqual || function == CompareFunction::NotEqual ||
                         function == CompareFunction::Always;
        return yes ? 1.0F : 0.0F;
    };
    const bool equal = function == CompareFunction::Equal || function == CompareFunction::LessEqual ||
                       function == CompareFunction::GreaterEqual || function == CompareFunction::Always;
    return {static_cast<float>(Get(RenderState::AlphaReference) & 255),
            passes(CompareFunction::Less, CompareFunction::LessEqual), equal ? 1.0F : 0.0F,
            passes(CompareFunction::Greater, CompareFunction::GreaterEqual)};
}

}  // namespace platform::gl
