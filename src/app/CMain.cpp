#include "app/CMain.h"

#include <deque>
#include <utility>

#include "diag/CMemMan.h"
#include "diag/LogFile.h"
#include "formats/Palette.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGState.h"
#include "graphics/text/Draw2D.h"
#include "graphics/text/GBTextWindow.h"
#include "input/KeyboardStateManager.h"
#include "input/ShellInput.h"
#include "platform/Caps.h"
#include "session/DreamLoading.h"
#include "session/ServerAddress.h"
#include "session/TolvDataManager.h"
#include "session/TolvFileGetter.h"
#include "session/TolvSession.h"
#include "world/Camera.h"
#include "world/TolvRenderer.h"

namespace {

constexpr std::uint8_t keyLeftControl = 0x1D;
constexpr std::uint8_t keyRightControl = 0x9D;
constexpr std::uint32_t black = 0xFF000000U;
constexpr std::uint32_t white = 0xFFFFFFFFU;
constexpr std::uint32_t lightRed = 0xFFFFBFBFU;
constexpr std::uint32_t lightBlue = 0xFFBFBFFFU;  // red and green 0.75 of 255, cut off
constexpr std::uint32_t lightGreen = 0xFFBFFFBFU;
constexpr std::uint32_t failureColour = 0xFFDC9696U;
constexpr std::uint32_t backdrop = 0x50444444U;
constexpr float pixelsOfScroll = 224.0F;

std::uint32_t ChatColourOf(char first) {
    switch (first) {
        case '*':
            return lightRed;
        case '[':
            return lightBlue;
        case '(':
        case '>':
            return lightGreen;
        default:
            return white;
    }
}

// -1 for a code that is no movement.
int MoveDirectionOf(std::uint8_t code) {
    switch (code) {
        case typed::pageUp:
        case typed::up:
            return 0;
        case typed::home:
        case typed::left:
            return 1;
        case typed::end:
        case typed::down:
            return 2;
        case typed::pageDown:
        case typed::right:
            return 3;
        case typed::remove:
            return 4;
        case typed::insert:
            return 5;
        default:
            return -1;
    }
}

bool IsInScrollBar(int x, int y) {
    return x >= 741 && x <= 763 && y >= 301 && y <= 555;
}

}  // namespace

bool EditTypedLine(std::string& line, std::uint8_t code, bool controlHeld) {
    if (code == typed::backspace && !line.empty()) {
        line.pop_back();
        return true;
    }
    if (code < 32 || code > 126 || controlHeld) return false;
    if (line.size() < caps::typedLineBytes) line += static_cast<char>(code);
    return true;
}

std::string WireLineOf(const std::string& typedLine) {
    if (typedLine.empty()) return typedLine;
    if (typedLine[0] == '`') return typedLine.substr(1);
    if (typedLine[0] == '/') return "wh " + typedLine.substr(1);
    if (typedLine[0] == ':') return typedLine;
    return "\"" + typedLine;
}

G::ColouredText ColouredChat(const std::string& text) {
    G::ColouredText coloured;
    std::size_t lineStart = 0;
    for (;;) {
        const std::size_t lineEnd = text.find('\n', lineStart);
        const std::size_t next = lineEnd == std::string::npos ? text.size() : lineEnd + 1;
        if (lineStart < text.size()) coloured.Colour(ChatColourOf(text[lineStart]));
        coloured.Add(text.substr(lineStart, next - lineStart));
        if (lineEnd == std::string::npos) return coloured;
        lineStart = next;
    }
}

CMain::CMain() {
    inputText.SetPosition(50.0F, 555.0F);
    inputText.SetWrapWidth(700.0F);
    netClient.SetSendPatience(caps::gameSendPatienceMs);
    TolvSession::Default().SetNetClient(&netClient);
    textWindow = new2<G::TextWindow>({"G::TextWindow", "G::TextWindow(40,300,700,250,60)", "CMain", 64}, 40.0F, 300.0F,
                                     700.0F, 250.0F, 60, 16.0F, std::string(), false, 0.5F);
    ConnectToServer();
    TolvRenderer::Init();
    TolvSession::Default().SetWorldPort(&TolvRenderer::Port());
    LoadCharacterColorTables();
    scrollTrack.Load("data\\ui\\sbar0.png", DXG::TextureType::AsFile, false, false);
    scrollThumb.Load("data\\ui\\sbar1.png", DXG::TextureType::AsFile, false, false);
}

void CMain::ConnectToServer() {
    std::string address;
    int port = 0;
    if (ReadServerAddress("data\\tolv_ip.txt", address, port)) {
        textWindow->AddLine(ColouredChat("Connecting to tolvarin server at " + address + " on port " +
                                         std::to_string(port) + " ...\n"));
    } else {
        errorLog.Write("Failed to load tolv's ip and port from file.\n");
        textWindow->AddLine(ColouredChat("Failed to load tolv's ip and port from \\data\\tolv_ip.txt file.\n"));
    }
    textWindow->AddLine(
        ColouredChat(netClient.Connect(address, port) ? "Connected to server.\n" : "CONNECTION TO SERVER FAILED.\n"));
}

