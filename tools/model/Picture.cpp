// picture: a model as the client draws it, from where the client's camera rests.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <numbers>
#include <stdexcept>

#include "Commands.h"
#include "LoadedModel.h"
#include "OutputFile.h"
#include "Scratch.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"
#include "platform/ImageCodec.h"
#include "platform/MessageBox.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"

namespace fs = std::filesystem;

namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr unsigned mostSide = 2048;
constexpr unsigned fine = 2;  // pixels drawn for one of the picture, each way
constexpr float pi = std::numbers::pi_v<float>;
constexpr float fieldOfView = pi / 4.0F;

struct Request {
    unsigned width = 512;
    unsigned height = 512;
    float turn = 0.0F;  // radians
    bool transparent = true;
    std::uint32_t background = 0xFF000000U;
    fs::path data;
};

template <typename Number>
bool ReadWhole(std::string_view text, Number& out, int base) {
    const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), out, base);
    return result == std::errc() && end == text.data() + text.size();
}

// The folder with the client's shader: the user's choice, or what lies in or above the user's folder or the program's.
fs::path FindData(const Arguments& arguments) {
    const auto hasShader = [](const fs::path& folder) { return fs::exists(folder / "shaders/simple.hlsl_v"); };
    if (arguments.Has("--data")) {
        const std::string given = arguments.Text("--data", "");
        if (!hasShader(UserPath(given))) throw std::runtime_error("no shaders/simple.hlsl_v in " + given);
        return UserPath(given);
    }
    for (const fs::path& start : {UserPath("."), fs::read_symlink("/proc/self/exe").parent_path()})
        for (fs::path folder = start; folder != folder.parent_path(); folder = folder.parent_path())
            if (hasShader(folder / "data")) return folder / "data";
    throw std::runtime_error("the client's data is not found; say --data FOLDER");
}

Request RequestOf(const Arguments& arguments) {
    Request request;
    const std::string size = arguments.Text("--size", "512x512");
    const std::size_t cross = size.find('x');
    const bool isSize = cross != std::string::npos && ReadWhole(size.substr(0, cross), request.width, 10) &&
                        ReadWhole(size.substr(cross + 1), request.height, 10);
    const auto fits = [](unsigned side) { return side >= 1 && side <= mostSide; };
    if (!isSize || !fits(request.width) || !fits(request.height))
        throw UsageError{"--size needs WIDTHxHEIGHT, each from 1 to " + std::to_string(mostSide) + ", not " + size};
    request.turn = arguments.Number("--turn", 0.0F) * pi / 180.0F;
    request.transparent = !arguments.Has("--background");
    const std::string colour = arguments.Text("--background", "000000");
    std::uint32_t rgb = 0;
    if (colour.size() != 6 || !ReadWhole(colour, rgb, 16)) throw UsageError{"--background needs RRGGBB, not " + colour};
    request.background = 0xFF000000U | rgb;
    request.data = FindData(arguments);
    return request;
}

// OpenGL without a screen where the system has that, else behind a window that is never shown.
class HiddenDevice {
  public:
    HiddenDevice(unsigned width, unsigned height) {
        platform::UseOpenGl();
        const bool userChose = std::getenv("SDL_VIDEODRIVER") != nullptr;
        if (!userChose) setenv("SDL_VIDEODRIVER", "offscreen", 1);
        if (Start(width, height)) return;
        Stop();
        if (!userChose) unsetenv("SDL_VIDEODRIVER");
        if (userChose || !Start(width, height)) throw std::runtime_error("no OpenGL 3.3 to draw with");
    }
    ~HiddenDevice() {
        G::DestroyModelBones();
        Stop();
    }
    HiddenDevice(const HiddenDevice&) = delete;
    HiddenDevice& operator=(const HiddenDevice&) = delete;

  private:
    bool Start(unsigned width, unsigned height) {
        platform::WindowFailure failure = platform::WindowFailure::None;
        window = platform::CreateMainWindow(
            {"KelvaneModel", "", static_cast<int>(width), static_cast<int>(height), 0, 0}, failure);
        if (!window) return false;
        DXG::ForgetFailure();
        setup.colour32 = true;
        setup.width = width;
        setup.height = height;
        setup.vertexProcessing = 2;
        unsigned processing = 0;
        std::string warning;
        bool noGraphics = false;
        DXG::CheckHardware(processing, warning, noGraphics);
        return !noGraphics && DXG::Init(window.get(), &setup);
    }
    void Stop() {
        if (DXG::IsInitialized()) DXG::Shutdown();
        window.reset();
        platform::SetMessageBoxHandler(nullptr);  // a box that nobody sees would wait for ever
    }

    std::unique_ptr<platform::Window> window;
    DXG::Setup setup;
};

