#include "demo/storms/StormPeer.h"

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/socket_base.hpp>
#include <chrono>

namespace demo {

namespace {

constexpr double dripSeconds = 0.001;

}  // namespace

StormPeer::StormPeer(asio::ip::tcp::socket connected, std::unique_ptr<Storm> what)
    : socket(std::move(connected)), timer(socket.get_executor()), storm(std::move(what)) {}

void StormPeer::Start() {
    asio::error_code ignored;
    socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    storm->Connected(*this);
    Read();
}

void StormPeer::Send(std::string bytes) {
    if (!bytes.empty()) Add({Kind::Bytes, std::move(bytes)});
}
void StormPeer::Pause(double seconds) {
    Add({Kind::Pause, {}, seconds});
}
void StormPeer::FallSilent() {
    Add({Kind::Silence, {}});
}
void StormPeer::End(bool reset) {
    Add({reset ? Kind::Reset : Kind::End, {}});
}

void StormPeer::SendUrgent(char byte) {
    asio::error_code ignored;
    socket.send(asio::buffer(&byte, 1), asio::socket_base::message_out_of_band, ignored);
}

// Not carried out at once, so that whoever gives orders is not called from inside.
void StormPeer::Add(Order order) {
    if (gone) return;
    orders.push_back(std::move(order));
    if (busy) return;
    busy = true;
    asio::post(socket.get_executor(), [self = shared_from_this()] { self->Next(); });
}

void StormPeer::Next() {
    if (gone) return;
    if (orders.empty()) {
        busy = false;
        return storm->Drained(*this);
    }
    const Kind kind = orders.front().kind;
    if (kind == Kind::Bytes) return Write();
    if (kind == Kind::Silence) return;  // busy for good
    if (kind == Kind::Pause) {
        const double seconds = orders.front().seconds;
        orders.pop_front();
        return WaitThenNext(seconds);
    }
    asio::error_code ignored;
    if (kind == Kind::Reset) socket.set_option(asio::socket_base::linger(true, 0), ignored);
    Abort();
}

void StormPeer::Write() {
    const std::string& bytes = orders.front().bytes;
    const std::size_t count = dripping ? 1 : bytes.size() - written;
    socket.async_write_some(asio::buffer(bytes.data() + written, count),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t sent) {
                                if (self->gone) return;
                                if (failure) return self->Abort();
                                self->written += sent;
                                if (self->written == self->orders.front().bytes.size()) {
                                    self->orders.pop_front();
                                    self->written = 0;
                                }
                                if (self->dripping) return self->WaitThenNext(dripSeconds);
                                self->Next();
                            });
}

void StormPeer::WaitThenNext(double seconds) {
    timer.expires_after(
        std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(seconds)));
    timer.async_wait([self = shared_from_this()](const asio::error_code& cancelled) {
        if (!cancelled) self->Next();
    });
}

void StormPeer::Read() {
    socket.async_read_some(asio::buffer(input),
                           [self = shared_from_this()](const asio::error_code& failure, std::size_t count) {
                               if (failure) return self->Abort();
                               self->Heard(count);
                           });
}

void StormPeer::Heard(std::size_t count) {
    if (gone) return;
    lines.Add(std::string_view(input, count));
    while (const auto line = lines.Take())
        storm->Line(*this, *line);
    if (lines.Overflowed()) return Abort();
    if (!deaf && !gone) Read();
}

void StormPeer::Abort() {
    if (gone) return;
    gone = true;
    asio::error_code ignored;
    socket.close(ignored);
    timer.cancel();
}

}  // namespace demo
