// Whatever a transport hands out as the screen's block, only documented errors come back, and a well-formed block comes
// back byte by byte. The input: the block, and behind it 7 bytes that choose mode, link and failure.
#include <algorithm>
#include <charconv>

#include "driver/clsTarn4x.h"
#include "host/Framework.h"
#include "tests/fuzz/Fuzz.h"

namespace {

using namespace tarn4x;
using platform::AutomationError;
using Block = std::vector<std::uint8_t>;

constexpr std::size_t LongestBlock = 2 + 9 + 32767;
constexpr const char* Links[] = {"TCP/IP", "GPIB", "RS232", "GUI"};
constexpr float OnLineTimeout = 5.0F;

struct World : host::Framework {
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override;

    Block block;
    std::string captureAnswer;
    int readsBeforeFailure = 0, failures = 0;
    std::int32_t error = 0;  // 0: fewer bytes than asked for
    bool failed = false;
    float timeout = 0.0F;
};

struct Transport : platform::Transport {
    Transport(World& theWorld, std::shared_ptr<platform::SettingsNode> itsSettings)
        : world(theWorld), settings(std::move(itsSettings)) {}

    float Timeout() override { return world.timeout; }
    void SetTimeout(float seconds) override { world.timeout = seconds; }
    void SendReceive(std::string_view, std::string* response) override {
        if (response != nullptr) *response = world.captureAnswer;
    }
    void WriteString(std::string_view) override {}
    std::string ReadString(std::optional<std::string_view>) override { return R"(0,"No error")"; }
    Block ReadBlock(std::int16_t count, std::optional<std::string_view>) override {
        REQUIRE(count > 0);
        auto size = static_cast<std::size_t>(count);
        if (world.readsBeforeFailure-- <= 0 && world.failures-- > 0) {
            world.failed = true;
            if (world.error != 0) throw AutomationError(world.error, "Conduit", "failed");
            size /= 2;
        }
        if (size > world.block.size()) {
            throw AutomationError(platform::ObjectError(platform::ReceiveTimedOut), "Conduit", "Receive timed out");
        }
        const Block bytes(world.block.begin(), world.block.begin() + static_cast<std::ptrdiff_t>(size));
        world.block.erase(world.block.begin(), world.block.begin() + static_cast<std::ptrdiff_t>(size));
        return bytes;
    }
    void WriteBlock(std::int16_t, std::span<const std::uint8_t>, std::optional<std::string_view>) override {}
    void SetName(std::string_view) override {}
    std::shared_ptr<platform::SettingsNode> Settings() override { return settings; }
    void Connect(bool connect) override { connected = connect; }
    bool IsConnected() override { return connected; }

    World& world;
    std::shared_ptr<platform::SettingsNode> settings;
    bool connected = false;
};

std::shared_ptr<platform::Transport> World::CreateTransport(std::string_view progId) {
    return std::make_shared<Transport>(*this, host::Framework::CreateTransport(progId)->Settings());
}

/// The whole of a well-formed block at the front of the bytes; empty when there is none.
Block WellFormed(const Block& bytes) {
    if (bytes.size() < 3 || bytes[0] != '#' || bytes[1] < '1' || bytes[1] > '9') return {};
    const auto digits = fuzz::Text(bytes.data(), bytes.size()).substr(2, bytes[1] - std::size_t{'0'});
    std::size_t length = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), length).ptr;
    const auto whole = 2 + digits.size() + length;
    if (end != digits.data() + digits.size() || length == 0 || length > 32767 || whole > bytes.size()) return {};
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(whole)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto world = std::make_shared<World>();
    static clsTarn4x driver(world);
    const auto settings = driver.get_IDriverSetup_Settings();
    world->TheApplication().SetDelayScale(0.0);
    world->TheErrorService().SetErrorReporting(false);
    settings->Item("Log Messages")->SetValue(true, true, false);

    FuzzedDataProvider input(data, size);
    const auto link = input.ConsumeIntegral<std::uint8_t>() % 4;
    const auto mode = static_cast<TarnScreenShotModes>(input.ConsumeIntegral<std::uint8_t>() % 8);
    world->failures = input.ConsumeIntegral<std::uint8_t>();
    world->readsBeforeFailure = input.ConsumeIntegral<std::uint8_t>();
    world->error = input.PickValueInArray({platform::ObjectError(2010), platform::ObjectError(2013),
                                           platform::ObjectError(2014), platform::ObjectError(2015), 13, 40006, 0});
    world->captureAnswer = input.ConsumeBool() ? "0" : "1";
    world->TheApplication().SetAbortRequested(false);
    settings->Item("Remote Control")->SetValue(true, true, std::string(Links[link]));
    if (!driver.get_IDriverSetup_OnLine()) driver.put_IDriverSetup_OnLine(true);
    world->timeout = OnLineTimeout;
    world->TheApplication().SetAbortRequested(input.ConsumeBool());
    const auto sent = input.ConsumeRemainingBytes<std::uint8_t>();
    world->block = sent;
    world->failed = false;

    const bool transfers = (mode & tarnTransfer) != 0, header = (mode & tarnIncludeHeader) != 0;
    const Block poison{'p'};
    auto buffer = poison;
    bool done = false;
    const auto raised = fuzz::Raised([&] { done = driver.get_ScreenShot(mode, buffer); });
    REQUIRE(fuzz::IsOneOf(
        raised, {0, platform::ObjectError(xtarnQueryFailed), 40006, platform::ObjectError(xtarnBadRemoteControlPort)}));
    REQUIRE((raised == 0 || !done) && (raised != 40006 || world->error == 40006));
    REQUIRE(raised != platform::ObjectError(xtarnBadRemoteControlPort) || (transfers && link == 3));
    REQUIRE(buffer.size() <= LongestBlock);
    if (!done || !transfers) {
        REQUIRE(buffer == poison);
        return 0;
    }
    REQUIRE(link != 3 && world->timeout == OnLineTimeout);
    REQUIRE(!header || (buffer[0] == '#' && buffer.size() > 2U + buffer[1] - '0'));
    if (const auto whole = WellFormed(sent); !whole.empty() && !world->failed) {
        REQUIRE(buffer == Block(whole.begin() + (header ? 0 : 2 + whole[1] - '0'), whole.end()));
    }
    return 0;
}
