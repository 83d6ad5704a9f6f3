#include "demo/server/Peer.h"

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>

namespace demo {

namespace {

constexpr int farewellSeconds = 5;

}  // namespace

Peer::Peer(asio::ip::tcp::socket connected, std::uint64_t theNumber, Listener& theListener)
    : socket(std::move(connected)), deadline(socket.get_executor()), number(theNumber), listener(theListener) {}

void Peer::Start() {
    asio::error_code ignored;
    socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    Read();
}

void Peer::Read() {
    socket.async_read_some(asio::buffer(input),
                           [self = shared_from_this()](const asio::error_code& failure, std::size_t count) {
                               if (failure) return self->Abort();
                               self->Heard(count);
                           });
}

void Peer::Heard(std::size_t count) {
    if (closing) return Read();
    lines.Add(std::string_view(input, count));
    while (!closing && !gone) {
        const auto line = lines.Take();
        if (!line) break;
        listener.OnLine(*this, *line);
    }
    if (lines.Overflowed()) return Abort();
    if (!gone) Read();
}

void Peer::Send(std::string bytes) {
    if (gone || closing || bytes.empty()) return;
    waiting += bytes.size();
    if (waiting > outputLimit) return Abort();
    output.push_back(std::move(bytes));
    if (!writing) Write();
}

void Peer::Write() {
    writing = true;
    asio::async_write(socket, asio::buffer(output.front()),
                      [self = shared_from_this()](const asio::error_code& failure, std::size_t) {
                          self->writing = false;
                          if (failure) return self->Abort();
                          self->waiting -= self->output.front().size();
                          self->output.pop_front();
                          if (!self->output.empty()) return self->Write();
                          if (self->closing) self->Abort();
                      });
}

void Peer::CloseAfterSending() {
    if (gone || closing) return;
    closing = true;
    ExpectWithin(farewellSeconds);
    if (!writing) Abort();
}

void Peer::Abort() {
    if (gone) return;
    gone = true;
    asio::error_code ignored;
    socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    socket.close(ignored);
    deadline.cancel();
    asio::post(socket.get_executor(), [self = shared_from_this()] { self->listener.OnGone(*self); });
}

void Peer::ExpectWithin(int seconds) {
    deadline.cancel();
    if (seconds <= 0) return;
    deadline.expires_after(std::chrono::seconds(seconds));
    deadline.async_wait([self = shared_from_this()](const asio::error_code& cancelled) {
        if (!cancelled) self->Abort();
    });
}

}  // namespace demo
