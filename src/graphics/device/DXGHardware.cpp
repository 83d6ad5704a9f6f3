#include "graphics/device/DXGHardware.h"

#include <memory>

#include "diag/LogFile.h"
#include "diag/SystemReport.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

namespace {

// What other files of the foundation ask about the card.
struct Capabilities {
    bool pixelShaders = true;
    unsigned vertexShaderMajor = 1;
    bool volumeTextures = false;
};
Capabilities found;

constexpr std::uint32_t vendorAti = 0x1002;
constexpr std::uint32_t vendorNvidia = 0x10DE;

// Only two vendors' driver numbers are known well enough to call a driver old.
bool IsOldDriver(const platform::AdapterIdentity& identity) {
    if (identity.vendorId != vendorAti && identity.vendorId != vendorNvidia) return false;
    if (identity.driverVersionHigh >= 0x0006000FU) return false;
    const std::uint32_t oldestLow = identity.vendorId == vendorAti ? 0x000A19C7U : 0x000A1E61U;
    return identity.driverVersionHigh < 0x0006000EU || identity.driverVersionLow < oldestLow;
}

void WriteNumber(unsigned number) {
    statLog.Write(static_cast<long>(number));
}

void ReportVertexWork(const platform::DeviceCapabilities& card, unsigned& vertexProcessing) {
    vertexProcessing = card.hardwareTransform ? 1 : 0;
    statLog.Write(card.hardwareTransform ? "Hardware TnL support detected.\n"
                                         : "Video card does NOT support Hardware TnL.\n");
    found.pixelShaders = card.pixelShaderMajor > 0;
    if (found.pixelShaders) {
        statLog.Write("Hardware PS version: ");
        WriteNumber(card.pixelShaderMajor);
        statLog.Write("\n");
    } else {
        statLog.Write("Video card does NOT support pixel shaders.\n");
    }
    found.vertexShaderMajor = card.vertexShaderMajor;
    if (card.vertexShaderMajor > 0) {
        vertexProcessing = card.vertexShaderMajor >= 3 ? 2 : 1;
        statLog.Write("Hardware VS version: ");
        WriteNumber(card.vertexShaderMajor);
        statLog.Write("\n");
    } else {
        vertexProcessing = 0;
        statLog.Write("Video card does NOT support vertex shaders... will use software vertex processing\n");
    }
}

void ReportTextures(const platform::DeviceCapabilities& card) {
    statLog.Write(card.cubeMaps ? "Cube Maps supported.\n" : "Cube maps NOT supported.\n");
    statLog.Write("Max texture dimesnions: ");
    WriteNumber(card.maxTextureWidth);
    statLog.Write(" x ");
    WriteNumber(card.maxTextureHeight);
    statLog.Write("\n");
    found.volumeTextures = card.volumeTextures;
    if (!card.volumeTextures) {
        statLog.Write("3D textures NOT supported.\n");
        return;
    }
    statLog.Write("3D textures supported.\n");
    statLog.Write(card.volumePowerOfTwoOnly ? "  -MUST be power of 2 dimensions\n"
                                            : "  -power of 2 dimensions not required\n");
    const std::string extent = std::to_string(card.maxVolumeExtent);
    statLog.Write("  -max 3D texture dimensions: ");
    statLog.Write(extent + " x " + extent + " x " + extent + "\n");
}

void ReportVertexInput(const platform::DeviceCapabilities& card, unsigned& vertexProcessing) {
    statLog.Write("Max vertex stearms supported: ");
    if (card.maxStreams > 0) {
        WriteNumber(card.maxStreams);
        statLog.Write("\n");
    } else {
        statLog.Write("1 (ancient driver too!)\n");
    }
    if (!card.vertexDeclarations) {
        vertexProcessing = 0;
        statLog.Write("Device DOES NOT support vertex declarations (have to use software vertex processing now).\n");
    }
    statLog.Write("Max silmutaneous render targets: ");
    WriteNumber(card.maxRenderTargets);
    statLog.Write("\n");
}

}  // namespace

bool CheckHardware(unsigned& vertexProcessing, std::string& warningText, bool& noGraphics) {
    noGraphics = false;
    WriteSystemReport();
    const std::unique_ptr<platform::GraphicsInterface> graphics = platform::CreateGraphicsInterface();
    if (!graphics) {
        errorLog.Write("Failed to create Direct3D9 object\n");
        warningText =
            "DirectX9.0c or greater is required to run this program.\n"
            "Older versions of DirectX (including DirectX9.0b) will not work.\n"
            "Please see the download page of your system's or your graphics card's vendor.\n\n";
        noGraphics = true;
        return true;
    }
    platform::AdapterIdentity identity;
    (void)graphics->ReadIdentity(0, identity);  // an unknown card has no name and no old driver
    statLog.Write("Video card: ");
    statLog.Write(identity.description);
    statLog.Write("\n");
    const bool warn = IsOldDriver(identity);
    if (warn)
        warningText =
            "It has been detected that you may be using an older driver for your video card.\n"
            "Please update it, lest things potentially not work right.\n";
    platform::DeviceCapabilities card;
    if (!graphics->ReadCapabilities(0, card)) {
        errorLog.Write("Could not retrieve graphics device capabilities\n");
        return false;
    }
    ReportVertexWork(card, vertexProcessing);
    ReportTextures(card);
    ReportVertexInput(card, vertexProcessing);
    statLog.Write("\n");
    return warn;
}

void ForgetCapabilities() {
    found = Capabilities();
}
bool HasPixelShaders() {
    return found.pixelShaders;
}
unsigned VertexShaderMajor() {
    return found.vertexShaderMajor;
}
bool HasVolumeTextures() {
    return found.volumeTextures;
}

}  // namespace DXG
