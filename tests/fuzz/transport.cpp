// A peer answers each query once, with the query's own tag, but as torn, as late and over as bad a link as the input
// wants. An answer that the transport gives is then the whole answer to its own query; without a fault there is one.
#include <algorithm>

#include "host/InstrumentTransport.h"
#include "tests/fuzz/Fuzz.h"

namespace {

using host::LinkFailure;
using Input = FuzzedDataProvider;

// An input that has come to its end gives zeros: no fault, nothing held back, all bytes at once.
class Peer : public host::ByteLink {
  public:
    explicit Peer(Input& theInput) : input(theInput) {}

    void Open(host::Patience&) override {
        try {
            MayFail();
        } catch (const LinkFailure& failure) {
            throw host::OpeningFailure{failure.Text};
        }
        open = true;
    }
    void Close() noexcept override {
        Forget();
        open = false;
    }
    bool IsOpen() const override { return open; }
    std::string Address() const override { return "peer"; }
    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds) override {
        MayFail();
        const auto count = Piece(bytes.size());
        for (const auto byte : bytes.first(count)) {
            if (byte == '\n') {
                Execute(line);
                line.clear();
            } else {
                line += static_cast<char>(byte);
            }
        }
        return count;
    }
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override {
        MayFail();
        if (wire.empty() && time.count() > 0 && patient) {  // the time-out, without the wait
            disturbed = true;
            wire.swap(late);
            throw LinkFailure{platform::ReceiveTimedOut, "Receive timed out"};
        }
        const auto count = Piece(std::min(bytes.size(), wire.size()));
        std::copy_n(wire.begin(), count, bytes.begin());
        wire.erase(0, count);
        return count;
    }
    void Resynchronise(host::Patience&) override {
        Forget();
        if (input.ConsumeBool()) open = false;
        MayFail();
    }

    std::string wire;        // can be read
    std::string answer;      // to the last query, without its line end
    bool patient = true;     // nothing can be read: time is over at once
    bool disturbed = false;  // something has gone wrong
    bool stopped = false;    // by the user

  private:
    void Forget() noexcept {
        wire.clear();
        late.clear();
        line.clear();
    }
    std::size_t Piece(std::size_t size) {
        const std::size_t piece = input.ConsumeIntegral<std::uint8_t>();
        return piece == 0 ? size : std::min(size, piece);
    }
    void MayFail() {
        const auto fault = input.ConsumeIntegral<std::uint8_t>();
        if (fault < 0xF0) return;
        disturbed = true;
        if (fault == 0xFF) {
            stopped = true;
            throw host::Aborted{};
        }
        throw LinkFailure{static_cast<platform::TransportError>(platform::WriteFailed + fault % 6), "failed"};
    }
    // "Q <tag>" asks for a line, "B <tag>" for a block; anything else is not answered.
    void Execute(const std::string& command) {
        if (command[0] != 'Q' && command[0] != 'B') return;
        answer = command.substr(2) + ':' + input.ConsumeBytesAsString(input.ConsumeIntegralInRange<std::size_t>(0, 40));
        std::string lineEnd = input.ConsumeBool() ? "\r\n" : "\n";
        if (command[0] == 'Q') {
            std::erase(answer, '\n');
            while (answer.ends_with('\r')) answer.pop_back();
        } else if (input.ConsumeBool()) {
            lineEnd.clear();
        }
        late += answer;
        if (command[0] == 'Q') late += lineEnd;
        if (!input.ConsumeBool()) wire += std::exchange(late, {});
        if (command[0] == 'B') late += lineEnd;
        if (!input.ConsumeBool()) wire += std::exchange(late, {});
    }

    Input& input;
    std::string line, late;
    bool open = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    auto link = std::make_unique<Peer>(input);
    auto& peer = *link;
    host::InstrumentTransport transport("Conduit.clsFuzz", std::move(link), nullptr, {.Wait = [](auto) {}});
    constexpr float waits = 1000.0F, doesNotWait = 0.0005F;  // seconds
    bool afterBlock = false;
    for (int tag = 0; tag < 100 && (tag == 0 || input.remaining_bytes() > 0); ++tag) {
        enum Operation { Query, Read, WriteAndRead, Block, Command, Junk, Reconnect };
        const auto operation = transport.IsConnected() ? input.ConsumeIntegral<std::uint8_t>() % 7 : int{Reconnect};
        const auto name = std::to_string(tag);
        peer.patient = !afterBlock;  // the line end of a block that may never come is really waited for
        peer.disturbed = peer.stopped = false;
        transport.SetTimeout(peer.patient ? waits : doesNotWait);
        bool isAnswer = operation <= WriteAndRead;
        std::string answer;
        const auto raised = fuzz::Raised([&] {
            if (operation == Query) transport.SendReceive("Q " + name, &answer);
            if (operation == Read) answer = transport.ReadString("Q " + name);
            if (operation == WriteAndRead) {
                transport.WriteString("Q " + name);
                answer = transport.ReadString(std::nullopt);
            }
            if (operation == Block) {
                afterBlock = true;
                const auto front = transport.ReadBlock(1, "B " + name);
                if (peer.stopped) return;
                const auto rest = transport.ReadBlock(static_cast<std::int16_t>(peer.answer.size() - 1), std::nullopt);
                REQUIRE(peer.stopped ||
                        std::string(front.begin(), front.end()).append(rest.begin(), rest.end()) == peer.answer);
            }
            if (operation == Command) transport.WriteString("C");
            if (operation == Junk && !afterBlock) peer.wire += input.ConsumeRandomLengthString(40);
            if (operation == Reconnect) transport.Connect(true);
        });
        if (raised != 0) {
            const auto code = raised - platform::ObjectError(0);
            REQUIRE(code >= platform::WriteFailed && code <= platform::NoConnection);
            REQUIRE(peer.disturbed || !peer.patient);
        } else if (isAnswer) {
            REQUIRE(answer == fuzz::Utf8(peer.answer) || (peer.stopped && answer.empty()));
            REQUIRE(peer.stopped || answer.starts_with(name + ':'));
            REQUIRE(answer.find('\n') == std::string::npos);
        }
        if (isAnswer || operation == Reconnect) afterBlock = afterBlock && (raised != 0 || peer.stopped);
    }
    return 0;
}
