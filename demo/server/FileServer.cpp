#include "demo/server/FileServer.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>

#include "demo/formats/ByteWriter.h"

namespace demo {

namespace {

constexpr std::size_t clientLimit = 32;
constexpr int patienceSeconds = 60;
constexpr int refusalSeconds = 5;
constexpr std::size_t blockHeaderSize = 10;
constexpr std::size_t smallestBlock = 64;
constexpr std::size_t largestBlock = 65536;

std::optional<std::size_t> ParseDecimal(std::string_view text) {
    std::size_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (end > 0) words.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

// Dreams are named by letters and digits alone, so no name leaves the folder.
bool IsDreamName(std::string_view name) {
    return !name.empty() && name.size() <= 40 && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

}  // namespace

std::size_t FileServer::Transfer::BlockCount() const {
    const std::size_t payload = blockSize - blockHeaderSize;
    return (bytes.size() + payload - 1) / payload;
}

std::string FileServer::Transfer::Block(std::size_t number) const {
    const std::size_t payload = blockSize - blockHeaderSize;
    const std::string content = bytes.substr(number * payload, payload);
    return ByteWriter()
        .Bytes("SC")
        .U32(static_cast<std::uint32_t>(number))
        .U32(static_cast<std::uint32_t>(content.size()))
        .Field(content, payload)
        .Str();
}

FileServer::FileServer(asio::io_context& io, std::filesystem::path folder, std::vector<Account> theAccounts,
                       ServerLog& theLog)
    : door(io, clientLimit), dreamFolder(std::move(folder)), accounts(std::move(theAccounts)), log(theLog) {}

void FileServer::Start() {
    door.Accept(*this, [this](Peer& peer) {
        log.Write("file: client " + std::to_string(peer.Number()) + " connects");
        peer.ExpectWithin(patienceSeconds);
        peer.Send("10 Welcome to the file server of the island of Tessaly\n");
    });
}

void FileServer::OnLine(Peer& peer, std::string_view line) {
    const auto transfer = transfers.find(peer.Number());
    if (line == "BYE") return peer.CloseAfterSending();
    if (transfer == transfers.end() && line.starts_with("RC ")) return Request(peer, line.substr(3));
    if (transfer != transfers.end() && line.starts_with("PKOK "))
        return Acknowledged(peer, transfer->second, line.substr(5));
    Refuse(peer, "50 What?");
}

void FileServer::OnGone(Peer& peer) {
    transfers.erase(peer.Number());
    door.Forget(peer);
}

// NAME PASSWORD DREAM 0 2 BLOCKSIZE, where name and password may hold spaces: the last four words are the rest.
void FileServer::Request(Peer& peer, std::string_view request) {
    const std::vector<std::string_view> words = Words(request);
    if (words.size() < 6) return Refuse(peer, "50 What?");
    const std::string_view dream = words[words.size() - 4];
    const auto blockSize = ParseDecimal(words.back());
    if (!IsDreamName(dream) || !blockSize) return Refuse(peer, "50 What?");
    const auto before = static_cast<std::size_t>(dream.data() - request.data());
    const Account* account = FindAccount(accounts, request.substr(0, before - 1));
    if (!account) return Refuse(peer, "51 Invalid Name or password.");
    std::ifstream file(dreamFolder / (std::string(dream) + ".dream"), std::ios::binary);
    Transfer transfer;
    transfer.dream = dream;
    transfer.bytes.assign(std::istreambuf_iterator<char>(file), {});
    transfer.blockSize = std::clamp(*blockSize, smallestBlock, largestBlock);
    if (transfer.bytes.empty()) return Refuse(peer, "52 No such dream.");
    log.Write("file: \"" + account->name + "\" asks for " + transfer.dream + ", " +
              std::to_string(transfer.bytes.size()) + " bytes in " + std::to_string(transfer.BlockCount()) + " blocks");
    peer.Send("44 " + std::to_string(transfer.bytes.size()) + " 0 " + std::to_string(transfer.blockSize) + "\n");
    SendNextBlock(peer, transfers[peer.Number()] = std::move(transfer));
}

void FileServer::Acknowledged(Peer& peer, Transfer& transfer, std::string_view number) {
    if (ParseDecimal(number) != transfer.nextBlock) return Refuse(peer, "53 Not that block.");
    ++transfer.nextBlock;
    if (transfer.nextBlock < transfer.BlockCount()) return SendNextBlock(peer, transfer);
    if (transfer.nextBlock == transfer.BlockCount()) log.Write("file: " + transfer.dream + " is delivered");
}

void FileServer::SendNextBlock(Peer& peer, Transfer& transfer) {
    peer.ExpectWithin(patienceSeconds);
    peer.Send(transfer.Block(transfer.nextBlock));
}

void FileServer::Refuse(Peer& peer, const std::string& answer) {
    log.Write("file: client " + std::to_string(peer.Number()) + " is told: " + answer);
    peer.Send(answer + "\n");
    // The client leaves once it has read the answer; closing at once could overtake it there.
    peer.ExpectWithin(refusalSeconds);
}

}  // namespace demo