CMain::~CMain() {
    delete2(textWindow, "CMain", 115);
    TolvDataManager& data = TolvDataManager::Default();
    while (!data.GetTransfers().empty())
        data.EndTransfer(data.GetTransfers().front());
    TolvRenderer::Shutdown();
    TolvSession::Default().SetWorldPort(nullptr);
    TolvSession::Default().SetNetClient(nullptr);
}

void CMain::Update(float seconds) {
    TolvSession::Default().PollServer();
    ShowMessages();
    TakeTyped();
    TakeMouse();
    const ShellInput& input = ShellInput::Default();
    int gx = 0;
    int gy = 0;
    TolvDataManager::Default().GetViewPosition(gx, gy);
    ScreenToCell(input.MouseX(), input.MouseY(), gx, gy);
    TolvRenderer::SetHoverCell(gx, gy);
    UpdateTransfers();
    TolvRenderer::Update(seconds);
}

void CMain::ShowMessages() {
    // What the window would drop again at once need not be laid out.
    std::deque<std::string> messages;
    for (std::string message; TolvDataManager::Default().PopMessage(message);) {
        messages.push_back(std::move(message));
        if (messages.size() > static_cast<std::size_t>(textWindow->LineLimit())) messages.pop_front();
    }
    for (const std::string& message : messages)
        textWindow->AddLine(ColouredChat(message));
}

void CMain::TakeTyped() {
    ShellInput& input = ShellInput::Default();
    const KeyboardStateManager& keyboard = KeyboardStateManager::Default();
    const bool controlHeld = keyboard.IsKeyDown(keyLeftControl) || keyboard.IsKeyDown(keyRightControl);
    while (input.HasTyped()) {
        TakeByte(input.TakeTyped(), controlHeld);
        inputText.SetText(Vary(inputLine));
    }
}

void CMain::TakeByte(std::uint8_t code, bool controlHeld) {
    if (EditTypedLine(inputLine, code, controlHeld)) return;
    if (!netClient.IsConnected()) return;
    if (code == typed::enter && !inputLine.empty()) {
        SendTypedLine();
        inputLine.clear();
        return;
    }
    const int direction = MoveDirectionOf(code);
    if (direction >= 0) TolvSession::Default().SendMove(direction);
}

void CMain::SendTypedLine() {
    if (TolvSession::Default().SendLine(WireLineOf(inputLine))) return;
    textWindow->AddLine(G::ColouredText().Colour(failureColour).Add(";SEND TO SERVER FAILED!"));
}

void CMain::TakeMouse() {
    const ShellInput& input = ShellInput::Default();
    const int x = input.MouseX();
    const int y = input.MouseY();
    if (input.LeftClicked()) {
        if (IsInScrollBar(x, y)) {
            draggingScroll = true;
        } else {
            int gx = 0;
            int gy = 0;
            TolvDataManager::Default().GetViewPosition(gx, gy);
            ScreenToCell(x, y, gx, gy);
            TolvSession::Default().SendLook(gx, gy);
        }
    }
    if (!input.LeftHeld()) draggingScroll = false;
    if (draggingScroll) textWindow->SetScroll(static_cast<float>(y - 316) * 0.004464286F);
    if (input.WheelSteps() != 0)
        textWindow->SetScroll(textWindow->Scroll() + static_cast<float>(input.WheelSteps()) * 0.05F);
}

void CMain::Render() {
    DXG::Clear(black, true, true, true, 0);
    DXG::SetViewportToBackBuffer();
    TolvRenderer::Render();
    DXG::Set2DWholeBackBuffer();
    DXG::SetState(DXG::alphaBlend, true);
    G::DrawRectangle(35.0F, 300.0F, 705.0F, 283.0F, {backdrop, backdrop, backdrop, backdrop});
    inputText.Draw();
    DrawTransfers();
    textWindow->Draw();
    DXG::Set2DWholeBackBuffer();
    DrawScrollBar();
}

void CMain::DrawTransfers() {
    const auto& transfers = TolvDataManager::Default().GetTransfers();
    const int count = static_cast<int>(transfers.size());
    int place = 0;
    for (const Transfer& transfer : transfers) {
        int received = 0;
        int totalSize = 0;
        transfer.getter->GetProgress(received, totalSize);
        Vary line("File Transfer (");
        line += transfer.id;
        line += "): ";
        line += Vary(received);
        line += " / ";
        line += Vary(totalSize);
        transferText.SetText(line);
        transferText.SetPosition(250.0F, static_cast<float>(280 + 24 * (place + 1 - count)));
        transferText.Draw();
        ++place;
    }
}

void CMain::DrawScrollBar() {
    if (scrollTrack.IsLoaded()) G::DrawTexture(scrollTrack, 740.0F, 300.0F, 0.5F);
    if (scrollThumb.IsLoaded())
        G::DrawTexture(scrollThumb, 740.0F, 300.0F + textWindow->Scroll() * pixelsOfScroll, 0.5F);
}
