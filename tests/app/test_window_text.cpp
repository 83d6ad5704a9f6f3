#include <gtest/gtest.h>

#include "platform/sdl/ScanCodes.h"
#include "platform/sdl/WindowsText.h"

namespace {

TEST(WindowsText, KeepsWhatTheCodePageHas) {
    const std::pair<std::string, std::string> rows[] = {
        {"plain ~", "plain ~"},
        {"\xC3\xA9\xC3\xBF", "\xE9\xFF"},
        {"\xE2\x82\xAC\xE2\x80\x99\xC5\xB8", "\x80\x92\x9F"},
        {"a\xE6\xBC\xA2z", "az"},  // not in the code page
        {"a\xC2\x81z", "az"},      // a hole of the code page
        {"a\xFFz", "az"},          // no UTF-8
        {"a\xE2\x82", "a"},        // cut short
        {"a\xC3(", "a("},          // broken inside
    };
    for (const auto& [utf8, bytes] : rows)
        EXPECT_EQ(platform::WindowsBytesOf(utf8), bytes) << utf8;
}

TEST(ScanCodes, TellTheKeypadFromTheArrows) {
    const struct {
        SDL_Scancode key;
        int code;
        bool extended;
    } rows[] = {
        {SDL_SCANCODE_UP, 200, true},     {SDL_SCANCODE_KP_8, 72, false},   {SDL_SCANCODE_KP_4, 75, false},
        {SDL_SCANCODE_KP_5, 76, false},   {SDL_SCANCODE_KP_6, 77, false},   {SDL_SCANCODE_LEFT, 203, true},
        {SDL_SCANCODE_RETURN, 28, false}, {SDL_SCANCODE_LCTRL, 29, false},  {SDL_SCANCODE_RCTRL, 157, true},
        {SDL_SCANCODE_F10, 68, false},    {SDL_SCANCODE_F11, 87, false},    {SDL_SCANCODE_DELETE, 211, true},
        {SDL_SCANCODE_PAUSE, 197, false}, {SDL_SCANCODE_UNKNOWN, 0, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(platform::ScanCodeOf(row.key), row.code) << row.key;
        EXPECT_EQ(platform::IsExtendedKey(row.key), row.extended) << row.key;
    }
}

}  // namespace
