#pragma once
// Every cap on untrusted sizes, with its reason. All are far above what the formats were made for.

#include <cstddef>
#include <cstdint>

namespace caps {

// Cells of the square grid of a map. The largest map of the game has a few hundred cells a side; 8192 x 8192 cells take
// 400 MiB.
constexpr std::int64_t mapGridCells = 8192LL * 8192LL;
// Bytes of a map's header line; its keys and numbers take a few dozen. A longer line is passed over, and no more than
// this of a version line is logged.
constexpr std::size_t mapHeaderLineBytes = 4096;
// Bytes of a dream archive, which is read into memory whole.
constexpr std::uint64_t archiveBytes = 512ULL << 20;
// Entries of a dream archive; the largest dreams hold a few dozen files. Finding the place of a new file takes a look
// through its folder, so the time grows with the square.
constexpr std::size_t archiveEntries = 1024;
// Bytes that one LZW or bzip2 entry may unpack to.
constexpr std::size_t entryBytes = 64ULL << 20;
// Bytes that all entries of one archive may unpack to, because a few KiB of bzip2 data can unpack to a full entry.
// Damaged bzip2 entries and those beyond their own cap count as full ones, so 32 of them end the unpacking.
constexpr std::uint64_t unpackedBytes = 2ULL << 30;
// Lines of one kind of message that a single file may write; 65536 lines are a few MiB of log and less than a second.
constexpr std::size_t repeatedMessages = 65536;
// Messages that a server can cause over and over, of those about lines that no server sends without meaning harm.
constexpr std::size_t refusalMessages = 100;
// Bytes of one line from a game or file server. The longest lines known are descriptions of a few KiB.
constexpr std::size_t serverLineBytes = 64ULL << 10;
// Characters and markers that the server can put on a map; more are not shown. A crowded map holds a few hundred.
constexpr std::size_t characters = 8192;
constexpr std::size_t markers = 8192;
// Bytes kept of each of a marker's two labels, which is ten times what the picture has room for in a line.
constexpr std::size_t labelBytes = 1024;
// Of those near the view, the markers whose pillars are drawn: one on each of the 31 x 31 cells; and the characters of
// labels, which take some tenth of a millisecond a label: half the places for characters of a picture of 800 x 600.
constexpr std::size_t drawnMarkers = 961;
constexpr std::size_t drawnLabelCharacters = 2500;
// File transfers at the same time, each with two threads and a connection. A player is sent into one dream after the
// other.
constexpr std::size_t transfers = 16;
// Bytes of a file that the file server may announce; an archive larger than its cap would be refused anyway.
constexpr std::int64_t downloadBytes = 512LL << 20;
// Bytes of one block of the file server; the client asks for 4096.
constexpr std::int64_t downloadBlockBytes = 1LL << 20;
// Bytes of a sprite archive: 1024 images of 255 x 255 with headers are 64 MiB.
constexpr std::uint64_t spriteArchiveBytes = 128ULL << 20;
// Rows of all images of one sprite archive together, because rows of no or few pixels take more memory than file: four
// times the 1024 x 255 of a full archive.
constexpr std::size_t spriteRows = 4ULL * 1024 * 255;
// Bytes of a model's text and of its binary cache, which takes up to three times as much.
constexpr std::uint64_t modelTextBytes = 64ULL << 20;
constexpr std::uint64_t modelCacheBytes = 192ULL << 20;
// Bones of one model. A person has some sixty; walks over the tree go as deep on the stack as it is.
constexpr std::size_t modelBones = 2048;
// Meshes, chunks and textures of one model; the objects of the game have a handful of each.
constexpr std::size_t modelMeshes = 2048;
constexpr std::size_t modelChunks = 65536;
constexpr std::size_t modelTextures = 4096;
// Bytes of one word of a model text, which messages repeat; names are at most 255.
constexpr std::size_t modelTokenBytes = 1024;
// Bytes of the construct names that are collected after an error.
constexpr std::size_t modelErrorStackBytes = 64ULL << 10;
// Object numbers of a map are 16-bit, so no more items can ever be shown.
constexpr int itemNumbers = 65535;
// Bytes of the item table, a line of less than 100 for each item.
constexpr std::uint64_t itemTableBytes = 16ULL << 20;

}  // namespace caps
