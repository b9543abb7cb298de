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

#include "host/VisaRuntime.h"
#ifdef _WIN32
#include "host/SocketsWindows.h"
#define EXPORT extern "C" __declspec(dllexport)
#else
#include <arpa/inet.h>

#include "host/SocketsPosix.h"
#define EXPORT extern "C"
#endif

namespace {

using namespace host::visa;
namespace sockets = host::sockets;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::string_view End = "<END>";
constexpr Status InputOutputError = Error(0x3E);

struct Instrument {
    Object Manager = 0;
    std::string Resource = {};
    milliseconds Timeout{2000};
    std::optional<sockets::Handle> Socket = {};
    std::string Received = {};
    bool Asked = false;  ///< a query (not "SET...") came, and no END since

    Instrument(Object manager, std::string resource) : Manager(manager), Resource(std::move(resource)) {}
    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;
    ~Instrument() { Disconnect(); }

    void Disconnect() {
        if (Socket) sockets::Close(*Socket);
        Socket.reset();
        Received.clear();
    }

    /// 0 when there is no such instrument.
    std::uint16_t Port() const {
        const char* peers = std::getenv("VISA_PEERS");
        const auto list = ' ' + std::string(peers ? peers : "");
        const auto found = list.find(' ' + Resource + '=');
        return found == std::string::npos
                   ? std::uint16_t{0}
                   : static_cast<std::uint16_t>(std::atoi(list.c_str() + found + Resource.size() + 2));
    }

    Status Connect() {
        Disconnect();
        const auto socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(Port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            sockets::Close(socket);
            return NoListeners;
        }
        sockets::MakeNonBlocking(socket);
        const int on = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
        Socket = socket;
        return EndReceived;
    }

    /// Takes in what has arrived within the time.
    void Receive(milliseconds time) {
        if (!Socket || !sockets::WaitReadable(*Socket, time)) return;
        char bytes[65536];
        const auto count = recv(*Socket, bytes, sizeof bytes, 0);
        if (count > 0) Received.append(bytes, static_cast<std::size_t>(count));
        if (count == 0 || (count < 0 && !sockets::WouldBlock(sockets::LastError()))) {
            sockets::Close(*Socket);  // switched off
            Socket.reset();
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
    sockets::Start();
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
    for (const auto end = Clock::now() + instrument->Timeout;;) {
        instrument->Receive({});
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
        const auto rest = Rest(end);
        if (rest.count() == 0) return TimedOut;
        if (instrument->Socket) {
            sockets::WaitReadable(*instrument->Socket, rest);
        } else {
            std::this_thread::sleep_for(rest);
        }
    }
}

EXPORT Status VISA_CALL viWrite(Object object, const std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count) {
    *count = 0;
    auto* instrument = Find(object);
    if (!instrument) return NoSuchObject;
    instrument->Receive({});
    if (!instrument->Socket && instrument->Connect() != EndReceived) return NoListeners;
    instrument->Asked = !std::string_view(reinterpret_cast<const char*>(bytes), size).starts_with("SET");
    for (const auto end = Clock::now() + instrument->Timeout; *count < size;) {
        if (!sockets::WaitWritable(*instrument->Socket, Rest(end))) return TimedOut;
        const auto sent = send(*instrument->Socket, reinterpret_cast<const char*>(bytes + *count),
                               static_cast<sockets::Length>(size - *count), sockets::SendFlags);
        if (sent < 0 && !sockets::WouldBlock(sockets::LastError())) return InputOutputError;
        if (sent > 0) *count += static_cast<std::uint32_t>(sent);
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
