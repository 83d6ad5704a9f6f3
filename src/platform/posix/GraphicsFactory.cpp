// The graphics back end of the process: registered by whoever links one, asked for by the graphics foundation.

#include <utility>

#include "platform/GraphicsDevice.h"

namespace platform {

namespace {
GraphicsInterfaceFactory currentFactory = nullptr;
void* mainWindow = nullptr;
}  // namespace

std::unique_ptr<GraphicsInterface> CreateGraphicsInterface() {
    return currentFactory ? currentFactory() : nullptr;
}

GraphicsInterfaceFactory SetGraphicsInterfaceFactory(GraphicsInterfaceFactory factory) {
    return std::exchange(currentFactory, factory);
}

void SetMainNativeWindow(void* handle) {
    mainWindow = handle;
}
void* MainNativeWindow() {
    return mainWindow;
}

}  // namespace platform
