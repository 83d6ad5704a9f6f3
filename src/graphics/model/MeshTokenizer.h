#pragma once
// The words of a model text: runs of characters between white space. Braces are words of their own.

#include <cstddef>
#include <string>
#include <string_view>

#include "formats/CappedMessages.h"
#include "graphics/model/GBBone.h"

namespace G {

// Told of every message about a text, with the offset of the word that was read last; its end when nothing is left. For
// programs that point at the place.
using ModelMessageSink = void (*)(std::size_t offset, const std::string& message);
// Null, as at the start, drops them.
void SetModelMessageSink(ModelMessageSink sink);

// Reads text that it does not own; its words are valid as long as the text. What goes wrong sets the error flag, which
// stays, and is told to `messages`; reading goes on, and every loop over the words ends, because at the end of the text
// they are empty.
class MeshTokenizer {
  public:
    MeshTokenizer(std::string_view toRead, CappedMessages& sink) : text(toRead), messages(sink) {}

    // The next word, braces included; empty, with the end flag set, when there is none.
    std::string_view RawToken();
    // A word that should be no brace.
    std::string_view NextToken();
    // Both give the value of the word's leading part, whatever follows it.
    int ReadInteger();
    float ReadFloat();
    // Whether a word holds nothing but what a float may hold.
    static bool IsFloat(std::string_view word);
    Vec3 ReadVector();
    Mat3 ReadMatrix();
    bool ExpectOpen();
    bool ExpectClose();
    // Looks at the next word without taking it; false at the end of the text.
    bool AtBrace();
    // Also when the last word taken runs up to the very end of the text.
    [[nodiscard]] bool AtEnd() const { return ended || ranToEnd; }
    // Takes everything up to the brace that closes the first one to come.
    bool SkipScope();
    // Takes words up to the next brace.
    void DropToBrace();

    [[nodiscard]] bool HasEnded() const { return ended; }  // a word was wanted and there was none
    [[nodiscard]] bool HasError() const { return error; }
    void Fail(std::string message);
    void Tell(std::string message);
    // Numbers that the rest of the text can hold at most: each takes a digit and a space.
    [[nodiscard]] std::size_t NumbersLeft() const {
        return (text.size() - position + 1) / 2 + (pushedBack.empty() ? 0 : 1);
    }

  private:
    bool Expect(char brace, const char* message);
    std::string_view ReadNumber(unsigned char allowed, const char* message);
    // For plain numbers, which are taken in one pass: null when a word was put back.
    [[nodiscard]] const char* StartOfNextWord() const;
    void TakeWord(const char* start, const char* stop);

    const std::string_view text;
    CappedMessages& messages;
    std::size_t position = 0;
    std::size_t wordStart = 0;    // of the word before `position`
    std::string_view pushedBack;  // empty: none
    bool error = false;
    bool ended = false;
    bool ranToEnd = false;
};

}  // namespace G
