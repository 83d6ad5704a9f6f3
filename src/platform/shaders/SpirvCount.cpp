#include "platform/shaders/SpirvCount.h"
#include "platform/Caps.h"

#include <spirv_cross/GLSL.std.450.h>
#include <spirv-tools/optimizer.hpp>
#include <spirv_cross/spirv.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace platform {

namespace {

using Words = std::vector<std::uint32_t>;

struct Instruction {
    spv::Op op;
    const std::uint32_t* words;  // the first word included
    unsigned count;
};

template <typename Visitor>
bool ForEach(const Words& spirv, Visitor visit) {
    constexpr std::size_t headerWords = 5;
    for (std::size_t at = headerWords; at < spirv.size();) {
        const unsigned count = spirv[at] >> 16;
        if (count == 0 || count > spirv.size() - at) return false;
        visit(Instruction{static_cast<spv::Op>(spirv[at] & 0xFFFF), &spirv[at], count});
        at += count;
    }
    return spirv.size() > headerWords;
}

// Inlines, and drops what is not used.
bool Optimise(Words& spirv) {
    spvtools::Optimizer optimiser(SPV_ENV_VULKAN_1_0);
    optimiser.SetMessageConsumer([](spv_message_level_t, const char*, const spv_position_t&, const char*) {});
    optimiser.RegisterPerformancePasses();
    spvtools::OptimizerOptions options;
    options.set_run_validator(false);
    Words optimised;
    if (!optimiser.Run(spirv.data(), spirv.size(), &optimised, options)) return false;
    spirv = std::move(optimised);
    return true;
}

bool IsCompare(spv::Op op) {
    return op >= spv::OpIEqual && op <= spv::OpFUnordGreaterThanEqual;
}

// How often each loop runs, by the block that follows it; 0 when that is not known before the program runs. A loop that
// can be counted compares a value with a constant, which begins as a constant and steps by one.
class Rounds {
  public:
    explicit Rounds(const Words& spirv) {
        ForEach(spirv, [&](const Instruction& each) { Note(each); });
        for (const auto& [block, condition] : conditions)
            rounds[block] = Count(condition);
    }

    std::unordered_map<std::uint32_t, double> rounds;

  private:
    struct Step {
        std::uint32_t left = 0;
        std::uint32_t right = 0;
    };

    void Note(const Instruction& each) {
        const std::uint32_t* words = each.words;
        if (each.op == spv::OpTypeFloat) floats.insert(words[1]);
        if (each.op == spv::OpConstant) {
            float real = 0;
            std::memcpy(&real, &words[3], sizeof real);
            constants[words[2]] =
                floats.contains(words[1]) ? real : static_cast<double>(static_cast<std::int32_t>(words[3]));
        }
        if (IsCompare(each.op)) compares[words[2]] = {words[3], words[4]};
        const bool adds =
            each.op == spv::OpIAdd || each.op == spv::OpISub || each.op == spv::OpFAdd || each.op == spv::OpFSub;
        if (adds) steps[words[2]] = {words[3], words[4]};
        if (each.op == spv::OpPhi)
            for (unsigned at = 3; at + 1 < each.count; at += 2)
                phis[words[2]].push_back(words[at]);
        if (each.op == spv::OpLoopMerge) merge = words[1];
        // The first conditional branch of a loop is its end.
        if (merge != 0 && each.op == spv::OpBranchConditional) conditions[std::exchange(merge, 0)] = words[1];
        if (merge != 0) conditions.try_emplace(merge, 0);
    }

    [[nodiscard]] double Count(std::uint32_t condition) const {
        const auto compare = compares.find(condition);
        if (compare == compares.end()) return 0;
        auto [value, limit] = compare->second;
        if (constants.contains(value)) std::swap(value, limit);
        const auto phi = phis.find(value);
        if (!constants.contains(limit) || phi == phis.end()) return 0;
        double start = 0;
        double step = 0;
        for (const std::uint32_t source : phi->second) {
            const auto constant = constants.find(source);
            if (constant != constants.end()) start = constant->second;
            const auto stepped = steps.find(source);
            if (stepped == steps.end()) continue;
            for (const std::uint32_t part : {stepped->second.left, stepped->second.right})
                if (constants.contains(part)) step = constants.at(part);
        }
        return step == 0 ? 0 : std::max(std::ceil(std::fabs((constants.at(limit) - start) / step)), 1.0);
    }

