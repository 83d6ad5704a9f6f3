#pragma once
// A client of the demo's servers over a real loopback connection, for the tests of those.

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace support {

// A client that reads whatever comes.
class DemoClient {
  public:
    explicit DemoClient(std::uint16_t port) : socket(io) {
        socket.connect({asio::ip::address_v4::loopback(), port}, failure);
        socket.non_blocking(true, failure);
    }

    void Send(std::string_view bytes) {
        for (std::size_t done = 0; done < bytes.size() && !ended;) {
            done += socket.write_some(asio::buffer(bytes.substr(done)), failure);
            if (failure == asio::error::would_block) {
                Poll();
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            } else if (failure)
                ended = true;
        }
    }
    // Waits until everything received so far satisfies the condition.
    bool WaitFor(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) return false;
            if (!Poll()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }
    bool WaitForText(const std::string& text) {
        return WaitFor([&] { return received.find(text) != std::string::npos; });
    }
    bool WaitForEnd() {
        return WaitFor([&] { return ended; });
    }
    bool WaitForBytes(std::size_t count) {
        return WaitFor([&] { return received.size() >= count || ended; }) && received.size() >= count;
    }
    [[nodiscard]] bool HasEnded() const { return ended; }
    // Ended by a reset rather than in good order.
    [[nodiscard]] bool WasReset() const { return failure == asio::error::connection_reset; }
    std::string TakeLine() {
        if (!WaitForText("\n")) return {};
        const std::size_t end = received.find('\n') + 1;
        return TakeBytes(end);
    }
    std::string TakeBytes(std::size_t count) {
        std::string taken = received.substr(0, count);
        received.erase(0, count);
        return taken;
    }
    bool LogIn(const std::string& nameAndPassword) {
        if (!WaitForText("END\n")) return false;
        Send("connect " + nameAndPassword + "\n");
        if (!WaitForText("&&&&&&&&&&&&&\n")) return false;
        Send("desc Nobody.\ncolor #$%&'()*+,!! \n");
        const bool in = WaitForText("(> Welcome");
        received.clear();
        return in;
    }

    std::string received;

  private:
    bool Poll() {
        char bytes[8192];
        const std::size_t count = socket.read_some(asio::buffer(bytes), failure);
        received.append(bytes, count);
        if (failure && failure != asio::error::would_block) ended = true;
        return count > 0;
    }

    asio::io_context io;
    asio::ip::tcp::socket socket;
    asio::error_code failure;
    bool ended = false;
};

}  // namespace support
