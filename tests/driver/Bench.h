#pragma once

#include <gmock/gmock.h>

#include <deque>
#include <functional>

#include "driver/clsTarn4x.h"
#include "host/Framework.h"
#include "host/SettingsTree.h"
#include "tests/support/DriverCalls.h"

namespace tarn4x::test {

using namespace tarn4x;  // for those who use this namespace
using platform::AutomationError;
using support::Text;
using testing::ElementsAre;
using testing::IsEmpty;

/// A node of the framework's settings tree. The driver always hands over True for both flags.
class Node : public host::SettingsNode {
  public:
    using host::SettingsNode::SettingsNode;
    platform::Value GetValue() override {
        if (Refuses) throw AutomationError(platform::ObjectError(platform::ReadFailed), "node", "refused");
        return host::SettingsNode::GetValue();
    }
    std::shared_ptr<platform::SettingsNode> AddSetting(std::string_view name, std::int32_t kind, std::int32_t style,
                                                       std::string_view list) override {
        AddNode(std::make_shared<Node>(name, kind, style, list), true, true);
        return Children().back();
    }
    void AddNode(const std::shared_ptr<platform::SettingsNode>& node, bool notify, bool store) override {
        EXPECT_TRUE(notify && store);
        host::SettingsNode::AddNode(node, notify, store);
    }
    void SetValue(bool notify, bool store, const platform::Value& value) override {
        EXPECT_TRUE(notify && store);
        host::SettingsNode::SetValue(notify, store, value);
    }
    bool Refuses = false;
};

/// The world around one driver: the stand-alone framework, whose delays take no time, and an instrument that follows a
/// dialogue. Its lines are "COMMAND", "QUERY? = ANSWER" and "QUERY? ! 2014 TEXT", a transfer that fails with that error
/// of the transport (numbers other than 2000 to 2099 stay plain).
class World : public host::Framework, public host::Application, public std::enable_shared_from_this<World> {
  public:
    host::Application& TheApplication() override { return *this; }
    host::MessageLog& TheMessageLog() override;
    std::shared_ptr<platform::SettingsNode> CreateNode() override { return std::make_shared<Node>(); }
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override;

    bool AbortRequested() override { return Abort || Sent >= AbortAfterSending; }
    void Delay(float seconds) override;
    void ResumeState() override;
    void Enter(std::string_view service);

    /// Adds lines, which stand between " | "; "11 x " in front of one repeats it.
    void Expect(std::string_view dialogue);
    /// Takes the next line; a drain of the error queue that the dialogue does not have finds the queue empty.
    std::string Take(std::string_view command);
    std::deque<std::string> Lines;  // the rest of the dialogue
    std::size_t Sent = 0, AbortAfterSending = SIZE_MAX;
    bool Abort = false, LinkLost = false;  // the second is told once
    std::function<void()> AtDelay;         // once
    std::string Failing, TransportName;    // the first is what raises an error: Log, Delay, Connect, a ProgID ...
    std::vector<std::string> BlockReads;   // "count command"
    std::vector<int> SerialPorts{1}, StatesAtClosing;
    std::vector<bool> ReportingDuringProbe;
    float Timeout = 0.0F;
    std::vector<float> Delays, TimeoutsSet;
    std::string Block;  // what ReadBlock hands out, piece by piece
    std::shared_ptr<platform::SettingsNode> LastSettings;
};

/// A driver that is on-line over TCP/IP; its dialogue starts behind going on-line. The bench fails on a command that
/// the dialogue does not have next, and on a line left over.
class Bench {
  public:
    explicit Bench(std::string_view dialogue = {}, bool onLine = true);
    /// With a driver that knows the measure mode, unless it is below 0.
    explicit Bench(int mode);
    ~Bench() { ExpectEnd(); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    clsTarn4x* operator->() { return &driver; }
    void Expect(std::string_view dialogue) { world->Expect(dialogue); }
    void ExpectEnd();
    /// Lets the driver know firmware 5.05 and options: bit 0 is TARN-B3, the impedance option.
    void LearnOptions(const std::string& mask);
    platform::SettingsNode& Setting(std::string_view path) { return *driver.get_IDriverSetup_Settings()->Item(path); }
    /// The entries of the log, with blanks between their fields.
    std::vector<std::string> Logged();
    void Set(std::string_view path, std::string value) { Setting(path).SetValue(true, true, std::move(value)); }

    std::shared_ptr<World> world = std::make_shared<World>();
    clsTarn4x driver{world};

  private:
    void Forget();
};

/// The exchange that tells that measure mode; none below 0.
std::string TellsMode(int mode);

constexpr auto Done = "";  // the outcome of a call without a result

/// An error as text: "number source: description" and its help file, where "+" in front of the number stands for
/// ObjectErrorBase, and a source of the driver is without its "clsTarn4x".
std::string Text(const AutomationError& error);

/// The regular errors of a member; Refused stands behind them when the transport says that the instrument refused.
inline std::string GetFailed(const std::string& member) { return "+2004 ." + member + ": Get " + member + " failed"; }
inline std::string OutOfRange(const std::string& member) {
    return "+380 ." + member + ": " + member + " value out of range";
}
const std::string Refused = ".  Error : 0,\"No error\"";

template <class Call>
std::string Outcome(Call&& call) {
    try {
        if constexpr (!std::is_void_v<decltype(call())>) return Text(call());
        call();
        return Done;
    } catch (const AutomationError& error) {
        return Text(error);
    }
}

#define EXPECT_OUTCOME(call, expected) EXPECT_EQ(Outcome([&] { return call; }), Text(expected))

/// A call of the bench's driver: the dialogue that it must lead, and its result or error.
#define CHECK(bench, dialogue, call, expected)                                           \
    do {                                                                                 \
        (bench).Expect(dialogue);                                                        \
        EXPECT_EQ(Outcome([&] { return (bench)->call; }), Text(expected)) << (dialogue); \
        (bench).ExpectEnd();                                                             \
    } while (false)

}  // namespace tarn4x::test
