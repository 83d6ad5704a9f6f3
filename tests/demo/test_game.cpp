// The demo game line by line, without sockets.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "demo/server/Game.h"
#include "demo/server/Road.h"
#include "demo/server/Wire.h"
#include "demo/world/Catalogue.h"

namespace demo {
namespace {

// Keeps what each client was sent, as lines.
class Record : public Outbox {
  public:
    void Send(ClientId client, std::string bytes) override { sent[client] += bytes; }
    void Close(ClientId client) override { closed.push_back(client); }

    // Everything sent to the client since the last call.
    std::string Take(ClientId client) { return std::exchange(sent[client], {}); }
    [[nodiscard]] bool WasClosed(ClientId client) const {
        return std::count(closed.begin(), closed.end(), client) != 0;
    }

  private:
    std::map<ClientId, std::string> sent;
    std::vector<ClientId> closed;
};

// A lawn with a wall, a doorway, a pond, a rock and a door into a dream around its middle, and that dream.
std::vector<Place> SmallWorld() {
    const auto make = [](const char* name, const char* path) {
        Place place{name, path, "p.pcx", "(> Hello.", WorldMap(12, 24), {}, {}, {}, {}, {}, "", {}};
        for (int fx = 0; fx < 12; ++fx)
            for (int fy = 0; fy < 24; ++fy)
                place.map.At(place.map.ToGrid({fx, fy}))->floor = floors::Grass;
        place.start = place.map.Centre();
        return place;
    };
    std::vector<Place> places = {make("lawn", "maps\\lawn.map"), make("dream", "")};
    WorldMap& map = places[0].map;
    const auto [x, y] = places[0].start;
    map.At({x, y})->lowYWall = walls::Stone;
    map.At({x + 1, y})->lowXWall = walls::Doorway;
    map.At({x - 1, y})->floor = floors::Water;
    map.At({x, y + 1})->object = objects::Rock;
    places[0].doors = {{{x + 2, y}, "dream", places[1].start}};
    places[0].labels = {{{x + 2, y}, "Way in", "to the dream"}};
    places[1].doors = {{{places[1].start.gx + 1, places[1].start.gy}, "lawn", {x + 3, y}}};
    return places;
}

class GameTest : public testing::Test {
  protected:
    GameTest() { log.Silence(); }

    // Logs in; what the client was sent on the way is dropped.
    void LogIn(ClientId client, const std::string& nameAndPassword, const std::string& colours = "#$%&'()*+,") {
        game.Joined(client);
        for (const std::string& line :
             {"connect " + nameAndPassword, std::string("desc Somebody."), "color " + colours + "!! "})
            game.Line(client, line);
        record.Take(client);
    }
    Cell Where(const char* name) const { return game.FindCharacter(name)->cell; }