    std::unordered_set<std::uint32_t> floats;
    std::unordered_map<std::uint32_t, double> constants;
    std::unordered_map<std::uint32_t, Step> compares;
    std::unordered_map<std::uint32_t, Step> steps;
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> phis;
    std::unordered_map<std::uint32_t, std::uint32_t> conditions;
    std::uint32_t merge = 0;
};

// Instructions of the extended set that are more than one, on the hardware of the time.
unsigned ExtendedCost(std::uint32_t instruction) {
    switch (instruction) {
        case GLSLstd450FAbs:
            return 0;
        case GLSLstd450Sin:
        case GLSLstd450Cos:
            return 8;
        case GLSLstd450Tan:
            return 10;
        case GLSLstd450Asin:
        case GLSLstd450Acos:
        case GLSLstd450Atan:
        case GLSLstd450Atan2:
            return 12;
        case GLSLstd450SmoothStep:
            return 7;
        case GLSLstd450Pow:
        case GLSLstd450Normalize:
        case GLSLstd450Length:
        case GLSLstd450Distance:
        case GLSLstd450Reflect:
        case GLSLstd450Round:
            return 3;
        case GLSLstd450Sqrt:
        case GLSLstd450Exp:
        case GLSLstd450Log:
        case GLSLstd450Cross:
        case GLSLstd450FMix:
        case GLSLstd450Floor:
        case GLSLstd450Step:
            return 2;
        default:
            return 1;
    }
}

bool IsImplicitRead(spv::Op op) {
    return op == spv::OpImageSampleImplicitLod || op == spv::OpImageSampleProjImplicitLod;
}

bool IsRead(spv::Op op) {
    return op >= spv::OpImageSampleImplicitLod && op <= spv::OpImageRead;
}
bool IsDerivative(spv::Op op) {
    return op >= spv::OpDPdx && op <= spv::OpFwidthCoarse;
}

class Counter {
  public:
    Counter(SpirvCount& result, const std::unordered_map<std::uint32_t, double>& loopRounds)
        : out(result), rounds(loopRounds) {}

    void Visit(const Instruction& each) {
        NoteTypes(each);
        if (each.op == spv::OpFunction) inCode = true;
        if (!inCode) return;
        FollowLoops(each);
        FollowReads(each);
        if (IsRead(each.op)) reads += factor;
        // A bias is an operand of an implicit read and no gradient.
        const bool explicitRead = IsRead(each.op) && !IsImplicitRead(each.op);
        out.gradients = out.gradients || explicitRead || IsDerivative(each.op);
        instructions += factor * CostOf(each);
    }

    // A value may go round a loop; each further visit of the whole program follows it one round further.
    void VisitAgain(const Instruction& each) { FollowReads(each); }

    void Finish() {
        constexpr double most = 1e9;
        out.instructions = static_cast<unsigned>(std::min(instructions, most));
        out.textureReads = static_cast<unsigned>(std::min(reads, most));
    }

  private:
    void NoteTypes(const Instruction& each) {
        if (each.op == spv::OpTypeVector) components[each.words[1]] = each.words[3];
        if (each.op == spv::OpTypeMatrix) components[each.words[1]] = each.words[3];
    }

    // A loop's header block names the block that follows it; the blocks between belong to it and run in every round.
    void FollowLoops(const Instruction& each) {
        if (each.op == spv::OpLabel && !open.empty() && open.back().first == each.words[1]) {
            factor = open.back().second;
            open.pop_back();
        }
        if (each.op != spv::OpLoopMerge) return;
        open.emplace_back(each.words[1], factor);
        const auto found = rounds.find(each.words[1]);
        const double count = found == rounds.end() ? 0 : found->second;
        if (count < 1 || count > caps::shaderRounds)
            out.openLoops = true;
        else
            factor *= count;
    }

