#include "host/InstrumentTransport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "host/Escape.h"
#include "host/MessageLog.h"

namespace host {

namespace {

using platform::AutomationError;

/// Longest wait for the line end of a block when the next command is at hand; a character takes 9 ms at 1200 baud.
constexpr double LineEndSeconds = 0.1;

constexpr Patience::Milliseconds ReopeningPause{50};

/// Losses of the link in succession on one command that are worth another attempt. With a second between them they take
/// about as long as a time-out; drivers try eleven times.
constexpr int LossLimit = 5;

std::string Quoted(std::string_view bytes) {
    constexpr std::size_t shown = 200;
    auto text = '"' + Escaped(bytes.substr(0, shown), Escape::Bytes) + '"';
    if (bytes.size() > shown) text += "... (" + std::to_string(bytes.size()) + " bytes)";
    return text;
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string ToUtf8(std::string_view latin1) {
    if (IsAscii(latin1)) return std::string(latin1);
    std::string text;
    text.reserve(latin1.size());
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += {static_cast<char>(0xC0 | (byte >> 6)), static_cast<char>(0x80 | (byte & 0x3F))};
        }
    }
    return text;
}

/// Raises 5 for what the wire cannot carry: U+0080 to U+00FF are the lead bytes C2 and C3 with one byte behind.
std::string ToLatin1(std::string_view utf8, const std::string& source) {
    std::string bytes;
    bytes.reserve(utf8.size() + 1);  // a line end follows
    if (IsAscii(utf8)) {
        bytes = utf8;
        return bytes;
    }
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            bytes += utf8[i];
            continue;
        }
        const auto next = i + 1 < utf8.size() ? static_cast<unsigned char>(utf8[i + 1]) : 0U;
        if ((lead != 0xC2 && lead != 0xC3) || (next & 0xC0U) != 0x80U) {
            throw AutomationError(platform::InvalidProcedureCall, source,
                                  "The command holds a character that instruments do not know: " + std::string(utf8));
        }
        bytes += static_cast<char>(((lead & 3U) << 6U) | (next & 0x3FU));
        ++i;
    }
    return bytes;
}

class Flag {
  public:
    explicit Flag(std::atomic<bool>& flag) : flag_(flag) {}
    ~Flag() { flag_ = false; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

  private:
    std::atomic<bool>& flag_;
};

}  // namespace

InstrumentTransport::InstrumentTransport(std::string_view source, std::unique_ptr<ByteLink> link,
                                         std::shared_ptr<platform::SettingsNode> settings, TransportServices services)
    : source_(source), link_(std::move(link)), settings_(std::move(settings)), services_(std::move(services)) {}

void InstrumentTransport::SetTimeout(float seconds) {
    if (!(seconds >= 0.0F)) {
        throw AutomationError(platform::InvalidProcedureCall, source_, "A time-out may not be negative");
    }
    timeout_ = seconds;
}

void InstrumentTransport::SendReceive(std::string_view command, std::string* response) {
    const auto line = ToLatin1(command, source_) + '\n';
    std::string answer;
    Run(Begin(response ? "an answer ending in LF" : "nothing"), [&](Operation& operation) {
        Send(operation, line);
        if (response) answer = ReadLine(operation);
    });
    if (response) *response = std::move(answer);
}

std::string InstrumentTransport::ReadString(std::optional<std::string_view> command) {
    std::string answer;
    if (command) {
        SendReceive(*command, &answer);
    } else {
        Run(Begin("an answer ending in LF"), [&](Operation& operation) {
            RefuseReadOutOfStep();
            answer = ReadLine(operation);
        });
    }
    return answer;
}

std::vector<std::uint8_t> InstrumentTransport::ReadBlock(std::int16_t count, std::optional<std::string_view> command) {
    if (count < 0) {
        throw AutomationError(platform::InvalidProcedureCall, source_,
                              "A block of " + std::to_string(count) + " bytes cannot be read");
    }
    const auto line = command ? ToLatin1(*command, source_) + '\n' : std::string();
    std::vector<std::uint8_t> block;
    const auto expected = std::to_string(count) + " bytes";
    Run(Begin(expected), [&](Operation& operation) {
        if (command) {
            Send(operation, line);
        } else {
            RefuseReadOutOfStep();
        }
        const auto size = static_cast<std::size_t>(count);
        AwaitBytes(operation, size);
        block.assign(received_.begin(), received_.begin() + count);
        received_.erase(0, size);
        blockWasLast_ = true;
        lineEndIsOwed_ = false;
    });
    return block;
}

