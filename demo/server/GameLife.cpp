// What happens by itself.
#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "demo/server/Game.h"
#include "demo/world/Catalogue.h"

namespace demo {

namespace {

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

bool IsWithin(Cell home, Cell cell, int range) {
    return std::abs(cell.gx - home.gx) <= range && std::abs(cell.gy - home.gy) <= range;
}

}  // namespace

int Game::Random(int below) {
    return below < 2 ? 0 : static_cast<int>(random() % static_cast<std::mt19937::result_type>(below));
}

void Game::Tick(double seconds) {
    for (const auto& [id, player] : players) {
        player->moves.Refill(seconds);
        player->words.Refill(seconds);
        if (player->words.left > player->words.most / 2) player->toldToSlowDown = false;
        if (options.tourSeconds > 0.0) Tour(*player, seconds);
    }
    if (options.still) return;
    for (const auto& wanderer : wanderers)
        Wander(*wanderer, seconds);
    untilGroundChange -= seconds;
    if (untilGroundChange <= 0.0) {
        untilGroundChange = 4.0 + Random(5);
        for (const auto& scene : scenes)
            ChangeGround(*scene);
    }
    untilEvening -= seconds;
    if (untilEvening <= 0.0) {
        untilEvening = options.daySeconds;
        if (options.daySeconds > 0.0) ChangeTimeOfDay(*scenes.front());
    }
}

void Game::Step(Figure& figure, int direction) {
    Scene& scene = *figure.scene;
    const Cell from = figure.cell;
    figure.facing = direction;
    if (!scene.CanStep(from, direction)) {
        figure.stride = 0;
        return TellAll(scene, scene.AppearLine(figure));
    }
    // The two walking poses in turn.
    figure.stride = figure.stride == 1 ? 3 : 1;
    figure.cell = Neighbour(from, direction);
    TellAll(scene, scene.MoveLine(figure, from));
}

void Game::Wander(Wanderer& wanderer, double seconds) {
    Figure& figure = wanderer.figure;
    const Inhabitant& nature = wanderer.nature;
    wanderer.untilStep -= seconds;
    if (wanderer.untilStep <= 0.0) {
        // Mostly straight on, in runs with rests between them.
        wanderer.untilStep = Random(6) == 0 ? 2.0 + Random(4) : 0.45;
        const int direction = Random(4) == 0 ? Random(directionCount) : figure.facing;
        const Cell to = Neighbour(figure.cell, direction);
        if (IsWithin(nature.home, to, nature.range) && !figure.scene->DoorAt(to))
            Step(figure, direction);
        else
            figure.facing = Random(directionCount);
    }
    wanderer.untilSaying -= seconds;
    if (wanderer.untilSaying > 0.0 || nature.sayings.empty()) return;
    wanderer.untilSaying = 14.0 + Random(20);
    if (!AnyoneNear(*figure.scene, figure.cell)) return;
    const std::string& saying = nature.sayings[wanderer.nextSaying++ % nature.sayings.size()];
    // A saying that begins with a colon is something done.
    const bool done = saying.starts_with(':');
    TellNear(*figure.scene, figure.cell,
             done ? "(* " + figure.name + " " + saying.substr(1) : "(" + figure.name + ": " + saying, nullptr);
}

void Game::HearSpeech(const Player& speaker, std::string_view text) {
    const std::string words = Lower(text);
    const Scene& scene = *speaker.figure.scene;
    for (const auto& wanderer : wanderers) {
        Figure& figure = wanderer->figure;
        const std::string firstName = Lower(figure.name.substr(0, figure.name.find(' ')));
        if (figure.scene != &scene || !IsWithin(figure.cell, speaker.figure.cell, 6)) continue;
        if (words.find(firstName) == std::string::npos && words.find("hello") == std::string::npos) continue;
        TellNear(scene, figure.cell, "(" + figure.name + ": Good day to you, " + speaker.figure.name + "!", nullptr);
        wanderer->untilStep = 3.0;
        return;
    }
}

void Game::ChangeGround(Scene& scene) {
    if (scene.place.livingGround.empty()) return;
    const Cell cell =
        scene.place.livingGround[static_cast<std::size_t>(Random(static_cast<int>(scene.place.livingGround.size())))];
    CellContent* content = scene.now.At(cell);
    if (!content || scene.FigureAt(cell)) return;
    if (Random(3) == 0) {
        content->object = content->object == objects::Mushroom ? objects::Number{} : objects::Mushroom;
        return TellAll(scene, scene.ObjectLine(cell));
    }
    const CellContent& original = *scene.place.map.At(cell);
    content->floor =
        content->floor == original.floor ? static_cast<std::uint16_t>(floors::GrassFlowers) : original.floor;
    TellAll(scene, scene.FloorLine(cell));
}

}  // namespace demo
