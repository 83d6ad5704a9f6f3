#include "demo/storms/Misbehaviour.h"

namespace demo {

namespace {

constexpr double stallSeconds = 3.0;

template <bool reset>
void EndGame(GameStorm& storm) {
    storm.Peer().End(reset);
}

template <bool reset>
void EndFile(FileStorm& storm) {
    storm.Peer().End(reset);
}

template <bool reset>
void EndInBlock(FileStorm& storm) {
    const std::string block = storm.Block(storm.next, FileStorm::politeBlock);
    storm.Peer().Send(storm.next < 2 ? block : block.substr(0, block.size() / 2));
    if (storm.next == 2) storm.Peer().End(reset);
}

// A game that goes on and orders a dream again and again, with these manners of the file server.
Misbehaviour WithFiles(std::string_view name, std::string_view text, FileManners files) {
    return {name, text, {.entered = OrderFreshDream, .travelled = OrderFreshDreamLater}, files};
}

std::vector<Misbehaviour> Paces() {
    return {
        {"bytes",
         "after the greeting every byte of both servers is a packet of its own",
         {.accept =
              [](GameStorm& storm) {
                  storm.Peer().DripBytes();
                  storm.Accept();
              },
          .entered = OrderFreshDream,
          .travelled = OrderFreshDreamLater},
         {.welcome =
              [](FileStorm& storm) {
                  storm.Peer().DripBytes();
                  storm.Welcome();
              }}},
        {"bytes-greeting",
         "every byte of the greeting is a packet of its own",
         {.greet =
              [](GameStorm& storm) {
                  storm.Peer().DripBytes();
                  storm.Greet();
              }},
         {}},
        {"pauses",
         "stops for 3 seconds in the middle of every line and of every block",
         {.entered = OrderFreshDream,
          .travelled = OrderFreshDreamLater,
          .more =
              [](GameStorm& storm) {
                  storm.Peer().Send("(> The first half and ");
                  storm.Peer().Pause(stallSeconds);
                  return std::string("the second.\n");
              }},
         {.block =
              [](FileStorm& storm) {
                  const std::string block = storm.Block(storm.next, FileStorm::politeBlock);
                  storm.Peer().Send(block.substr(0, block.size() / 2));
                  storm.Peer().Pause(stallSeconds);
                  storm.Peer().Send(block.substr(block.size() / 2));
              }}},
        {"deaf",
         "talks on, but takes nothing of what the client sends",
         {.entered = [](GameStorm& storm) { storm.Peer().StopReading(); },
          .more =
              [](GameStorm& storm) {
                  storm.Peer().Pause(1.0);
                  return std::string("(> What did you say?\n");
              }},
         {}},
        {"deaf-greeting",
         "asks for the login some hundred thousand times and takes none of it",
         {.greet =
              [](GameStorm& storm) {
                  storm.Peer().StopReading();
                  for (int i = 0; i < 16; ++i)
                      storm.Peer().Send(Flood([] { return "END"; }));
              }},
         {}},
        {"urgent",
         "sends urgent bytes between the lines",
         {.more =
              [](GameStorm& storm) {
                  storm.Peer().SendUrgent('!');
                  storm.Peer().Pause(0.02);
                  return std::string("(> Quick!\n");
              }},
         {}},
    };
}

std::vector<Misbehaviour> Stalls() {
    return {
        {"stall-greeting",
         "falls silent in the middle of the greeting",
         {.greet =
              [](GameStorm& storm) {
                  storm.Peer().Send("Welcome to the sto");
                  storm.Peer().FallSilent();
              }},
         {}},
        {"stall-login", "never answers the login", {.accept = [](GameStorm& storm) { storm.Peer().FallSilent(); }}, {}},
        {"stall-map",
         "falls silent in the middle of the map order",
         {.enter =
              [](GameStorm& storm) {
                  storm.Peer().Send(";" + storm.Town().place.mapPath.substr(0, 5));
                  storm.Peer().FallSilent();
              }},
         {}},
        {"stall-line",
         "falls silent in the middle of a line",
         {.entered =
              [](GameStorm& storm) {
                  storm.Peer().Send("(> This line has no e");
                  storm.Peer().FallSilent();
              }},
         {}},
        WithFiles("stall-welcome", "the file server never says a word",
                  {.welcome = [](FileStorm& storm) { storm.Peer().FallSilent(); }}),
        WithFiles("stall-reply", "the file server never answers a request",
                  {.reply = [](FileStorm& storm) { storm.Peer().FallSilent(); }}),
        WithFiles("stall-block", "the file server falls silent in the middle of the third block",
                  {.block =
                       [](FileStorm& storm) {
                           const std::string block = storm.Block(storm.next, FileStorm::politeBlock);
                           storm.Peer().Send(storm.next < 2 ? block : block.substr(0, 1000));
                           if (storm.next == 2) storm.Peer().FallSilent();
                       }}),
    };
}

std::vector<Misbehaviour> Ends() {
    return {
        {"reset-connect", "resets the game connection at once", {.greet = EndGame<true>}, {}},
        {"reset-greeting",
         "resets it behind the greeting",
         {.greet =
              [](GameStorm& storm) {
                  storm.Greet();
                  storm.Peer().Pause(0.2);
                  storm.Peer().End(true);
              }},
         {}},
        {"reset-login", "resets it in answer to the login", {.accept = EndGame<true>}, {}},
        {"reset-map",
         "resets it in the middle of the map order",
         {.enter =
              [](GameStorm& storm) {
                  storm.Peer().Send(";" + storm.Town().place.mapPath.substr(0, 5));
                  storm.Peer().Pause(0.2);
                  storm.Peer().End(true);
              }},
         {}},
        {"reset-playing",
         "resets it in the middle of a line while the player plays",
         {.entered =
              [](GameStorm& storm) {
                  storm.Peer().Pause(2.0);
                  storm.Peer().Send("(> This line has no e");
                  storm.Peer().Pause(0.2);
                  storm.Peer().End(true);
              }},
         {}},
        {"close-connect", "closes the game connection at once, in good order", {.greet = EndGame<false>}, {}},
        {"close-playing",
         "closes it in good order in the middle of a line while the player plays",
         {.entered =
              [](GameStorm& storm) {
                  storm.Peer().Pause(2.0);
                  storm.Peer().Send("(> This line has no e");
                  storm.Peer().End(false);
              }},
         {}},
        WithFiles("reset-file-connect", "resets every connection to the file server at once",
                  {.welcome = EndFile<true>}),
        WithFiles("reset-reply", "resets it in answer to the request", {.reply = EndFile<true>}),
        WithFiles("reset-block", "resets it in the middle of the third block", {.block = EndInBlock<true>}),
        WithFiles("close-block", "closes it in good order in the middle of the third block",
                  {.block = EndInBlock<false>}),
    };
}

}  // namespace

std::vector<Misbehaviour> ConnectionModes() {
    std::vector<Misbehaviour> list;
    for (const auto& part : {Paces(), Stalls(), Ends()})
        list.insert(list.end(), part.begin(), part.end());
    return list;
}

}  // namespace demo