void InstrumentTransport::WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                                     std::optional<std::string_view> command) {
    if (count < 0 || static_cast<std::size_t>(count) > data.size()) {
        throw AutomationError(
            platform::InvalidProcedureCall, source_,
            std::to_string(count) + " bytes cannot be written, the data has " + std::to_string(data.size()));
    }
    auto bytes = command ? ToLatin1(*command, source_) : std::string();
    bytes.append(data.begin(), data.begin() + count);
    Run(Begin("nothing"), [&](Operation& operation) { Send(operation, std::move(bytes)); });
}

void InstrumentTransport::Connect(bool connect) {
    auto opening = Begin("a connection");
    opening.Time = Patience(Patience::Longest, services_);  // links limit their opening themselves
    Run(std::move(opening), [&](Operation& operation) {
        connected_ = outOfStep_ = blockWasLast_ = lineEndIsOwed_ = false;
        received_.clear();
        losses_ = 0;
        link_->Close();
        if (!connect) return;
        try {
            link_->Open(operation.Time);
        } catch (const OpeningFailure& failure) {
            throw NoConnection(failure.Reason);
        }
        connected_ = true;
    });
}

InstrumentTransport::Operation InstrumentTransport::Begin(std::string_view expected) const {
    return {expected, Patience(timeout_, services_)};
}

LinkFailure InstrumentTransport::NoConnection(const std::string& reason) const {
    return {platform::NoConnection, "No connection to " + link_->Address() + ": " + reason};
}

// The only place where links' failures and the user's stop leave an operation.
template <class Body>
void InstrumentTransport::Run(Operation operation, Body body) {
    if (running_.exchange(true)) {
        const auto busy = NoConnection("another call is using it");
        Refuse(busy.Code, busy.Text);
    }
    const Flag running(running_);
    try {
        body(operation);
        if (operation.Sent == lostOn_) losses_ = 0;
    } catch (const Aborted&) {
        outOfStep_ = true;
    } catch (const LinkFailure& failure) {
        outOfStep_ = true;
        Raise(operation, failure);
    } catch (...) {
        outOfStep_ = true;
        throw;
    }
}

// Steps until it is done or the time is over; after the end there is one last step that does not wait.
template <class Done, class Step>
void InstrumentTransport::Repeat(Operation& operation, const LinkFailure& timedOut, Done done, Step step) {
    for (bool over = false; !done();) {
        if (over) throw timedOut;
        const auto slice = operation.Time.Slice();
        over = slice.count() == 0;
        step(slice);
    }
}

void InstrumentTransport::Send(Operation& operation, std::string bytes) {
    if (!connected_) throw NoConnection("it has not been opened");
    BringIntoStep(operation);
    operation.Sent = std::move(bytes);
    std::span<const std::uint8_t> rest(reinterpret_cast<const std::uint8_t*>(operation.Sent.data()),
                                       operation.Sent.size());
    const LinkFailure timedOut{platform::InstrumentNotReady, "Send timed out"};
    Repeat(
        operation, timedOut, [&] { return rest.empty(); },
        [&](auto slice) { rest = rest.subspan(link_->Write(rest, slice)); });
    bool flushed = false;
    Repeat(
        operation, timedOut, [&] { return flushed; }, [&](auto slice) { flushed = link_->Flush(slice); });
}

void InstrumentTransport::BringIntoStep(Operation& operation) {
    if (!outOfStep_ && link_->IsOpen()) DiscardStaleBytes(operation);
    if (outOfStep_) {
        link_->Resynchronise(operation.Time);
        blockWasLast_ = false;
    }
    received_.clear();
    if (!link_->IsOpen()) {
        Reopen(operation);
        blockWasLast_ = lineEndIsOwed_ = false;
        Note("The link was opened again", link_->Address());
    }
    lineEndIsOwed_ = lineEndIsOwed_ || blockWasLast_;
    outOfStep_ = blockWasLast_ = false;
}

void InstrumentTransport::Reopen(Operation& operation) {
    while (!link_->IsOpen()) {
        try {
            link_->Open(operation.Time);
        } catch (const OpeningFailure& failure) {
            if (operation.Time.Over()) throw NoConnection(failure.Reason);
            operation.Time.Pause(ReopeningPause);
        }
    }
    operation.Time.Renew(timeout_);
}