    // The level of a value is the number of reads in a row that led to it.
    void FollowReads(const Instruction& each) {
        const bool hasResult = each.count >= 3 && each.op != spv::OpStore && each.op != spv::OpLabel;
        if (each.op == spv::OpStore) levels[each.words[1]] = std::max(levels[each.words[1]], levels[each.words[2]]);
        if (!hasResult) return;
        unsigned level = 0;
        for (unsigned at = 3; at < each.count; ++at) {
            const auto operand = levels.find(each.words[at]);
            if (operand != levels.end()) level = std::max(level, operand->second);
        }
        if (IsRead(each.op)) out.dependentLevels = std::max(out.dependentLevels, ++level);
        if (level > 0) levels[each.words[2]] = level;
    }

    [[nodiscard]] unsigned ComponentsOf(std::uint32_t type) const {
        const auto found = components.find(type);
        return found == components.end() ? 1 : found->second;
    }

    [[nodiscard]] unsigned CostOf(const Instruction& each) const {
        switch (each.op) {
            case spv::OpExtInst:
                return ExtendedCost(each.words[4]);
            case spv::OpMatrixTimesMatrix:
                return 16;
            case spv::OpMatrixTimesVector:
            case spv::OpVectorTimesMatrix:
                return 4;
            case spv::OpTranspose:
                return 0;
            case spv::OpFDiv:
                return 1 + ComponentsOf(each.words[1]);
            case spv::OpFRem:
            case spv::OpFMod:
                return 4;
            case spv::OpSelect:
                return 2;
            case spv::OpKill:
                return 1;
            default:
                break;
        }
        const bool arithmetic = each.op >= spv::OpSNegate && each.op <= spv::OpFwidthCoarse;
        // A sign is part of the instruction that uses the value.
        return arithmetic && each.op != spv::OpFNegate && each.op != spv::OpSNegate ? 1 : 0;
    }

    SpirvCount& out;
    const std::unordered_map<std::uint32_t, double>& rounds;
    double factor = 1;  // how often the current block runs
    double instructions = 0;
    double reads = 0;
    std::vector<std::pair<std::uint32_t, double>> open;  // loops: the block that follows, and the factor there
    bool inCode = false;
    std::unordered_map<std::uint32_t, unsigned> components;
    std::unordered_map<std::uint32_t, unsigned> levels;
};

}  // namespace

bool HasRecursion(const Words& spirv) {
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> calls;
    std::uint32_t function = 0;
    ForEach(spirv, [&](const Instruction& each) {
        if (each.op == spv::OpFunction) function = each.words[2];
        if (each.op == spv::OpFunctionCall) calls[function].push_back(each.words[3]);
    });
    // Functions whose callees are all free of recursion are taken away until none is left, or only circles are.
    for (bool shrunk = true; shrunk && !calls.empty();) {
        const std::size_t before = calls.size();
        std::erase_if(calls, [&](const auto& entry) {
            return std::none_of(entry.second.begin(), entry.second.end(),
                                [&](std::uint32_t callee) { return calls.contains(callee); });
        });
        shrunk = calls.size() < before;
    }
    return !calls.empty();
}

bool CountSpirv(const Words& spirv, SpirvCount& out) {
    Words program = spirv;
    if (!Optimise(program)) return false;
    const Rounds loops(program);
    Counter counter(out, loops.rounds);
    if (!ForEach(program, [&](const Instruction& each) { counter.Visit(each); })) return false;
    constexpr double enoughForAnyLimit = 6;
    double longest = 1;
    for (const auto& loop : loops.rounds)
        longest = std::max(longest, loop.second);
    for (double round = 1; round < std::min(longest, enoughForAnyLimit); ++round)
        ForEach(program, [&](const Instruction& each) { counter.VisitAgain(each); });
    counter.Finish();
    return true;
}

}  // namespace platform
