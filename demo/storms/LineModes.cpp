#include "demo/server/Wire.h"
#include "demo/storms/Misbehaviour.h"

namespace demo {

namespace {

constexpr double breath = 0.02;

// A handful of lines of one kind every fiftieth of a second: a stream of bad lines rather than a flood.
template <typename Line>
std::string Stream(GameStorm& storm, Line line) {
    storm.Peer().Pause(breath);
    std::string bytes;
    for (int i = 0; i < 20; ++i)
        (bytes += line()) += '\n';
    return bytes;
}

// Lines of every kind with what stands for the position and for the number.
std::string LineOfKind(GameStorm& storm, int kind, const std::string& position, const std::string& number) {
    const std::string looks = storm.Looks();
    const std::string kinds[] = {")" + position,
                                 "/" + looks + position + number + position,
                                 "1" + position + number,
                                 "<" + looks + position + number,
                                 ">" + position + number,
                                 "@" + position,
                                 "]s" + position + "  label second",
                                 "]t" + position};
    return kinds[static_cast<std::size_t>(kind) % std::size(kinds)];
}

std::string NoLineFeeds(std::string bytes) {
    for (char& byte : bytes)
        if (byte == '\n') byte = ' ';
    return bytes;
}

std::string Outside(GameStorm& storm) {
    return LineOfKind(storm, storm.turn++, storm.AnyPosition(), wire::Number(storm.Random(95)));
}

std::string OddDigits(GameStorm& storm) {
    return LineOfKind(storm, storm.turn++, NoLineFeeds(storm.RandomBytes(4)), NoLineFeeds(storm.RandomBytes(2)));
}

std::string OddNumbers(GameStorm& storm) {
    static constexpr int numbers[] = {0, 1, 255, 256, 499, 500, 501, 1023, 1024, 4095, 9023, 9024};
    const int number = numbers[static_cast<std::size_t>(storm.Random(static_cast<int>(std::size(numbers))))];
    return LineOfKind(storm, storm.turn++, storm.NearPosition(), wire::Number(number));
}

// Every line cut short at every length in turn.
std::string Half(GameStorm& storm) {
    const std::string whole = LineOfKind(storm, storm.turn / 24, storm.NearPosition(), wire::Number(5));
    return whole.substr(0, static_cast<std::size_t>(storm.turn++ % 24));
}

std::string Unknown(GameStorm& storm) {
    static constexpr const char* lines[] = {"",     "]",  "]x",   "]q",       "]cc",           "]s",    "]zzzzzzzzzz",
                                            "~~~~", "0",  "END",  "44 1 1 1", "&&&&&&&&&&&&&", "HELLO", "(",
                                            "[",    "\r", "]q \r"};
    const auto pick = static_cast<std::size_t>(storm.turn++) % (std::size(lines) + 1);
    if (pick < std::size(lines)) return lines[pick];
    return static_cast<char>(storm.Random(256)) + NoLineFeeds(storm.RandomBytes(30));
}

// Names near the longest line that a client has to take.
std::string LongName(GameStorm& storm) {
    const std::string name(static_cast<std::size_t>(65000 + storm.Random(540)), 'n');
    switch (storm.turn++ % 5) {
        case 0:
            return "]s" + storm.NearPosition() + "  " + name;
        case 1:
            return "]cc" + name;
        case 2:
            return ";" + name;
        case 3:
            return ";patches\\default\\..\\" + name.substr(0, 4096) + "\\..\\..\\secret.map";
        default:
            return "(> " + name;
    }
}

void OutOfOrderLogin(GameStorm& storm) {
    storm.Peer().Send("&&&&&&&&&&&&&\n@aaaa\n]q storm0 0 0\n(> Welcome\nEND\n");
    storm.Peer().Pause(0.3);
    storm.Peer().Send("<" + storm.Looks() + storm.NearPosition() + "  \nEND\n&&&&&&&&&&&&&\n");
}

void OutOfOrderTown(GameStorm& storm) {
    const std::string here = storm.NearPosition();
    storm.Say("]s" + here + "  too early");
    storm.Say(")" + here);
    storm.Say("/" + storm.Looks() + here + "! " + here);
    storm.Say("&&&&&&&&&&&&&");
    storm.Say("Invalid Name or password.");
    storm.Say("1" + here + "!!");
    storm.Enter();
    storm.Say("END");
    storm.Say("]t" + here);
    storm.Say(";" + storm.Town().place.mapPath);
}

}  // namespace

std::vector<Misbehaviour> LineModes() {
    return {
        {"order-login", "answers the login before it is asked", {.greet = OutOfOrderLogin}, {}},
        {"order-town",
         "changes, removals and refusals before the map they belong to, and a second acknowledgement",
         {.enter = OutOfOrderTown},
         {}},
        {"outside",
         "positions far outside the map",
         {.more = [](GameStorm& storm) { return Stream(storm, [&] { return Outside(storm); }); }},
         {}},
        {"digits",
         "positions and numbers in bytes that are no digits",
         {.more = [](GameStorm& storm) { return Stream(storm, [&] { return OddDigits(storm); }); }},
         {}},
        {"numbers",
         "floors, objects and postures that there are not",
         {.more = [](GameStorm& storm) { return Stream(storm, [&] { return OddNumbers(storm); }); }},
         {}},
        {"half",
         "lines cut short at every length",
         {.more = [](GameStorm& storm) { return Stream(storm, [&] { return Half(storm); }); }},
         {}},
        {"unknown",
         "lines of no known kind",
         {.more = [](GameStorm& storm) { return Stream(storm, [&] { return Unknown(storm); }); }},
         {}},
        {"names",
         "names and texts of 64 KiB, some with paths in them",
         {.more =
              [](GameStorm& storm) {
                  storm.Peer().Pause(0.1);
                  return LongName(storm) + "\n";
              }},
         {}},
        {"rubbish",
         "any bytes, zeros among them, without a break",
         {.more = [](GameStorm& storm) { return storm.RandomBytes(64U << 10); }},
         {.welcome = [](FileStorm& storm) { storm.Peer().Send(std::string(5000, '\xFF') + "\n"); }}},
    };
}

}  // namespace demo
