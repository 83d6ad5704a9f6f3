#include "demo/server/Wire.h"
#include "demo/storms/Misbehaviour.h"

namespace demo {

namespace {

Misbehaviour FloodOf(std::string_view name, std::string_view text, std::string (*more)(GameStorm&)) {
    return {name, text, {.more = more}, {}};
}

std::string Appearance(GameStorm& storm, const std::string& position) {
    return "<" + storm.Looks() + position + wire::Frame(storm.Random(4), storm.Random(4));
}

std::string Walk(GameStorm& storm, const std::string& to, const std::string& from) {
    return "/" + Appearance(storm, to).substr(1) + from;
}

std::string Marker(const std::string& position, const std::string& label) {
    return "]s" + position + "  " + label + " " + label;
}

std::string Chat(GameStorm& storm, std::size_t length) {
    return "(> " + std::string(length, static_cast<char>('a' + storm.Random(26)));
}

std::string Anything(GameStorm& storm) {
    switch (storm.Random(8)) {
        case 0:
            return Chat(storm, 40);
        case 1:
            return Appearance(storm, storm.AnyPosition());
        case 2:
            return Walk(storm, storm.NearPosition(), storm.NearPosition());
        case 3:
            return ")" + storm.NearPosition();
        case 4:
            return "1" + storm.NearPosition() + wire::Number(storm.Random(400));
        case 5:
            return ">" + storm.NearPosition() + wire::Number(storm.Random(400));
        case 6:
            return Marker(storm.NearPosition(), "storm");
        default:
            return "]t" + storm.NearPosition();
    }
}

std::vector<Misbehaviour> Texts() {
    return {
        FloodOf("flood-chat", "chat lines without a break",
                [](GameStorm& storm) { return Flood([&] { return Chat(storm, 5 + 10 * (storm.turn++ % 10U)); }); }),
        FloodOf("flood-short", "chat lines of one letter without a break",
                [](GameStorm&) { return Flood([] { return "(x"; }); }),
        FloodOf("flood-long", "chat lines of 60 000 bytes without a break",
                [](GameStorm& storm) { return Flood([&] { return Chat(storm, 60000); }); }),
        FloodOf("flood-empty", "line feeds and nothing else", [](GameStorm&) { return Flood([] { return ""; }); }),
        FloodOf("flood-refusals", "tells again and again that the login is refused",
                [](GameStorm&) { return Flood([] { return "Nope."; }); }),
        FloodOf("endless-line", "one line without an end", [](GameStorm&) { return std::string(64U << 10, 'x'); }),
        {"endless-greeting",
         "a greeting without a line feed or an end",
         {.greet =
              [](GameStorm& storm) {
                  for (int i = 0; i < 1024; ++i)
                      storm.Peer().Send(std::string(64U << 10, 'E'));
              }},
         {}},
        {"flood-greeting",
         "a greeting whose END asks for the login some thousand times",
         {.greet = [](GameStorm& storm) { storm.Peer().Send(Flood([] { return "END"; })); }},
         {}},
    };
}

std::vector<Misbehaviour> Worlds() {
    return {
        FloodOf("flood-walkers", "characters that walk about near the player without a break",
                [](GameStorm& storm) {
                    return Flood([&] { return Walk(storm, storm.NearPosition(), storm.NearPosition()); });
                }),
        FloodOf("flood-crowd", "thousands of characters all over the map, moving without a break",
                [](GameStorm& storm) {
                    return Flood([&] {
                        return storm.turn++ < 20000 ? Appearance(storm, storm.AnyPosition())
                                                    : Walk(storm, storm.AnyPosition(), storm.AnyPosition());
                    });
                }),
        FloodOf("flood-frames", "characters in postures that there are not",
                [](GameStorm& storm) {
                    return Flood([&] {
                        return "<" + storm.Looks() + storm.NearPosition() + wire::Number(storm.Random(95 * 95));
                    });
                }),
        FloodOf("flood-floors", "floors near the player change without a break",
                [](GameStorm& storm) {
                    return Flood([&] { return "1" + storm.NearPosition() + wire::Number(storm.Random(400)); });
                }),
        FloodOf("flood-objects", "objects near the player change without a break",
                [](GameStorm& storm) {
                    return Flood([&] { return ">" + storm.NearPosition() + wire::Number(storm.Random(400)); });
                }),
        FloodOf("flood-views", "the view jumps about without a break",
                [](GameStorm& storm) { return Flood([&] { return "@" + storm.NearPosition(); }); }),
        FloodOf("flood-markers", "markers near the player without a break",
                [](GameStorm& storm) { return Flood([&] { return Marker(storm.NearPosition(), "storm"); }); }),
        FloodOf("flood-labels", "markers with names of 60 000 bytes without a break",
                [](GameStorm& storm) {
                    return Flood([&] { return Marker(storm.AnyPosition(), std::string(30000, 'n')); });
                }),
        FloodOf("flood-palettes", "palette orders without a break",
                [](GameStorm& storm) { return Flood([&] { return "]cc" + storm.Town().place.palette; }); }),
        FloodOf("flood-maps", "map orders without a break",
                [](GameStorm& storm) { return Flood([&] { return ";" + storm.Town().place.mapPath; }); }),
        FloodOf("flood-missing", "orders of maps and palettes that there are not, without a break",
                [](GameStorm& storm) {
                    return Flood([&] { return storm.turn++ % 2 == 0 ? ";nowhere.map" : "]ccnowhere.pcx"; });
                }),
        FloodOf("flood-everything", "lines of all kinds in any order without a break",
                [](GameStorm& storm) { return Flood([&] { return Anything(storm); }); }),
        {"crowd",
         "hundreds of characters and markers come, walk and go, twenty times a second",
         {.more =
              [](GameStorm& storm) {
                  storm.Peer().Pause(0.05);
                  std::string lines;
                  for (int i = 0; i < 300; ++i)
                      lines += Anything(storm) + "\n";
                  return lines;
              }},
         {}},
    };
}

}  // namespace

std::vector<Misbehaviour> FloodModes() {
    std::vector<Misbehaviour> list = Texts();
    for (const Misbehaviour& mode : Worlds())
        list.push_back(mode);
    return list;
}

}  // namespace demo