void InstrumentTransport::DiscardStaleBytes(Operation& operation) {
    const bool afterBlock = blockWasLast_;
    try {
        while (received_.size() <= AnswerLimit && ReadSome({})) {
        }
        if (afterBlock) {
            auto grace = operation.Time.AtMost(LineEndSeconds);
            while (!DropLineEnd() && (received_.empty() || received_ == "\r") && !grace.Over()) ReadSome(grace.Slice());
        }
    } catch (const LinkFailure&) {
        link_->Close();  // the peer has gone since the last answer: nothing was sent yet, so opening again is harmless
    }
    if (received_.empty()) return;
    Note("Bytes that nobody had asked for were discarded", link_->Address() + ": received " + Quoted(received_));
    lineEndIsOwed_ = false;
    // The rest of a block may still be on its way.
    if (afterBlock || received_.size() > AnswerLimit) outOfStep_ = true;
}

std::string InstrumentTransport::ReadLine(Operation& operation) {
    std::size_t searched = 0;
    auto end = std::string::npos;
    const auto complete = [&] {
        if (!SettleLineEnd()) return false;
        end = received_.find('\n', searched);
        searched = received_.size();
        if (std::min(end, searched) > AnswerLimit) {
            throw LinkFailure{platform::ProtocolBroken, "The answer has no end within 1 MiB"};
        }
        return end != std::string::npos;
    };
    Repeat(operation, {platform::ReceiveTimedOut, "Receive timed out"}, complete, [&](auto slice) { ReadSome(slice); });
    std::string_view line(received_.data(), end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    auto answer = ToUtf8(line);
    received_.erase(0, end + 1);
    blockWasLast_ = false;
    return answer;
}

void InstrumentTransport::AwaitBytes(Operation& operation, std::size_t count) {
    Repeat(
        operation, {platform::ReceiveTimedOut, "Receive timed out"},
        [&] { return count == 0 || (SettleLineEnd() && received_.size() >= count); },
        [&](auto slice) { ReadSome(slice); });
}

void InstrumentTransport::RefuseReadOutOfStep() const {
    if (!connected_) throw NoConnection("it has not been opened");
    if (outOfStep_ || !link_->IsOpen()) {
        throw LinkFailure{platform::ReadFailed, "The answer was given up, send the query again"};
    }
}

bool InstrumentTransport::ReadSome(Patience::Milliseconds time) {
    std::array<std::uint8_t, 16384> bytes;
    const auto count = link_->Read(bytes, time);
    received_.append(bytes.begin(), bytes.begin() + count);
    return count > 0;
}

// Drops the line end that a block before the last command still owes, once bytes tell whether it came.
bool InstrumentTransport::SettleLineEnd() {
    if (lineEndIsOwed_ && !received_.empty() && received_ != "\r") {
        DropLineEnd();
        lineEndIsOwed_ = false;
    }
    return !lineEndIsOwed_;
}

// Removes the line end that follows a block; true when it was there.
bool InstrumentTransport::DropLineEnd() {
    for (const std::string_view lineEnd : {"\n", "\r\n"}) {
        if (!received_.starts_with(lineEnd)) continue;
        received_.erase(0, lineEnd.size());
        blockWasLast_ = false;
        return true;
    }
    return false;
}

void InstrumentTransport::Raise(const Operation& operation, LinkFailure failure) {
    if (failure.Code == platform::LinkLost) {
        lostOn_ = operation.Sent;
        if (++losses_ > LossLimit) {
            failure = NoConnection("lost " + std::to_string(std::exchange(losses_, 0)) +
                                   " times in succession, last: " + failure.Text);
        }
    }
    char waited[32];
    std::snprintf(waited, sizeof waited, "%.3f", operation.Time.Waited());
    Note(failure.Text, link_->Address() + ": sent " + (operation.Sent.empty() ? "nothing" : Quoted(operation.Sent)) +
                           ", expected " + std::string(operation.Expected) + ", received " +
                           (received_.empty() ? "nothing" : Quoted(received_)) + ", waited " + waited + " s");
    if (failure.Code != platform::ReceiveTimedOut && failure.Code != platform::InstrumentNotReady) link_->Close();
    throw AutomationError(platform::ObjectError(failure.Code), source_, failure.Text);
}

void InstrumentTransport::Refuse(platform::TransportError code, const std::string& text) const {
    Note(text, link_->Address());
    throw AutomationError(platform::ObjectError(code), source_, text);
}

void InstrumentTransport::Note(std::string_view text, std::string_view data) const {
    if (!services_.Log || (services_.ErrorReporting && !services_.ErrorReporting())) return;
    services_.Log(FailureEntry, name_.empty() ? source_ : name_, text, data);
}

}  // namespace host
