#pragma once
// The scene of a logged-in player: the world, the chat over it and the line being typed.

#include <string>
#include <string_view>

#include "app/Scene.h"
#include "graphics/device/DXGTexture.h"
#include "graphics/text/GBText.h"
#include "net/NetClient.h"
#include "platform/Caps.h"

namespace G {
class TextWindow;
}

class CMain : public Scene {
  public:
    CMain();  // connects at once
    ~CMain() override;

    void Update(float seconds) override;
    void Render() override;
    [[nodiscard]] std::string GetName() const override { return "CMain"; }

  private:
    void ConnectToServer();
    void ShowMessages();
    void TakeTyped();
    void TakeByte(std::uint8_t code, bool controlHeld);
    void SendTypedLine();
    void TakeMouse();
    void DrawTransfers();
    void DrawScrollBar();

    std::string inputLine;
    G::Text inputText;
    NET::Client netClient{caps::gameBufferBytes};
    G::Text transferText;
    G::TextWindow* textWindow = nullptr;
    DXG::Texture scrollTrack;
    DXG::Texture scrollThumb;
    bool draggingScroll = false;
};

// Applies a typed byte to the line: a backspace or a printable one, which is left out when the line is full. False for
// anything else.
bool EditTypedLine(std::string& line, std::uint8_t code, bool controlHeld);

// The line that goes to the server for what the player typed: a backquote sends the rest raw, a slash whispers, a colon
// emotes, anything else is spoken.
std::string WireLineOf(const std::string& typedLine);

// Chat text with its colours: the first character of each line picks one.
G::ColouredText ColouredChat(const std::string& text);
