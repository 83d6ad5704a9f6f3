#include "LoadedModel.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "Scratch.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/model/MeshTokenizer.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"
#include "platform/scripted/ScriptedDevice.h"

namespace fs = std::filesystem;

namespace {

platform::ScriptedWindow headlessWindow;
DXG::Setup headlessSetup;

// What the loader said of the text: where it was, and the message.
struct Told {
    std::size_t offset;
    std::string message;
};
std::vector<Told> told;

bool IsOfCallStack(const std::string& line) {
    return line.starts_with("   ") || line.starts_with("  (") || line.starts_with("  -call ") ||
           line.starts_with("  -Call ") || line.starts_with("  -attempt ");
}

std::string TakeErrorLog() {
    std::ifstream file("_error.txt", std::ios::binary);
    std::stringstream content;
    content << file.rdbuf();
    std::ofstream("_error.txt", std::ios::trunc).flush();
    return content.str();
}

// The offset of the first "KEYWORD { NAME" at `from` or behind it.
std::size_t FindName(const std::string& text, const std::string& keyword, const std::string& name,
                     std::size_t from = 0) {
    while ((from = text.find(keyword, from)) != std::string::npos) {
        std::istringstream words(text.substr(from, keyword.size() + name.size() + 64));
        std::string first, brace, found;
        words >> first >> brace >> found;
        if (first == keyword && brace == "{" && found == name) return from;
        from += keyword.size();
    }
    return std::string::npos;
}

std::string Between(const std::string& text, const std::string& before, const std::string& after) {
    const std::size_t start = text.find(before);
    if (start == std::string::npos) return {};
    const std::size_t end = text.find(after, start + before.size());
    return end == std::string::npos ? std::string() : text.substr(start + before.size(), end - start - before.size());
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

}  // namespace

HeadlessFoundation::HeadlessFoundation() {
    platform::ScriptedGraphics::Start();
    headlessSetup.width = 800;
    headlessSetup.height = 600;
    headlessSetup.colour32 = true;
    headlessSetup.vertexProcessing = 2;
    unsigned processing = 0;
    std::string warning;
    bool noGraphics = false;
    DXG::CheckHardware(processing, warning, noGraphics);
    DXG::Init(&headlessWindow, &headlessSetup);
}

HeadlessFoundation::~HeadlessFoundation() {
    DXG::Shutdown();
    G::DestroyModelBones();
}

LoadedModel::LoadedModel(const std::string& fileName) : given(fileName) {
    static int number = 0;
    const fs::path path = UserPath(fileName);
    gameFolder = LinkFolder(path.parent_path(), "m" + std::to_string(++number));
    (void)platform::ReadFileText(gameFolder + path.filename().string(), text, caps::modelTextBytes);
    TakeErrorLog();
    told.clear();
    G::SetModelMessageSink([](std::size_t offset, const std::string& message) { told.push_back({offset, message}); });
}

LoadedModel::~LoadedModel() {
    G::SetModelMessageSink(nullptr);
    model.Release();
    G::EmptyModelRegistry();
    std::error_code ignored;
    fs::remove_all("gen", ignored);
    platform::ForgetListings();
}

bool LoadedModel::Load(bool readable) {
    return model.Load(gameFolder + UserPath(given).filename().string(), true, readable, true);
}

std::size_t LoadedModel::LineOf(std::size_t offset, const std::string& message) const {
    // What is wrong between constructs is found when the whole text has been read.
    if (message.starts_with("Error: A Mesh has no name")) return 0;
    if (message.starts_with("Error arranging bones"))
        offset = FindName(text, "Name", Between(message, "-other top bone found: ", "\n"), text.find("Bone"));
    else if (const std::string child = Between(message, "asked for child \"", "\""); !child.empty()) {
        offset = FindName(text, "Child", child);
        // The first bone that named it is its parent.
        if (message.find("already has a parent") != std::string::npos)
            offset = FindName(text, "Child", child, offset + 1);
    } else if (message.starts_with("Error attaching meshes"))
        offset = FindName(text, "Mesh", Between(message, "asked for Mesh(", ")"));
    if (offset > text.size()) return 0;
    return 1 +
           static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
}

std::string LoadedModel::InUsersNames(std::string message) const {
    ReplaceAll(message, gameFolder, given.substr(0, given.rfind('/') + 1));
    while (message.ends_with('\n'))
        message.pop_back();
    return message;
}

std::string LoadedModel::UsersNameOf(const DXG::Texture& texture) const {
    if (!texture.IsLoaded()) return {};
    std::string name = InUsersNames(texture.FileName());
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

void LoadedModel::AddPlain(const std::string& logText, std::vector<Problem>& problems) const {
    std::istringstream lines(logText);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || IsOfCallStack(line)) continue;
        const bool goesOn = line.starts_with("  ") && !problems.empty();
        if (goesOn)
            problems.back().text += "\n" + InUsersNames(line);
        else
            problems.push_back({0, InUsersNames(line)});
    }
}

std::vector<Problem> LoadedModel::TakeProblems() {
    const std::string log = TakeErrorLog();
    std::vector<Problem> problems;
    std::size_t at = 0;
    for (const Told& one : told) {
        const std::size_t found = log.find(one.message, at);
        if (found == std::string::npos) break;  // the log has a cap
        AddPlain(log.substr(at, found - at), problems);
        problems.push_back({LineOf(one.offset, one.message), InUsersNames(one.message)});
        at = found + one.message.size();
    }
    AddPlain(log.substr(at), problems);
    told.clear();
    return problems;
}

void LoadedModel::Print(const std::vector<Problem>& problems, bool asErrors) const {
    constexpr std::size_t mostShown = 100;
    std::ostream& out = asErrors ? std::cerr : std::cout;
    for (std::size_t i = 0; i < std::min(problems.size(), mostShown); ++i) {
        out << given << ":";
        if (problems[i].line > 0) out << problems[i].line << ":";
        out << " " << problems[i].text << "\n";
    }
    if (problems.size() > mostShown) out << given << ": and " << problems.size() - mostShown << " more problems\n";
}
