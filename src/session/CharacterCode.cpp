#include "session/CharacterCode.h"

#include <algorithm>

#include "formats/CappedMessages.h"
#include "platform/Caps.h"
#include "session/TolvDataManager.h"
#include "session/WireNumbers.h"

namespace {

constexpr int variantFrames = 500;  // frames above stand for the same ones of the second variant
constexpr int groupFrames = 20;
constexpr int lastGroup = 5;

// Frames 1 to 16 of a group are four facings of four poses; 17 to 20 are one pose in four facings.
void SetPose(int frame, Character& character) {
    static constexpr int poses[] = {0, 3, 2, 4};
    static constexpr int facings[] = {2, 3, 1, 0};
    static constexpr int lastFacings[] = {2, 3, 0, 1};
    if (frame == 0) {
        character.pose = 4;
    } else if (frame <= 16) {
        character.pose = poses[(frame - 1) % 4];
        character.facing = facings[(frame - 1) / 4];
    } else {
        character.pose = 1;
        character.facing = lastFacings[frame - 17];
    }
}

}  // namespace

void DecodeCharacter(std::string_view colorCode, std::string_view frameCode, Character& character) {
    const std::size_t count = std::min(colorCode.size(), character.colorDigits.size());
    for (std::size_t i = 0; i < count; ++i)
        character.colorDigits[i] = static_cast<std::uint8_t>(static_cast<unsigned char>(colorCode[i]) - 32);

    character.group = character.variant = character.facing = character.pose = 0;
    const int wholeFrame = DecodeBase95(frameCode);
    if (wholeFrame <= 0) return;
    int frame = wholeFrame;
    if (frame > variantFrames) {
        character.variant = 2;
        frame -= variantFrames;
    }
    character.group = std::min((frame - 1) / groupFrames, lastGroup);
    frame -= character.group * groupFrames;
    if (frame > groupFrames) {
        static CappedMessages reports(caps::postureMessages);
        reports.Add("Warning: Animation frame could not be correctly parsed: " + std::to_string(wholeFrame) + "\n");
        reports.Flush();
        frame %= groupFrames + 1;
    }
    SetPose(frame, character);
}
