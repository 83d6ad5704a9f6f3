#pragma once
// Every cap on a size that comes from a file, a server or the keyboard, with its reason. All are far above what the
// formats were made for. "kelvane-tool limits" prints this list; docs/reliability.md says what holds at each of them.

#include <cstddef>
#include <cstdint>

// type, name, value, what is counted, reason
#define KELVANE_CAPS(CAP)                                                                                              \
    CAP(std::uint64_t, mapBytes, 64ULL << 20, "bytes", "A map file. The largest grid's three planes take 24 MiB.")     \
    CAP(std::int64_t, mapGridCells, 8192LL * 8192LL, "cells",                                                          \
        "The square grid of a map. The largest map of the game has a few hundred cells a side; 8192 x 8192 "           \
        "take 400 MiB.")                                                                                               \
    CAP(std::size_t, mapHeaderLineBytes, 4096, "bytes",                                                                \
        "A line of a map's header, whose keys and numbers take a few dozen. A longer one is passed over, "             \
        "and no more than this of a version line is logged.")                                                          \
    CAP(std::uint64_t, archiveBytes, 512ULL << 20, "bytes", "A dream archive, which is read into memory whole.")       \
    CAP(std::size_t, archiveEntries, 1024, "entries",                                                                  \
        "A dream archive; the largest dreams hold a few dozen files. Finding the place of a new file takes "           \
        "a look through its folder, so the time grows with the square.")                                               \
    CAP(std::size_t, entryBytes, 64ULL << 20, "bytes", "What one LZW or bzip2 entry of an archive may unpack to.")     \
    CAP(std::uint64_t, unpackedBytes, 2ULL << 30, "bytes",                                                             \
        "What all entries of an archive may unpack to, because a few KiB of bzip2 data can unpack to a full "          \
        "entry. Damaged bzip2 entries and those beyond their own cap count as full ones, so 32 of them end "           \
        "the unpacking.")                                                                                              \
    CAP(std::uint64_t, spriteArchiveBytes, 128ULL << 20, "bytes",                                                      \
        "A sprite archive: 1024 images of 255 x 255 with headers are 64 MiB.")                                         \
    CAP(std::size_t, spriteRows, 4ULL * 1024 * 255, "rows",                                                            \
        "All images of a sprite archive together, because rows of no or few pixels take more memory than "             \
        "file: four times the 1024 x 255 of a full archive.")                                                          \
    CAP(std::uint64_t, colourFileBytes, 1ULL << 20, "bytes",                                                           \
        "A list of colour names or numbers, a line of a few dozen bytes for each.")                                    \
    CAP(std::uint64_t, playerFileBytes, 1ULL << 20, "bytes",                                                           \
        "A player file. The longest descriptions take a few KiB.")                                                     \
    CAP(std::uint64_t, noteBytes, 4096, "bytes",                                                                       \
        "The file of a server's address and the note of a download's size: a name and a number.")                      \
    CAP(int, itemNumbers, 65535, "items", "Object numbers of a map are 16-bit, so no more items can ever be shown.")   \
    CAP(std::uint64_t, itemTableBytes, 16ULL << 20, "bytes",                                                           \
        "The item table, a line of less than 100 bytes for each item.")                                                \
    CAP(std::uint64_t, modelTextBytes, 64ULL << 20, "bytes",                                                           \
        "A model's text, some 80 bytes a vertex; a chunk of the cache has at most 65535.")                             \
    CAP(std::uint64_t, modelCacheBytes, 192ULL << 20, "bytes",                                                         \
        "A model's binary cache, which takes up to three times as much as its text.")                                  \
    CAP(std::size_t, modelBones, 2048, "bones",                                                                        \
        "A model; a person has some sixty. Walks over the tree go as deep on the stack as it is.")                     \
    CAP(std::size_t, modelMeshes, 2048, "meshes", "A model; the objects of the game have a handful.")                  \
    CAP(std::size_t, modelChunks, 4096, "chunks", "All meshes of a model; the objects of the game have a handful.")    \
    CAP(std::size_t, modelTextures, 4096, "textures",                                                                  \
        "All chunks of a model; the objects of the game have a handful.")                                              \
    CAP(std::size_t, modelTokenBytes, 1024, "bytes",                                                                   \
        "A word of a model text, which messages repeat; names are at most 255.")                                       \
    CAP(std::size_t, modelErrorStackBytes, 64ULL << 10, "bytes",                                                       \
        "The names of constructs that are collected after an error in a model text.")                                  \
    CAP(std::uint64_t, imageFileBytes, 300ULL << 20, "bytes",                                                          \
        "An image file. An uncompressed picture of the largest size takes 256 MiB.")                                   \
    CAP(std::uint32_t, imageSide, 8192, "pixels",                                                                      \
        "A side of an image; cards of the client's time take textures of 4096.")                                       \
    CAP(std::uint64_t, volumeListBytes, 1ULL << 20, "bytes",                                                           \
        "The list of a 3D texture's layers: as many names as layers, each of the longest.")                            \
    CAP(std::size_t, volumeLayers, 2048, "images", "A 3D texture: the deepest volume of the cards known.")             \
    CAP(std::uint64_t, volumePixels, 1ULL << 28, "pixels",                                                             \
        "All layers of a 3D texture: 1 GiB, more than a device takes.")                                                \
    CAP(std::size_t, textureBytes, std::size_t{1} << 30, "bytes",                                                      \
        "A texture; its texels and their copy on the card take this much each.")                                       \
    CAP(std::size_t, bufferBytes, std::size_t{1} << 30, "bytes", "A vertex or index buffer.")                          \
    CAP(std::uint64_t, shaderBytes, 256ULL << 10, "bytes",                                                             \
        "A shader's source; the longest written by hand take a few KiB.")                                              \
    CAP(unsigned, shaderNesting, 128, "levels",                                                                        \
        "Open brackets and statements of a shader: the compilers descend once for each, with frames of some "          \
        "KiB.")                                                                                                        \
    CAP(unsigned, shaderStatementTokens, 2048, "words",                                                                \
        "A statement of a shader: the compilers descend once for each operator.")                                      \
    CAP(unsigned, shaderElseChain, 128, "branches",                                                                    \
        "A chain of else in a shader: the compilers descend once for each.")                                           \
    CAP(unsigned, shaderMacroTokens, 50000, "words",                                                                   \
        "A shader with its macros replaced. Macros that feed each other double with each level.")                      \
    CAP(unsigned, shaderMacroDepth, 64, "levels",                                                                      \
        "Macros of a shader within macros; the estimate of their size descends once for each.")                        \
    CAP(unsigned, shaderRounds, 1024, "rounds",                                                                        \
        "A loop of a shader when its instructions are counted: more than the compilers of the time would "             \
        "unroll.")                                                                                                     \
    CAP(unsigned, shaderSeconds, 20, "seconds", "The compilation of a shader, which takes a few milliseconds.")        \
    CAP(std::size_t, serverLineBytes, 64ULL << 10, "bytes",                                                            \
        "A line from a game or file server. The longest known are descriptions of a few KiB.")                         \
    CAP(std::size_t, receiveBufferBytes, 8ULL << 20, "bytes",                                                          \
        "What a connection received and its owner did not take yet, all of which is logged and handled in one "        \
        "frame. The rest stays in the system's buffers, and the peer has to wait.")                                    \
    CAP(std::size_t, gameBufferBytes, 4ULL << 20, "bytes",                                                             \
        "The same for the game server, all of whose lines are handled in the frame in which they are taken.")          \
    CAP(std::size_t, downloadBufferBytes, 2ULL << 20, "bytes",                                                         \
        "The same for a download, sixteen of which may wait for their turn: two of the largest blocks.")               \
    CAP(std::size_t, receivePassBytes, 4ULL << 20, "bytes",                                                            \
        "What one look at a connection takes, so that a flooding peer cannot keep the network lock for "               \
        "itself.")                                                                                                     \
    CAP(int, connectSeconds, 5, "seconds",                                                                             \
        "A connect that is not answered. The system's own limit is two minutes, and the window stands still "          \
        "meanwhile.")                                                                                                  \
    CAP(unsigned, sendPatienceMs, 5000, "milliseconds",                                                                \
        "A send to a peer that takes nothing for so long is a lost connection.")                                       \
    CAP(unsigned, gameSendPatienceMs, 50, "milliseconds",                                                              \
        "The same for the game server: its lines are short, and the picture stands still meanwhile.")                  \
    CAP(std::size_t, characters, 8192, "characters",                                                                   \
        "What the server can put on a map; a crowded one holds a few hundred. More are not shown.")                    \
    CAP(std::size_t, markers, 8192, "markers",                                                                         \
        "What the server can put on a map; a full one holds a few hundred. More are not shown.")                       \
    CAP(std::size_t, drawnMarkers, 961, "markers",                                                                     \
        "Pillars drawn of the markers near the view: one on each of the 31 x 31 cells.")                               \
    CAP(std::size_t, drawnLabelCharacters, 2500, "characters",                                                         \
        "Labels drawn of the markers near the view, which take some tenth of a millisecond each: half the "            \
        "places for characters of a picture of 800 x 600.")                                                            \
    CAP(std::size_t, labelBytes, 1024, "bytes",                                                                        \
        "Either label of a marker: ten times what the picture has room for in a line. The rest is left out.")          \
    CAP(std::size_t, waitingMessages, 1024, "texts",                                                                   \
        "Texts on their way to the chat window, which keeps 60. The oldest are left out.")                             \
    CAP(std::size_t, messageBytes, 8192, "bytes",                                                                      \
        "A text for the chat window, each character of which takes 144 bytes to draw. The rest is left out.")          \
    CAP(std::size_t, typedLineBytes, 4096, "bytes",                                                                    \
        "The line being typed, which is laid out anew with every key. What is typed beyond it is left out.")           \
    CAP(std::size_t, textCharacters, 0x1000000, "characters",                                                          \
        "A text drawn: beyond this its buffer's size would not fit 32 bits. The rest is not drawn.")                   \
    CAP(std::size_t, transfers, 16, "transfers",                                                                       \
        "File transfers at the same time, each with two threads and a connection. A player is sent into one "          \
        "dream after the other.")                                                                                      \
    CAP(std::int64_t, downloadBytes, 512LL << 20, "bytes",                                                             \
        "A file that the file server may announce; an archive larger than its cap would be refused anyway.")           \
    CAP(std::int64_t, downloadBlockBytes, 1LL << 20, "bytes", "A block of the file server; the client asks for 4096.") \
    CAP(std::size_t, fileNameBytes, 200, "bytes",                                                                      \
        "A file name from an archive, a server or a list; those of archives are at most 47.")                          \
    CAP(std::uint64_t, textFileBytes, 16ULL << 20, "bytes", "Any file read whole that has no cap of its own.")         \
    CAP(std::size_t, repeatedMessages, 65536, "messages",                                                              \
        "Messages of one kind that a single file may cause: a few MiB of log and less than a second.")                 \
    CAP(std::size_t, refusalMessages, 100, "messages",                                                                 \
        "Messages that a server can cause over and over, of those about lines that no server sends without "           \
        "meaning harm.")                                                                                               \
    CAP(std::size_t, postureMessages, 8192, "messages",                                                                \
        "Warnings of postures that there are not, which a server can cause in one frame and which open the log "       \
        "each: a tenth of a second.")                                                                                  \
    CAP(std::uint64_t, logBytes, 1ULL << 30, "bytes",                                                                  \
        "A log file, so that a server cannot fill the disk with what is logged of it. The rest of the run "            \
        "is not logged.")                                                                                              \
    CAP(std::size_t, keptFolders, 256, "folders",                                                                      \
        "Folders whose listings are kept for finding names in any case. Past it all are read again.")                  \
    CAP(std::size_t, keptNotices, 4096, "names", "Names in several cases that the log tells of; the rest are not told.")

namespace caps {

#define KELVANE_CAP_CONSTANT(type, name, value, unit, reason) constexpr type name = value;
KELVANE_CAPS(KELVANE_CAP_CONSTANT)
#undef KELVANE_CAP_CONSTANT

struct Cap {
    const char* name;
    std::uint64_t value;
    const char* unit;
    const char* reason;
};

#define KELVANE_CAP_ROW(type, name, value, unit, reason) {#name, static_cast<std::uint64_t>(value), unit, reason},
inline constexpr Cap table[] = {KELVANE_CAPS(KELVANE_CAP_ROW)};
#undef KELVANE_CAP_ROW

}  // namespace caps
