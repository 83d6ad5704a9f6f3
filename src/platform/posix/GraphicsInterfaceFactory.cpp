#include "platform/GraphicsDevice.h"

#include <atomic>

namespace platform {

namespace {

std::atomic<GraphicsInterfaceFactory> registered{nullptr};
std::atomic<void*> mainWindow{nullptr};

}  // namespace

std::unique_ptr<GraphicsInterface> CreateGraphicsInterface() {
    const GraphicsInterfaceFactory factory = registered;
    return factory ? factory() : nullptr;
}

GraphicsInterfaceFactory SetGraphicsInterfaceFactory(GraphicsInterfaceFactory factory) {
    return registered.exchange(factory);
}

void SetMainNativeWindow(void* handle) {
    mainWindow = handle;
}
void* MainNativeWindow() {
    return mainWindow;
}

}  // namespace platform
