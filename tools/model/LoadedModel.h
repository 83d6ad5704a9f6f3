#pragma once
// A model file of the user's, loaded as the client does it, and what the client says of it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graphics/model/GBMesh.h"
#include "math/VectorMatrix.h"

// The graphics foundation without a card, for what needs no picture. One at a time.
class HeadlessFoundation {
  public:
    HeadlessFoundation();
    ~HeadlessFoundation();
    HeadlessFoundation(const HeadlessFoundation&) = delete;
    HeadlessFoundation& operator=(const HeadlessFoundation&) = delete;
};

struct Problem {
    std::size_t line = 0;  // from 1; 0: of no one line
    std::string text;      // several lines where the client writes several
};

// Needs the foundation from its beginning to its end. What was loaded before is forgotten, caches included.
class LoadedModel {
  public:
    explicit LoadedModel(const std::string& fileName);  // as the user gave it
    ~LoadedModel();
    LoadedModel(const LoadedModel&) = delete;
    LoadedModel& operator=(const LoadedModel&) = delete;

    // With `readable` buffers, or as the item table loads it.
    bool Load(bool readable);
    // What the error log got since the last call, in the user's own file names.
    std::vector<Problem> TakeProblems();
    // A texture's file as a path of the user's; empty without one.
    [[nodiscard]] std::string UsersNameOf(const DXG::Texture& texture) const;
    // Prints problems to the standard output or error stream, at most a hundred.
    void Print(const std::vector<Problem>& problems, bool asErrors) const;

    G::Mesh model;
    const std::string given;

  private:
    [[nodiscard]] std::size_t LineOf(std::size_t offset, const std::string& message) const;
    [[nodiscard]] std::string InUsersNames(std::string text) const;
    void AddPlain(const std::string& logText, std::vector<Problem>& problems) const;

    std::string gameFolder;  // the link to the file's folder
    std::string text;        // of the file
};

// One chunk at a bone's place in the world, at rest.
struct PlacedVertex {
    Vec3 position;
    Vec3 normal;
    float u = 0.0F;
    float v = 0.0F;
    std::uint32_t colour = 0xFFFFFFFFU;
};
struct PlacedChunk {
    std::string bone;
    std::string mesh;
    std::string texture;  // as a path of the user's; empty without one
    bool coloured = false;
    std::vector<PlacedVertex> vertices;
    std::vector<std::uint16_t> indices;  // whole triangles, all within the vertices
};
// Of a model that was loaded with readable buffers.
std::vector<PlacedChunk> PlacedChunks(const LoadedModel& model);

struct Bounds {
    Vec3 low;
    Vec3 high;
    bool empty = true;
};
Bounds BoundsOf(const std::vector<PlacedChunk>& chunks);
