// A command for those who make models.
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"

namespace {

constexpr const char* usage =
    "usage: kelvane-model COMMAND ...\n"
    "  check FILE...              loads models as the client does and prints what it says, with line numbers\n"
    "  info FILE...               meshes, bones, textures and bounds\n"
    "  from-obj IN.obj OUT.mbm    a Wavefront OBJ with its materials as a model\n"
    "      --up y|z               the axis that points up in IN (y)\n"
    "      --scale FACTOR         units of OUT for one of IN (1)\n"
    "      --fit HEIGHT           instead: as high as this, standing in the middle of its cell; a wall is 2 high\n"
    "  to-obj IN.mbm OUT.obj      a model at rest as a Wavefront OBJ and its .mtl\n"
    "      --up y|z               the axis that points up in OUT (y)\n"
    "  picture IN.mbm OUT.png     draws a model with the client's shader, from where the client's camera rests\n"
    "      --size WIDTHxHEIGHT    in pixels (512x512)\n"
    "      --turn DEGREES         how far the camera goes round the model (0)\n"
    "      --background RRGGBB    a colour; without it the background is transparent\n"
    "      --data FOLDER          the client's data, with shaders/simple.hlsl_v in it\n"
    "Options go before or after the files; -- ends them. Exit code: 0 done and no problem, 1 a problem, 2 wrong usage.\n";

struct Command {
    const char* name;
    int (*run)(const Arguments&);
    std::vector<std::string> options;
};

int Run(const std::vector<std::string>& words) {
    static const Command commands[] = {
        {"check", Check, {}},
        {"info", Info, {}},
        {"from-obj", FromObj, {"--up", "--scale", "--fit"}},
        {"to-obj", ToObj, {"--up"}},
        {"picture", Picture, {"--size", "--turn", "--background", "--data"}},
    };
    for (const std::string& word : words) {
        if (word == "--") break;
        if (word != "--help" && word != "-h") continue;
        std::cout << usage;
        return 0;
    }
    if (words.empty()) throw UsageError{"a command is missing"};
    for (const Command& command : commands)
        if (words[0] == command.name) return command.run(Arguments({words.begin() + 1, words.end()}, command.options));
    throw UsageError{"unknown command " + words[0]};
}

}  // namespace

void Complain(const std::string& text) {
    std::cerr << "kelvane-model: " << text << "\n";
}

int main(int count, char** words) {
    // A reader of the output that has gone away is a failed write, not an end that leaves the scratch folder behind.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        const int code = Run({words + 1, words + count});
        std::cout.flush();
        if (std::cout) return code;
        Complain("the output cannot be written");
    } catch (const UsageError& error) {
        Complain(error.text + " (kelvane-model --help tells more)");
        return 2;
    } catch (const std::exception& failure) {
        Complain(failure.what());
    }
    return 1;
}
