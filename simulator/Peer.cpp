#include "simulator/Peer.h"

#include <cerrno>

#include "simulator/TcpListener.h"

namespace sim {

Peer::Peer(FileDescriptor connection, sim::Face face)
    : connection_(std::move(connection)), descriptor_(connection_.Get()), face_(face) {}

void Peer::Receive() {
    char buffer[16384];
    const ssize_t count = ::read(descriptor_, buffer, sizeof buffer);
    if (count > 0) {
        if (!deaf_) lines_.Add({buffer, static_cast<size_t>(count)});
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        closed_ = !Serial();
    }
}

std::optional<LineBuffer::Line> Peer::NextLine() { return deaf_ ? std::nullopt : lines_.Next(); }

void Peer::Send(std::string_view answer, const Treatment& treatment, std::string_view terminator,
                Steady::time_point now) {
    std::string bytes;
    if (treatment.raw) {
        bytes = *treatment.raw;
    } else {
        bytes = std::string{answer} + treatment.terminator.value_or(std::string{terminator});
    }
    if (treatment.close == Close::In) bytes.resize(bytes.size() / 2);
    if (treatment.truncate && *treatment.truncate < bytes.size()) bytes.resize(*treatment.truncate);
    Steady::time_point due = now + treatment.delay;
    if (!output_.empty()) due = std::max(due, output_.back().due);
    if (treatment.close != Close::Before) {
        for (size_t start = 0, i = 0; start < bytes.size(); ++i) {
            const size_t size =
                treatment.pieces.empty() ? bytes.size() : treatment.pieces[std::min(i, treatment.pieces.size() - 1)];
            output_.push_back({due, bytes.substr(start, size)});
            due += treatment.gap;
            start += size;
        }
    }
    if (treatment.close != Close::No) output_.push_back({due, {}, true, treatment.reset});
}

void Peer::Close(bool reset) {
    output_.clear();
    blocked_ = false;
    if (Serial()) return;
    if (reset) ResetOnClose(descriptor_);
    closed_ = true;
}

void Peer::Flush(Steady::time_point now) {
    blocked_ = false;
    while (!output_.empty() && output_.front().due <= now) {
        Piece& piece = output_.front();
        if (piece.thenClose) {
            Close(piece.reset);
            return;
        }
        const ssize_t count = ::write(descriptor_, piece.bytes.data(), piece.bytes.size());
        if (count < 0) {
            if (errno == EAGAIN || errno == EINTR) {
                blocked_ = true;
            } else {
                Close(false);
            }
            return;
        }
        piece.bytes.erase(0, static_cast<size_t>(count));
        if (piece.bytes.empty()) output_.pop_front();
    }
}

std::optional<Steady::time_point> Peer::Due() const {
    if (output_.empty() || blocked_) return std::nullopt;
    return output_.front().due;
}

}  // namespace sim
