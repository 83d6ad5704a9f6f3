// What players ask for.
#include <algorithm>

#include "demo/server/Game.h"
#include "demo/server/Wire.h"
#include "demo/world/Catalogue.h"

namespace demo {

namespace {

constexpr std::size_t textLimit = 500;

std::string Heard(std::string_view text) {
    return wire::Printable(text.substr(0, textLimit));
}

}  // namespace

void Game::Command(Player& player, std::string_view line) {
    if (line == "vascodagama" || line == "goback") return TravelAnswer(player, line == "vascodagama");
    if (line == "who") return Who(player);
    if (line == "help") return Help(player);
    if (line.starts_with("wh ")) return Whisper(player, line.substr(3));
    if (line.starts_with("desc ")) {
        player.figure.description = Heard(line.substr(5));
        return Tell(player, "(Your description is now: " + player.figure.description);
    }
    if (!IsInWorld(player)) return Tell(player, "(You are between two places. `goback takes you home.");
    if (line == "m 9") return Move(player, 0);
    if (line == "m 7") return Move(player, 1);
    if (line == "m 1") return Move(player, 2);
    if (line == "m 3") return Move(player, 3);
    if (line == ">") return Turn(player, -1);
    if (line == "<") return Turn(player, 1);
    if (line.starts_with("l ")) return Look(player, line.substr(2));
    if (line.starts_with("\"")) return Say(player, line.substr(1));
    if (line.starts_with(":")) return Emote(player, line.substr(1));
    if (line == "time") {
        if (!player.figure.scene->place.sundials.empty()) return ChangeTimeOfDay(*player.figure.scene);
        return Tell(player, "(Time stands still here.");
    }
    if (!line.empty()) Tell(player, "(Nobody here understands \"" + Heard(line) + "\". Try `help.");
}

void Game::TravelAnswer(Player& player, bool arrived) {
    if (!player.travelling) {
        if (arrived) return;
        if (!IsInWorld(player) || !player.figure.scene->place.IsDream())
            return Tell(player, "(You are at home already.");
        Depart(player, "(> " + player.figure.name + " wakes up.");
        return EnterTown(player, scenes.front()->place.start, true);
    }
    const Door& door = *player.travelling;
    Scene* to = FindScene(door.to);
    if (arrived && to) {
        player.travelling = nullptr;
        Arrive(player, *to, door.arrival, true);
        return TellNear(*to, player.figure.cell, "(> " + player.figure.name + " dreams itself here.", &player.figure);
    }
    if (arrived) return Tell(player, "(> There is nothing here, not even a floor. `goback takes you home.");
    player.travelling = nullptr;
    log.Write("\"" + player.figure.name + "\" goes back from the way to " + door.to);
    EnterTown(player, scenes.front()->place.start, false);
}

void Game::Move(Player& player, int direction) {
    if (!player.moves.Take()) return;
    Figure& figure = player.figure;
    Scene& scene = *figure.scene;
    const Cell before = figure.cell;
    Step(figure, direction);
    if (figure.cell == before) return;
    Tell(player, scene.ViewLine(figure.cell));
    if (const Door* door = scene.DoorAt(figure.cell)) return TakeDoor(player, *door);
    if (std::find(scene.place.sundials.begin(), scene.place.sundials.end(), figure.cell) != scene.place.sundials.end())
        ChangeTimeOfDay(scene);
}

// A quarter of -1 turns right as the default picture shows it, 1 left.
void Game::Turn(Player& player, int quarter) {
    Figure& figure = player.figure;
    figure.facing = (figure.facing + quarter + directionCount) % directionCount;
    figure.stride = 0;
    TellAll(*figure.scene, figure.scene->AppearLine(figure));
}

void Game::Look(const Player& player, std::string_view position) {
    const Scene& scene = *player.figure.scene;
    const auto cell = wire::ParsePosition(scene.now, position);
    Tell(player, "(" + (cell ? Describe(scene, *cell, player.figure) : std::string("You see nothing there.")));
}

std::string Game::Describe(const Scene& scene, Cell cell, const Figure& seer) const {
    if (const Figure* figure = scene.FigureAt(cell)) {
        if (figure == &seer) return "That is you. " + figure->description;
        return "You see " + figure->name + ". " + figure->description;
    }
    const CellContent& content = *scene.now.At(cell);
    std::string text;
    if (const Label* label = scene.LabelAt(cell)) text = label->label + ": " + label->subLabel + ". ";
    text += ObjectText(content.object).empty() ? FloorText(content.floor) : ObjectText(content.object);
    return text.empty() ? "Nothing much." : text;
}

void Game::Say(Player& player, std::string_view text) {
    const std::string heard = Heard(text);
    if (heard.empty()) return;
    const Figure& figure = player.figure;
    log.Write("\"" + figure.name + "\" speaks");
    Tell(player, "(You say, \"" + heard + "\"");
    TellNear(*figure.scene, figure.cell, "(" + figure.name + ": " + heard, &figure);
    HearSpeech(player, heard);
}

void Game::Emote(Player& player, std::string_view text) {
    const std::string seen = Heard(text);
    if (seen.empty()) return;
    TellNear(*player.figure.scene, player.figure.cell, "(* " + player.figure.name + " " + seen, nullptr);
}

void Game::Whisper(Player& player, std::string_view nameAndText) {
    // A name may hold spaces, so the names in the game decide where the text begins.
    for (const auto& [id, other] : players) {
        const std::string& name = other->figure.name;
        if (other->stage != Stage::Ready || nameAndText.size() <= name.size() || nameAndText[name.size()] != ' ')
            continue;
        if (!SameName(nameAndText.substr(0, name.size()), name)) continue;
        const std::string heard = Heard(nameAndText.substr(name.size() + 1));
        Tell(*other, "[[ " + player.figure.name + " whispers, \"" + heard + "\" to you. ]");
        return Tell(player, "[[ You whisper, \"" + heard + "\" to " + name + ". ]");
    }
    Tell(player, "[[ Nobody of that name is here to listen. ]");
}

void Game::Who(const Player& player) {
    std::string names;
    for (const auto& [id, other] : players)
        if (other->stage == Stage::Ready) names.append(names.empty() ? "" : ", ").append(other->figure.name);
    Tell(player, "((Players: " + names + ")");
}

void Game::Help(const Player& player) {
    for (const char* line : {
             "((Walk: arrow keys, or Page Up, Home, End, Page Down. Turn: Insert, Delete.)",
             "((Speak: just type. Do something: :waves. Whisper: /name text. Look: click on a cell.)",
             "((Others: `who, `desc text, `time at the sundial's town, `goback out of a dream.)",
         })
        Tell(player, line);
}

}  // namespace demo