    Record record;
    ServerLog log;
    Game game{SmallWorld(), {{"Ada", "pw"}, {"Bo Peep", "two words"}}, GameOptions{.still = true}, record, log};
    const WorldMap& map = game.FindScene("lawn")->now;
    const Cell start = game.FindScene("lawn")->place.start;
};

TEST_F(GameTest, GreetsAndJudgesLogins) {
    const struct {
        const char* login;
        bool accepted;
    } rows[] = {{"Ada pw", true},   {"Ada PW", false},    {"Ada", false},
                {"Ada ", false},    {"Ada pw ", false},   {"Bo Peep two words", true},
                {"Bo Peep", false}, {"Nobody pw", false}, {" ", false}};
    ClientId client = 1;
    for (const auto& row : rows) {
        game.Joined(client);
        EXPECT_TRUE(record.Take(client).ends_with("\nEND\n"));
        game.Line(client, "\"words before the login are nothing");
        game.Line(client, std::string("connect ") + row.login);
        EXPECT_EQ(record.Take(client), row.accepted ? "&&&&&&&&&&&&&\n" : "Invalid Name or password.\n") << row.login;
        EXPECT_EQ(record.WasClosed(client), !row.accepted) << row.login;
        ++client;
    }
}

TEST_F(GameTest, ShowsTheWorldAfterTheColours) {
    LogIn(1, "Ada pw");
    game.Joined(2);
    game.Line(2, "connect Bo Peep two words");
    game.Line(2, "desc Has lost her sheep.");
    record.Take(2);
    record.Take(1);
    game.Line(2, "color 0123456789!! ");
    const Cell beside = Where("Bo Peep");
    EXPECT_NE(beside, start);
    const std::string position = wire::Position(map, beside);
    const std::string bo = "<0123456789" + position + wire::Frame(2, 0) + "\n";
    EXPECT_EQ(record.Take(2), "]ccp.pcx\n;maps\\lawn.map\n@" + position + "\n<#$%&'()*+," + wire::Position(map, start) +
                                  wire::Frame(2, 0) + "\n" + bo + "]s" + wire::Position(map, {start.gx + 2, start.gy}) +
                                  "  Way|in to|the|dream\n(> Hello.\n");
    EXPECT_EQ(record.Take(1), bo + "(> Bo Peep has arrived.\n");
}

TEST_F(GameTest, StepsStopAtWallsWaterThingsAndPeople) {
    LogIn(1, "Ada pw");
    // North a wall, west water, south a rock; the doorway east is open.
    for (const char* line : {"m 9", "m 7", "m 1"}) {
        game.Line(1, line);
        EXPECT_EQ(Where("Ada"), start) << line;
    }
    LogIn(2, "Bo Peep two words");
    record.Take(1);
    game.Line(1, "m 3");
    const Cell east{start.gx + 1, start.gy};
    EXPECT_EQ(Where("Ada"), east);
    const std::string moved =
        "/#$%&'()*+," + wire::Position(map, east) + wire::Frame(3, 1) + wire::Position(map, start) + "\n";
    EXPECT_EQ(record.Take(1), moved + "@" + wire::Position(map, east) + "\n");
    EXPECT_NE(record.Take(2).find(moved), std::string::npos);
    // Nobody steps onto somebody else, and nobody leaves the map.
    game.Line(1, "m 7");
    for (int i = 0; i < 60; ++i) {
        game.Tick(1.0);
        game.Line(2, "m 9");
    }
    EXPECT_TRUE(map.Contains(Where("Bo Peep")));
    EXPECT_NE(Where("Bo Peep"), Where("Ada"));
}

TEST_F(GameTest, AnswersWhatIsTypedAndClicked) {
    LogIn(1, "Ada pw");
    LogIn(2, "Bo Peep two words");
    record.Take(1);
    const std::string rock = wire::Position(map, {start.gx, start.gy + 1});
    const struct {
        std::string line;
        std::string own;
        std::string others;
    } rows[] = {
        {"\"hi\x01\xff there", "(You say, \"hi there\"\n", "(Ada: hi there\n"},
        {":waves", "(* Ada waves\n", "(* Ada waves\n"},
        {"wh bo peep psst", "[[ You whisper, \"psst\" to Bo Peep. ]\n", "[[ Ada whispers, \"psst\" to you. ]\n"},
        {"wh nobody psst", "[[ Nobody of that name is here to listen. ]\n", ""},
        {"wh ", "[[ Nobody of that name is here to listen. ]\n", ""},
        {"l " + rock, "(A mossy rock.\n", ""},
        {"l " + wire::Position(map, start), "(That is you. Somebody.\n", ""},
        {"l " + wire::Position(map, {start.gx + 2, start.gy}), "(Way in: to the dream. Soft grass.\n", ""},
        {"l ~~~~", "(You see nothing there.\n", ""},
        {"l ", "(You see nothing there.\n", ""},
        {"dance", "(Nobody here understands \"dance\". Try `help.\n", ""},
        {"\"", "", ""},
        {"", "", ""},
        {"who", "((Players: Ada, Bo Peep)\n", ""},
    };
    for (const auto& row : rows) {
        game.Line(1, row.line);
        EXPECT_EQ(record.Take(1), row.own) << row.line;
        EXPECT_EQ(record.Take(2), row.others) << row.line;
    }
}

TEST(World, EveryDoorCanBeReachedOnFoot) {
    for (const Place& place : MakePlaces()) {
        const Scene scene(place);
        EXPECT_TRUE(scene.IsFree(place.start)) << place.name;
        EXPECT_FALSE(place.inhabitants.empty()) << place.name;
        for (const Door& door : place.doors)
            EXPECT_NE(RoadTo(place, door.to), "") << place.name << " to " << door.to;
        for (const Cell sundial : place.sundials)
            EXPECT_TRUE(scene.IsFree(sundial)) << place.name;
    }
}

// Two hours pass for a player who watches: nobody walks through anything, and everything that is to happen by itself
// does.
TEST(World, LivesByItself) {
    Record record;
    ServerLog log;
    log.Silence();
    Game game(MakePlaces(), {{"Ada", "pw"}}, GameOptions{}, record, log);
    game.Joined(1);
    for (const char* line : {"connect Ada pw", "desc x", "color 0123456789!! "})
        game.Line(1, line);
    record.Take(1);
    std::map<char, int> seen;
    for (int second = 0; second < 7200; ++second) {
        game.Tick(1.0);
        const std::string sent = record.Take(1);
        for (std::size_t at = 0; at < sent.size(); at = sent.find('\n', at) + 1)
            ++seen[sent[at]];
        for (const auto& name : {townName, tideGardenName})
            for (const Figure* figure : game.FindScene(name)->figures) {
                const CellContent* ground = game.FindScene(name)->now.At(figure->cell);
                ASSERT_TRUE(ground && IsWalkable(ground->floor) && !IsSolid(ground->object)) << figure->name;
            }
    }
    for (const char kind : {'/', '(', '1', '>', ']', ';'})
        EXPECT_GT(seen[kind], 3) << kind;
}

TEST_F(GameTest, TheNextLoginOfAPlayerReplacesTheFirst) {
    LogIn(1, "Ada pw");
    LogIn(2, "Ada pw");
    EXPECT_TRUE(record.WasClosed(1));
    game.Line(1, "\"still here");
    EXPECT_EQ(record.Take(2), "");
    game.Left(1);
    EXPECT_NE(game.FindCharacter("Ada"), nullptr);
    game.Left(2);
    EXPECT_EQ(game.FindCharacter("Ada"), nullptr);
}

TEST_F(GameTest, AsksThoseWhoHurryToSlowDown) {
    LogIn(1, "Ada pw");
    for (int i = 0; i < 200; ++i)
        game.Line(1, "\"a");
    const std::string sent = record.Take(1);
    EXPECT_LT(std::count(sent.begin(), sent.end(), '\n'), 40);
    EXPECT_NE(sent.find("(Not so fast, please.\n"), std::string::npos);
    game.Tick(3.0);
    game.Line(1, "\"b");
    EXPECT_EQ(record.Take(1), "(You say, \"b\"\n");
}

TEST_F(GameTest, ABusyDayHasACrowdAndDreamAfterDream) {
    Game busy(SmallWorld(), {{"Ada", "pw"}}, GameOptions{.crowd = 40, .tourSeconds = 5.0}, record, log);
    EXPECT_EQ(busy.FindScene("lawn")->figures.size(), 40U);
    busy.Joined(1);
    for (const char* line : {"connect Ada pw", "desc x", "color 0123456789!! "})
        busy.Line(1, line);
    const auto pass = [&](int seconds) {
        for (int i = 0; i < 4 * seconds; ++i)
            busy.Tick(0.25);
    };
    pass(4);
    const std::string sent = record.Take(1);
    EXPECT_EQ(sent.find("]q "), std::string::npos);
    EXPECT_GT(std::count(sent.begin(), sent.end(), '/'), 100);
    pass(2);
    EXPECT_NE(record.Take(1).find("]q dream 0 0\n"), std::string::npos);
    // Nobody is sent on while still on the way.
    pass(10);
    busy.Line(1, "vascodagama");
    EXPECT_EQ(busy.FindCharacter("Ada")->scene->place.name, "dream");
    record.Take(1);
    pass(6);
    EXPECT_EQ(busy.FindCharacter("Ada")->scene->place.name, "lawn");
    EXPECT_NE(record.Take(1).find("(Stroller "), std::string::npos);
}

}  // namespace
}  // namespace demo
