// from-obj: a Wavefront OBJ with its materials as a model.
#include <iostream>
#include <stdexcept>

#include "Commands.h"
#include "ObjModel.h"
#include "ObjScene.h"
#include "ObjTextures.h"
#include "OutputFile.h"
#include "Scratch.h"
#include "diag/PathFiles.h"
#include "platform/Caps.h"

namespace {

ObjPlacing PlacingOf(const Arguments& arguments) {
    ObjPlacing placing;
    placing.zUp = IsZUp(arguments);
    placing.scale = arguments.Number("--scale", 1.0F);
    placing.fitHeight = arguments.Number("--fit", 0.0F);
    if (arguments.Has("--scale") && arguments.Has("--fit")) throw UsageError{"--scale and --fit exclude each other"};
    if (placing.scale <= 0.0F) throw UsageError{"--scale needs a number above 0"};
    if (arguments.Has("--fit") && placing.fitHeight <= 0.0F) throw UsageError{"--fit needs a number above 0"};
    return placing;
}

void PrintSizes(const std::string& name, const demo::ModelDrawing& model) {
    std::size_t chunks = 0;
    std::size_t vertices = 0;
    std::size_t triangles = 0;
    for (const demo::ModelMesh& mesh : model.meshes)
        for (const demo::ModelChunk& chunk : mesh.chunks) {
            ++chunks;
            vertices += chunk.vertices.size();
            triangles += chunk.indices.size() / 3;
        }
    std::cout << name << ": meshes " << model.meshes.size() << ", chunks " << chunks << ", vertices " << vertices
              << ", triangles " << triangles << "\n";
}

}  // namespace

int FromObj(const Arguments& arguments) {
    arguments.NeedFiles({"IN.obj", "OUT.mbm"});
    const std::string& in = arguments.files[0];
    const std::string& out = arguments.files[1];
    const ObjPlacing placing = PlacingOf(arguments);
    if (!EqualsIgnoringCase(ExtensionOf(out), "mbm")) throw UsageError{"OUT.mbm has to end in .mbm, not " + out};
    const std::filesystem::path outPath = UserPath(out);
    const std::string stem = outPath.stem().string();

    ObjScene scene = ReadObj(UserPath(in), in);
    if (SaneName(stem) != stem)
        scene.notes.push_back("names in a model are single words: the mesh is called " + SaneName(stem));
    if (outPath.filename().string().find_first_of(" \t") != std::string::npos)
        scene.notes.push_back("items.txt cannot name " + outPath.filename().string() + ", which has a space in it");
    const auto textures = PlaceTextures(scene, outPath, scene.notes);
    const demo::ModelDrawing model = MakeModel(scene, textures, placing, SaneName(stem));
    const std::string text = demo::WriteModel(model);
    if (text.size() > caps::modelTextBytes)
        throw std::runtime_error("the model would have " + std::to_string(text.size() >> 20) +
                                 " MiB, and the client reads no more than " +
                                 std::to_string(caps::modelTextBytes >> 20));
    ReplaceFile(outPath, text);
    for (const std::string& note : scene.notes)
        Complain("note: " + note);
    PrintSizes(out, model);
    return 0;
}
