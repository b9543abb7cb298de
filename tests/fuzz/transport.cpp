// A peer answers each query once, with the query's own tag, but as torn, as late and over as bad a link as the input
// wants. An answer that the transport gives is then the whole answer to its own query; without a fault there is one.
#include <algorithm>

#include "host/InstrumentTransport.h"
#include "tests/fuzz/Fuzz.h"

namespace {

// An input that has come to its end gives zeros: no fault, nothing held back, all bytes at once.
struct Peer : host::ByteLink {
    explicit Peer(fuzz::Input& theInput) : input(theInput) {}

    void Open(host::Patience&) override {
        try {
            MayFail();
        } catch (const host::LinkFailure& failure) {
            throw host::OpeningFailure{failure.Text};
        }
        open = true;
    }
    void Close() noexcept override {
        wire = late = line = {};
        open = false;
    }
    bool IsOpen() const override { return open; }
    std::string Address() const override { return "peer"; }
    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds) override {
        MayFail();
        const auto piece = bytes.first(Piece(bytes.size()));
        line.append(piece.begin(), piece.end());
        if (line.ends_with('\n')) Execute(std::exchange(line, {}));
        return piece.size();
    }
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override {
        MayFail();
        if (wire.empty() && time.count() > 0 && patient) {  // the time-out, without the wait
            disturbed = disturbed || !late.empty();
            wire.swap(late);
            throw host::LinkFailure{platform::ReceiveTimedOut, "Receive timed out"};
        }
        const auto count = Piece(std::min(bytes.size(), wire.size()));
        std::copy_n(wire.begin(), count, bytes.begin());
        wire.erase(0, count);
        return count;
    }
    void Resynchronise(host::Patience&) override {
        Close();
        open = input.Byte() % 2 == 0;
        MayFail();
    }

    std::size_t Piece(std::size_t size) {
        const std::size_t piece = input.Byte();
        return piece == 0 ? size : std::min(size, piece);
    }
    void MayFail() {
        const auto fault = input.Byte();
        if (fault < 0xF0) return;
        disturbed = true;
        stopped = fault == 0xFF;
        if (stopped) throw host::Aborted{};
        throw host::LinkFailure{static_cast<platform::TransportError>(platform::WriteFailed + fault % 6), "failed"};
    }
    // "Q <tag>" asks for a line, "B <tag>" for a block, which may lack its line end.
    void Execute(const std::string& command) {
        const bool isLine = command[0] == 'Q';
        answer = command.substr(2, command.size() - 3) + ':' + input.Text();
        if (isLine) std::erase_if(answer, [](char c) { return c == '\n' || c == '\r'; });
        const std::string lineEnds[] = {"\n", "\r\n", ""};
        for (const auto& part : {answer, lineEnds[input.Byte() % (isLine ? 2 : 3)]}) {
            late += part;
            if (input.Byte() % 2 == 0) wire += std::exchange(late, {});
        }
    }

    fuzz::Input& input;
    std::string line, late, wire;  // not yet a command; not yet on its way; can be read
    std::string answer;            // to the query, without its line end
    bool open = false;
    bool patient = true;     // nothing can be read: time is over at once
    bool disturbed = false;  // something has gone wrong
    bool stopped = false;    // by the user
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    auto link = std::make_unique<Peer>(input);
    auto& peer = *link;
    host::InstrumentTransport transport("Conduit.clsFuzz", std::move(link), nullptr, {.Wait = [](auto) {}});
    bool afterBlock = false;
    for (int tag = 0; tag < 100 && (tag == 0 || !input.rest.empty()); ++tag) {
        enum Operation { Query, Block, Junk, Reconnect };
        const auto operation = transport.IsConnected() ? input.Byte() % 4 : int{Reconnect};
        const auto name = std::to_string(tag);
        peer.patient = !afterBlock;  // the line end of a block that may never come is really waited for
        peer.disturbed = peer.stopped = false;
        peer.answer = "-";
        transport.SetTimeout(afterBlock ? 0.0005F : 1000.0F);
        afterBlock = afterBlock || operation == Block;
        std::string answer;
        const auto raised = fuzz::Raised([&] {
            if (operation == Query) answer = transport.ReadString("Q " + name);
            if (operation == Block) {
                const auto front = transport.ReadBlock(1, "B " + name);
                const auto rest = transport.ReadBlock(static_cast<std::int16_t>(peer.answer.size() - 1), std::nullopt);
                if (!rest.empty()) answer = fuzz::Utf8(std::string(1, char(front[0])).append(rest.begin(), rest.end()));
            }
            if (operation == Junk && !afterBlock) peer.wire += input.Text();
            if (operation == Reconnect) transport.Connect(true);
        });
        const auto code = raised - platform::ObjectError(0);
        if (raised != 0) {
            assert(code >= platform::WriteFailed && code <= platform::NoConnection);
            assert(peer.disturbed || !peer.patient);
        } else if (operation <= Block) {
            assert(answer == (peer.stopped ? "" : fuzz::Utf8(peer.answer)));
        }
        if (raised == 0 && !peer.stopped && operation != Block && operation != Junk) afterBlock = false;
    }
    return 0;
}
