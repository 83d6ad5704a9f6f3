#pragma once
// The game's data that the session writes and the scene, the renderers and the camera read. Main thread, but for the
// messages.

#include <array>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace TOLV {
class FileGetter;
}

struct Marker {
    int gx = 0;
    int gy = 0;
    std::string label;
    std::string subLabel;
};

struct Character {
    std::array<std::uint8_t, 10> colorDigits{};
    int group = 0;
    int variant = 0;
    int facing = 0;
    int pose = 0;
    int gx = 0;
    int gy = 0;
};

enum class TransferKind { Dream = 0, Portrait = 1 };
enum class TransferDirection : std::uint8_t { Download = 0, Upload = 1 };

struct Transfer {
    TransferKind kind = TransferKind::Dream;
    TransferDirection direction = TransferDirection::Download;
    std::string id;
    TOLV::FileGetter* getter = nullptr;  // owned by the entry, made by the checked allocator
};

class TolvDataManager {
  public:
    static TolvDataManager& Default();

    void PostMessage(const std::string& text);  // any thread
    bool PopMessage(std::string& out);

    [[nodiscard]] const std::list<Character>& GetCharacters() const { return characters; }
    void ClearCharacters();
    void RemoveCharacterAt(int gx, int gy);
    Character* FindCharacterAt(int gx, int gy);
    // Empties the old cell, then replaces the character at the record's own cell or appends the record.
    void MoveCharacter(int oldGx, int oldGy, const Character& character);

    [[nodiscard]] const std::vector<Marker>& GetMarkers() const { return markers; }
    void AddMarker(const Marker& marker);
    void RemoveMarkerAt(int gx, int gy);
    void ClearMarkers() { markers.clear(); }

    void GetViewPosition(int& gx, int& gy) const;
    void SetViewPosition(int gx, int gy);

    [[nodiscard]] const std::list<Transfer>& GetTransfers() const { return transfers; }  // newest first
    // True when the transfer is done already: a local copy, or no connection. Too many at once are refused, with a
    // message.
    bool StartDreamTransfer(const std::string& id, const std::string& folder);
    // Destroys the getter, waiting for its thread, and forgets the entry; one that is not in the table is reported.
    void EndTransfer(const Transfer& transfer);

  private:
    int viewGx = 0;
    int viewGy = 0;
    std::vector<Marker> markers;
    std::list<Character> characters;  // in the order in which they are drawn
    // Where the one on each cell is in the list: a crowded place moves thousands of them a second.
    std::map<std::pair<int, int>, std::list<Character>::iterator> characterOfCell;
    std::list<Transfer> transfers;
    bool refusing = false;  // the last transfer found no room, and that was said
};
