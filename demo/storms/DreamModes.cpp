#include <algorithm>

#include "demo/storms/Misbehaviour.h"

namespace demo {

namespace {

// As the reply gives them; the client asked for blocks of 4096 bytes.
struct Sizes {
    const char* total;
    const char* block;
};
constexpr Sizes falseSizes[] = {
    {"100", "4096"},         {"40000", "4096"},          {"0", "4096"},
    {"-1", "4096"},          {"-2147483648", "4096"},    {"2147483647", "4096"},
    {"4294967295", "4096"},  {"99999999999999", "4096"}, {"536870912", "4096"},
    {"21919", "0"},          {"21919", "-4096"},         {"21919", "10"},
    {"21919", "11"},         {"21919", "2147483647"},    {"21919", "1048576"},
    {"21919", "4294967306"}, {"size", "block"},          {"", ""},
};

constexpr const char* oddNames[] = {"..",    "..\\..\\escape", "C:\\escape", "\\\\host\\share", ".",   "con", "a/b",
                                    "x\r",   "\x01\x02",       "\xFF\xFE",   "nul.dream",       "...", "a:b", "*",
                                    "Storm", "storm.size"};

void FalseSizes(FileStorm& storm) {
    const Sizes& sizes = falseSizes[static_cast<std::size_t>(storm.turn) % std::size(falseSizes)];
    storm.Announce(sizes.total, sizes.block);
}

void OddReply(FileStorm& storm) {
    static constexpr const char* replies[] = {"50 What?\n", "044 100 0 4096\n", "44\n", "44 100\n",
                                              "\n",         "44 100 0\n",       "SC\n", "44\t21919\t0\t4096\r\n"};
    storm.Peer().Send(replies[static_cast<std::size_t>(storm.turn) % std::size(replies)]);
}

void OddWelcome(FileStorm& storm) {
    static constexpr const char* welcomes[] = {"10\n", "100 Welcome\n", "\n", "44 100 0 4096\n", "20 Go away\n"};
    storm.Peer().Send(welcomes[static_cast<std::size_t>(storm.turn) % std::size(welcomes)]);
}

// The third block is wrong, each time in another way.
void OddBlock(FileStorm& storm) {
    constexpr std::size_t size = FileStorm::politeBlock;
    const std::uint32_t number = storm.next;
    if (number != 2) return storm.SendBlock();
    const std::string block = storm.Block(number, size);
    const std::string odd[] = {
        storm.Block(number + 1, size),
        storm.Block(0, size),
        storm.Block(0xFFFFFFFFU, size),
        "XX" + block.substr(2),
        block.substr(0, size - 7) + storm.Block(number + 1, size),
        block + "more than was announced" + storm.Block(number + 1, size),
        block + block,
        std::string(size, '\0'),
    };
    storm.Peer().Send(odd[static_cast<std::size_t>(storm.turn) % std::size(odd)]);
}

// All the file at once, before any block is acknowledged, and then blocks that nobody awaits, for ever.
std::string BlocksWithoutEnd(FileStorm& storm) {
    std::string blocks;
    for (int i = 0; i < 16; ++i)
        blocks += storm.Block(storm.next++, FileStorm::politeBlock);
    return blocks;
}

Misbehaviour WithFiles(std::string_view name, std::string_view text, FileManners files) {
    return {name, text, {.entered = OrderFreshDream, .travelled = OrderFreshDreamLater}, files};
}

void OrderMany(GameStorm& storm, bool oneName) {
    const std::string name = storm.FreshDream();
    for (int i = 0; i < 300; ++i)
        storm.OrderDream(oneName ? name : storm.FreshDream());
}

void OrderOddName(GameStorm& storm) {
    const auto pick = static_cast<std::size_t>(storm.turn++) % (std::size(oddNames) + 2);
    storm.Peer().Pause(0.5);
    if (pick < std::size(oddNames)) return storm.OrderDream(oddNames[pick]);
    storm.OrderDream(pick == std::size(oddNames) ? std::string(60000, 'd') : std::string(255, 'd'));
}

}  // namespace

std::vector<Misbehaviour> DreamModes() {
    return {
        {"dreams",
         "hundreds of dream orders in a row, and again once one is done",
         {.entered = [](GameStorm& storm) { OrderMany(storm, false); },
          .travelled =
              [](GameStorm& storm) {
                  if (++storm.turn % 16 == 0) OrderMany(storm, false);
              }},
         {}},
        {"dreams-same",
         "hundreds of orders of one dream in a row",
         {.entered = [](GameStorm& storm) { OrderMany(storm, true); },
          .travelled =
              [](GameStorm& storm) {
                  if (++storm.turn % 16 == 0) OrderMany(storm, true);
              }},
         {}},
        {"dreams-flood",
         "the same, where one download stands still while all that wait for it are flooded",
         {.entered = [](GameStorm& storm) { OrderMany(storm, true); }},
         {.welcome =
              [](FileStorm& storm) {
                  for (int i = 0; i < 1024 && storm.turn % 16 != 0; ++i)
                      storm.Peer().Send(std::string(64U << 10, '1'));
                  storm.Peer().FallSilent();
              }}},
        {"dream-names", "dream names that are no file names", {.entered = OrderOddName, .travelled = OrderOddName}, {}},
        WithFiles("sizes", "the file server announces false sizes, each download others", {.reply = FalseSizes}),
        WithFiles("blocks", "a block is out of order, too large, too small or none, each download another",
                  {.block = OddBlock}),
        WithFiles("replies", "answers to the request that are none", {.reply = OddReply}),
        WithFiles("welcomes", "welcomes that are none", {.welcome = OddWelcome}),
        WithFiles("flood-file", "blocks without an end, whether they are acknowledged or not",
                  {.block = [](FileStorm&) {}, .more = BlocksWithoutEnd}),
        WithFiles("endless-welcome", "a welcome of the file server without an end",
                  {.welcome =
                       [](FileStorm& storm) {
                           for (int i = 0; i < 256; ++i)
                               storm.Peer().Send(std::string(64U << 10, '1'));
                       }}),
    };
}

}  // namespace demo