// As near as the whole model is seen, in the direction in which the client's camera rests.
void SetCamera(const std::vector<PlacedChunk>& chunks, const Request& request) {
    const Bounds bounds = BoundsOf(chunks);
    if (bounds.empty) throw std::runtime_error("the model has no triangles to draw");
    const Vec3 centre = (bounds.low + bounds.high) * 0.5F;
    const float angle = pi / 4.0F + request.turn;
    Vec3 back{6.8F * std::cos(angle), 6.8F * std::sin(angle), 7.9F};
    back = back * (1.0F / Length(back));
    const std::optional<Mat4> turned = LookAt({}, -back, {0.0F, 0.0F, 1.0F}, false, false);
    if (!turned) throw std::runtime_error("the camera has no direction");
    const float up = std::tan(fieldOfView / 2.0F);
    const float across = up * static_cast<float>(request.width) / static_cast<float>(request.height);
    float distance = 0.0F;
    float nearest = 0.0F;
    float farthest = 0.0F;
    for (const PlacedChunk& chunk : chunks)
        for (const std::uint16_t index : chunk.indices) {
            const Vec3 from = chunk.vertices[index].position - centre;
            const Vec4 seen = Transform(*turned, {from.x, from.y, from.z, 1.0F});
            distance = std::max({distance, std::abs(seen.x) / across - seen.z, std::abs(seen.y) / up - seen.z});
            nearest = std::min(nearest, seen.z);
            farthest = std::max(farthest, seen.z);
        }
    constexpr float margin = 1.04F;
    distance *= margin;
    const std::optional<Mat4> view = LookAt(centre + back * distance, centre, {0.0F, 0.0F, 1.0F}, false, false);
    if (!view || !std::isfinite(distance)) throw std::runtime_error("the model is too small or too large to draw");
    DXG::SetView(*view);
    const float nearDepth = std::max(distance + nearest, distance * 0.01F) * 0.9F;
    DXG::SetProjection(Perspective(fieldOfView, up / across, nearDepth, (distance + farthest) * 1.1F));
}

Pixels DrawOn(std::uint32_t background, const std::vector<PlacedChunk>& chunks, G::Shader& shader, G::Mesh& model,
              const Request& request) {
    if (!DXG::BeginFrame(0.0F, false, true)) throw std::runtime_error("the graphics card is lost");
    DXG::SetViewportToBackBuffer();
    DXG::Clear(background, true, true, true, 0);
    SetCamera(chunks, request);
    DXG::SetCullMode(0);
    shader.Set();
    model.Draw(false);
    Pixels pixels;
    unsigned width = 0;
    unsigned height = 0;
    const bool isRead = DXG::GetDevice()->ReadBackBuffer(pixels, width, height);
    DXG::EndFrame0();
    DXG::EndFrame1();
    if (!isRead || width != request.width * fine || height != request.height * fine)
        throw std::runtime_error("the picture cannot be read from the graphics card");
    return pixels;
}

// One channel of a picture's pixel, 0 to 255.
double Mean(const Pixels& drawn, const Request& request, unsigned x, unsigned y, unsigned shift) {
    double sum = 0.0;
    for (unsigned i = 0; i < fine * fine; ++i)
        sum += drawn[(y * fine + i / fine) * request.width * fine + x * fine + i % fine] >> shift & 0xFFU;
    return sum / (fine * fine);
}

std::uint32_t Byte(double value) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

// What is as bright on black as on white hides the background; the difference is how much of it is seen.
Pixels Merge(const Pixels& onBlack, const Pixels& onWhite, const Request& request) {
    Pixels merged;
    for (unsigned y = 0; y < request.height; ++y)
        for (unsigned x = 0; x < request.width; ++x) {
            const double seen = Mean(onWhite, request, x, y, 8) - Mean(onBlack, request, x, y, 8);
            const double alpha = std::clamp(1.0 - seen / 255.0, 0.0, 1.0);
            std::uint32_t pixel = Byte(alpha * 255.0);
            for (const unsigned shift : {16U, 8U, 0U})
                pixel = pixel << 8 | (alpha > 0.0 ? Byte(Mean(onBlack, request, x, y, shift) / alpha) : 0U);
            merged.push_back(pixel);
        }
    return merged;
}

// Empty when the model does not load, which is told.
Pixels DrawModel(const std::string& name, const Request& request) {
    LinkFolder(request.data, "data");
    const HiddenDevice device(request.width * fine, request.height * fine);
    LoadedModel loaded(name);
    const bool isLoaded = loaded.Load(true);
    G::Shader shader;
    const bool hasShader = shader.Load("data\\shaders\\simple", "");
    loaded.Print(loaded.TakeProblems(), true);
    if (!isLoaded) return {};
    if (!hasShader) throw std::runtime_error("shaders/simple.hlsl_v does not compile");
    const std::vector<PlacedChunk> chunks = PlacedChunks(loaded);
    const Pixels first = DrawOn(request.background, chunks, shader, loaded.model, request);
    const Pixels second = request.transparent ? DrawOn(0xFFFFFFFFU, chunks, shader, loaded.model, request) : first;
    return Merge(first, second, request);
}

}  // namespace

int Picture(const Arguments& arguments) {
    arguments.NeedFiles({"IN.mbm", "OUT.png"});
    const Request request = RequestOf(arguments);
    const Pixels pixels = DrawModel(arguments.files[0], request);
    if (pixels.empty()) return 1;
    ReplaceFile(UserPath(arguments.files[1]), [&](const fs::path& temporary) {
        return platform::WritePng(temporary.string(), pixels.data(), request.width, request.height);
    });
    return 0;
}
