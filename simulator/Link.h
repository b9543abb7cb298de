#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <deque>
#include <utility>

#include "simulator/Instrument.h"
#include "simulator/Text.h"

namespace sim {

/// The way to one partner of the dialogue: takes lines from him and sends the answers when their time has come. It
/// lives as long as it has to wait for something. A serial line is never closed: that only drops what is unsent.
template <class Stream>
class Link : public std::enable_shared_from_this<Link<Stream>> {
  public:
    Link(Instrument& instrument, Stream stream, Face face)
        : instrument_(instrument), stream_(std::move(stream)), face_(face), timer_(stream_.get_executor()) {}

    void Open() {
        if (kTcp) Log("--", "opened");
        Receive();
    }

  private:
    using Error = boost::system::error_code;
    using Clock = std::chrono::steady_clock;

    static constexpr bool kTcp = std::is_same_v<Stream, boost::asio::ip::tcp::socket>;
    static constexpr size_t kLongestLine = size_t{64} * 1024;
    // So many pieces wait for a partner who does not read them that no more lines are taken from him.
    static constexpr size_t kMostUnsent = 1000;

    struct Piece {
        Clock::time_point due;
        std::string bytes;
        bool thenClose = false, reset = false;
    };

    /// Takes the next line, when the one before has been executed. It ends in LF; a CR before it is dropped.
    void Receive() {
        if (receiving_ || output_.size() > kMostUnsent) return;
        receiving_ = true;
        const auto received = [self = this->shared_from_this()](Error error, size_t size) {
            if (error == boost::asio::error::not_found) {
                self->overrun_ = true;  // what is too long is lost as it comes
                self->input_.clear();
                self->GoOn();
            } else if (error) {
                self->output_.push_back({Clock::now(), {}, true});
                self->Flush();
            } else {
                self->TakeLine(size);
            }
        };
        boost::asio::async_read_until(stream_, boost::asio::dynamic_buffer(input_, kLongestLine + 1), '\n', received);
    }
    void GoOn() {
        receiving_ = false;
        Receive();
    }

    void TakeLine(size_t size) {
        std::string line = overrun_ ? "" : input_.substr(0, size - 1);
        if (line.ends_with('\r')) line.pop_back();
        input_.erase(0, size);
        const bool overrun = std::exchange(overrun_, false);
        if (deaf_) return GoOn();
        instrument_.WhenReady([self = this->shared_from_this(), line, overrun] {
            self->Log("<-", overrun ? "(a line that is too long)" : line);
            Treatment treatment = overrun ? Treatment{} : self->instrument_.Treat(line);
            if (overrun && self->face_ == Face::Remote) treatment.errors = {-363};
            self->instrument_.AfterBeingBusy(treatment.busy,
                                             [self, line, treatment] { self->Execute(line, treatment); });
        });
    }

    void Execute(const std::string& line, const Treatment& treatment) {
        deaf_ = treatment.deaf;
        Send(instrument_.Execute(line, face_, treatment), treatment);
        GoOn();
    }

    /// Queues an answer as the treatment wants it. Answers leave in the order of their lines, a delayed one holds the
    /// later ones up.
    void Send(const std::optional<std::string>& answer, const Treatment& treatment) {
        Clock::time_point due = Clock::now() + treatment.delay;
        if (!output_.empty()) due = std::max(due, output_.back().due);
        if (answer) {
            Log("->", *answer);
            std::string bytes = *answer;
            if (!treatment.raw) bytes += treatment.terminator.value_or(instrument_.options.script.Terminator());
            if (treatment.close == Close::In) bytes.resize(bytes.size() / 2);
            if (treatment.close == Close::Before) bytes.clear();
            if (treatment.truncate) bytes.resize(std::min(*treatment.truncate, bytes.size()));
            for (size_t start = 0, i = 0; start < bytes.size(); ++i) {
                const size_t size = treatment.pieces.empty()
                                        ? bytes.size()
                                        : treatment.pieces[std::min(i, treatment.pieces.size() - 1)];
                output_.push_back({due, bytes.substr(start, size)});
                due += treatment.gap;
                start += size;
            }
        }
        if (treatment.close != Close::No) output_.push_back({due, {}, true, treatment.reset});
        Flush();
    }

    /// Sends the next piece when it is due, then those behind it.
    void Flush() {
        if (sending_ || output_.empty()) return;
        sending_ = true;
        const auto send = [self = this->shared_from_this()](Error) {
            const Piece& piece = self->output_.front();
            if (piece.thenClose) return self->Drop(piece.reset);
            boost::asio::async_write(self->stream_, boost::asio::buffer(piece.bytes), [self](Error error, size_t) {
                if (error) return self->Drop(false);
                self->output_.pop_front();
                self->sending_ = false;
                self->Flush();
                self->Receive();
            });
        };
        if (output_.front().due <= Clock::now()) return send({});
        timer_.expires_at(output_.front().due);
        timer_.async_wait(send);
    }

    /// Closes and forgets what is unsent.
    void Drop(bool reset) {
        output_.clear();
        sending_ = false;
        if constexpr (kTcp) {
            if (!stream_.is_open()) return;
            Log("--", "closed");
            Error ignored;
            if (reset) stream_.set_option(boost::asio::socket_base::linger(true, 0), ignored);
            stream_.close(ignored);
        }
        Receive();
    }

    void Log(std::string_view direction, std::string_view text) {
        if (!instrument_.options.log) return;
        const char* face = !kTcp ? "serial" : face_ == Face::FrontPanel ? "panel" : "tcp";
        std::string entry = face + (" " + std::to_string(stream_.native_handle())) + " ";
        entry.append(direction).append(" ").append(Escape(text.substr(0, 200)));
        if (text.size() > 200) entry += "... (" + std::to_string(text.size()) + " bytes)";
        instrument_.options.log(entry);
    }

    Instrument& instrument_;
    Stream stream_;
    const Face face_;
    boost::asio::steady_timer timer_;
    std::string input_;
    std::deque<Piece> output_;
    bool receiving_ = false, sending_ = false, overrun_ = false, deaf_ = false;
};

}  // namespace sim
