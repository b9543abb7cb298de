// A VISA runtime for tests: forwards each instrument to a peer on a TCP port of 127.0.0.1. The environment variable
// VISA_PEERS names them: "GPIB0::6::INSTR=43211 GPIB0::7::1::INSTR=43212". An answer ends with an LF behind which
// nothing is there yet, or with "<END>", which stands for END without a byte of its own. A device clear connects anew.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <string>
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
    Object Manager = 0;
    std::string Resource = {};
    milliseconds Timeout{2000};
    std::string Received = {};
    bool Asked = false;  ///< a query (not "SET...") came, and no END since
    std::shared_ptr<host::SettingsNode> Settings = std::make_shared<host::SettingsNode>();
    host::TcpLink Link{Settings};

    Instrument(Object manager, std::string resource) : Manager(manager), Resource(std::move(resource)) {
        Settings->AddSetting("Port", 1, 4, "");
    }

    /// 0 when there is no such instrument.
    int Port() const {
        const char* peers = std::getenv("VISA_PEERS");
        const auto list = ' ' + std::string(peers ? peers : "");
        const auto found = list.find(' ' + Resource + '=');
        return found == std::string::npos ? 0 : std::atoi(list.c_str() + found + Resource.size() + 2);
    }

    Status Connect() {
        Link.Close();
        Received.clear();
        Settings->Item("Port")->SetValue(true, true, Port());
        const host::TransportServices none;
        host::Patience patience(1.0, none);
        try {
            Link.Open(patience);
        } catch (const host::OpeningFailure&) {
            return NoListeners;
        }
        return EndReceived;
    }

    /// Takes in what arrives within the time.
    void Receive(milliseconds time) {
        if (!Link.IsOpen()) return std::this_thread::sleep_for(time);
        std::uint8_t bytes[65536];
        try {
            Received.append(bytes, bytes + Link.Read(bytes, time));
        } catch (const host::LinkFailure&) {
            Link.Close();  // switched off
        }
    }
};

std::mutex mutex;
std::map<Object, std::optional<Instrument>> objects;  // managers hold no instrument

Object Insert() {
    const Object object = objects.empty() ? 1 : objects.rbegin()->first + 1;
    objects[object];
    return object;
}

Instrument* Find(Object object) {
    const std::lock_guard lock(mutex);
    const auto found = objects.find(object);
    return found == objects.end() || !found->second ? nullptr : &*found->second;
}

milliseconds Rest(Clock::time_point end) {
    return std::max(std::chrono::ceil<milliseconds>(end - Clock::now()), milliseconds(0));
}

}  // namespace

EXPORT Status VISA_CALL viOpenDefaultRM(Object* manager) {
    const std::lock_guard lock(mutex);
    *manager = Insert();
    return EndReceived;
}

EXPORT Status VISA_CALL viOpen(Object manager, const char* resource, std::uint32_t, std::uint32_t, Object* object) {
    const std::lock_guard lock(mutex);
    if (!objects.contains(manager)) return NoSuchObject;
    if (!std::string_view(resource).starts_with("GPIB")) return NoSuchResource;
    *object = Insert();
    objects[*object].emplace(manager, resource);
    return EndReceived;
}

EXPORT Status VISA_CALL viClose(Object object) {
    const std::lock_guard lock(mutex);
    if (objects.erase(object) == 0) return NoSuchObject;
    std::erase_if(objects, [&](const auto& other) { return other.second && other.second->Manager == object; });
    return EndReceived;
}

EXPORT Status VISA_CALL viSetAttribute(Object object, Attribute attribute, AttributeState state) {
    auto* instrument = Find(object);
    if (!instrument || attribute != TimeoutAttribute) return NoSuchObject;
    instrument->Timeout = milliseconds(static_cast<std::int64_t>(state));
    return EndReceived;
}

EXPORT Status VISA_CALL viRead(Object object, std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count) {
    *count = 0;
    auto* instrument = Find(object);
    if (!instrument) return NoSuchObject;
    // Nobody may make an instrument talk just to see whether it has something to say.
    if (!instrument->Asked && instrument->Timeout <= milliseconds(1)) return InputOutputError;
    auto& received = instrument->Received;
    const auto ended = [&] {
        instrument->Asked = false;
        return EndReceived;
    };
    const auto end = Clock::now() + instrument->Timeout;
    for (instrument->Receive({});; instrument->Receive(Rest(end))) {
        const auto mark = received.find(End);
        const auto ready = std::min<std::size_t>(std::min(mark, received.size()), size - *count);
        std::copy_n(received.begin(), ready, bytes + *count);
        *count += static_cast<std::uint32_t>(ready);
        received.erase(0, ready);
        if (received.starts_with(End)) {
            received.erase(0, End.size());
            return ended();
        }
        if (received.empty() && ready > 0 && bytes[*count - 1] == '\n') return ended();
        if (*count == size) return CountReached;
        if (Rest(end).count() == 0) return TimedOut;
    }
}

EXPORT Status VISA_CALL viWrite(Object object, const std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count) {
    *count = 0;
    auto* instrument = Find(object);
    if (!instrument) return NoSuchObject;
    instrument->Receive({});
    if (!instrument->Link.IsOpen() && instrument->Connect() != EndReceived) return NoListeners;
    instrument->Asked = !std::string_view(reinterpret_cast<const char*>(bytes), size).starts_with("SET");
    try {
        for (const auto end = Clock::now() + instrument->Timeout; *count < size;) {
            const auto sent = instrument->Link.Write({bytes + *count, size - *count}, Rest(end));
            if (sent == 0) return TimedOut;
            *count += static_cast<std::uint32_t>(sent);
        }
    } catch (const host::LinkFailure&) {
        return InputOutputError;
    }
    return EndReceived;
}

EXPORT Status VISA_CALL viClear(Object object) {
    auto* instrument = Find(object);
    return instrument ? instrument->Connect() : NoSuchObject;
}

EXPORT Status VISA_CALL viStatusDesc(Object, Status status, char* description) {
    std::string_view text = "A failure";
    if (status == NoListeners) text = "No listeners";
    if (status == NoSuchResource) text = "No such resource";
    description[text.copy(description, DescriptionSize - 1)] = '\0';
    return EndReceived;
}
