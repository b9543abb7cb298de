// A VISA runtime for tests: forwards each instrument to a peer on a TCP port of 127.0.0.1, which its address tells. An
// answer ends with an LF behind which nothing is there yet, or with "<END>", which stands for END without a byte of its
// own. A device clear connects anew.
#include <algorithm>
#include <cstdio>
#include <map>
#include <thread>

#include "host/SettingsTree.h"
#include "host/TcpLink.h"
#include "host/VisaRuntime.h"
#ifdef _WIN32
#define EXPORT extern "C" __declspec(dllexport)
#else
#define EXPORT extern "C"
#endif

namespace {

using namespace host::visa;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::string_view End = "<END>";
constexpr Status InputOutputError = Error(0x3E);

struct Instrument {
    std::string Received = {};
    milliseconds Timeout{2000};
    bool Asked = false;  ///< a query (not "SET...") came, and no END since
    std::shared_ptr<host::SettingsNode> Settings = std::make_shared<host::SettingsNode>();
    host::TcpLink Link{Settings};

    Status Connect() try {
        Link.Close();
        Received.clear();
        const host::TransportServices none;
        host::Patience patience(1.0, none);
        Link.Open(patience);
        return EndReceived;
    } catch (const host::OpeningFailure&) {
        return NoListeners;
    }

    /// Takes in what arrives until then.
    void Receive(Clock::time_point end) try {
        const auto time = std::max(std::chrono::ceil<milliseconds>(end - Clock::now()), milliseconds(0));
        if (!Link.IsOpen()) return std::this_thread::sleep_for(time);
        std::uint8_t bytes[65536];
        Received.append(bytes, bytes + Link.Read(bytes, time));
    } catch (const host::LinkFailure&) {
        Link.Close();  // switched off
    }
};

std::map<Object, Instrument> instruments;  // managers, too; tests use them on one thread

}  // namespace

EXPORT Status VISA_CALL viOpenDefaultRM(Object* object) {
    *object = instruments.empty() ? 1 : instruments.rbegin()->first + 1;
    instruments[*object].Settings->AddSetting("Port", 1, 4, "");
    return EndReceived;
}

EXPORT Status VISA_CALL viOpen(Object, const char* resource, std::uint32_t, std::uint32_t, Object* object) {
    int board = 0, primary = 0, secondary = 0;
    if (std::sscanf(resource, "GPIB%d::%d::%d", &board, &primary, &secondary) < 2) return NoSuchResource;
    viOpenDefaultRM(object);
    instruments[*object].Settings->Item("Port")->SetValue(true, true, (board * 31 + primary) * 31 + secondary);
    return EndReceived;
}

EXPORT Status VISA_CALL viClose(Object object) { return instruments.erase(object) == 1 ? EndReceived : NoSuchObject; }

EXPORT Status VISA_CALL viSetAttribute(Object object, Attribute, AttributeState state) {
    instruments.at(object).Timeout = milliseconds(static_cast<std::int64_t>(state));
    return EndReceived;
}

EXPORT Status VISA_CALL viRead(Object object, std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count) {
    *count = 0;
    auto& instrument = instruments.at(object);
    // Nobody may make an instrument talk just to see whether it has something to say.
    if (!instrument.Asked && instrument.Timeout <= milliseconds(1)) return InputOutputError;
    auto& received = instrument.Received;
    const auto end = Clock::now() + instrument.Timeout;
    for (instrument.Receive({});; instrument.Receive(end)) {
        const auto ready = std::min<std::size_t>(std::min(received.find(End), received.size()), size - *count);
        std::copy_n(received.begin(), ready, bytes + *count);
        *count += static_cast<std::uint32_t>(ready);
        received.erase(0, ready);
        const bool ended = received.starts_with(End);
        if (ended) received.erase(0, End.size());
        if (ended || (received.empty() && ready > 0 && bytes[*count - 1] == '\n')) {
            instrument.Asked = false;
            return EndReceived;
        }
        if (*count == size) return CountReached;
        if (Clock::now() >= end) return TimedOut;
    }
}

EXPORT Status VISA_CALL viWrite(Object object, const std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count) {
    *count = 0;
    auto& instrument = instruments.at(object);
    instrument.Receive({});
    if (!instrument.Link.IsOpen() && instrument.Connect() != EndReceived) return NoListeners;
    instrument.Asked = !std::string_view(reinterpret_cast<const char*>(bytes), size).starts_with("SET");
    try {
        *count = static_cast<std::uint32_t>(instrument.Link.Write({bytes, size}, instrument.Timeout));
    } catch (const host::LinkFailure&) {
        return InputOutputError;
    }
    return *count == size ? EndReceived : TimedOut;
}

EXPORT Status VISA_CALL viClear(Object object) { return instruments.at(object).Connect(); }

EXPORT Status VISA_CALL viStatusDesc(Object, Status status, char* description) {
    const std::string_view text = status == NoListeners ? "No listeners" : "A failure";
    description[text.copy(description, DescriptionSize - 1)] = '\0';
    return EndReceived;
}
