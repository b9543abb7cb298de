#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "driver/clsTarn4x.h"
#include "platform/Framework.h"

namespace tarn4x::test {

using namespace tarn4x;  // for those who use this namespace
using platform::AutomationError;
using testing::ElementsAre;
using testing::IsEmpty;

/// One exchange of a dialogue: what the driver must send, and what the instrument answers or the transport raises.
struct Exchange {
    std::string Sent;
    std::string Answer;
    std::optional<AutomationError> Error;
};

/// The exchanges of a dialogue, separated by " | ": "COMMAND" is a command, "QUERY? = ANSWER" a query and its answer,
/// "QUERY? ! 2014 TEXT" a transfer that fails with that error of the transport (a number below 1000 stays plain), and
/// "11 x " in front repeats an exchange.
std::vector<Exchange> Dialogue(std::string_view text);

/// The entries "number=word" of a list, separated by " | ".
std::vector<std::pair<int, std::string>> Words(std::string_view list);

/// A plain settings tree: what the driver needs of it and no more.
class FakeNode : public platform::SettingsNode {
  public:
    explicit FakeNode(std::string_view name = {}, std::int32_t kind = 0, std::int32_t style = 0,
                      std::string_view valueList = {})
        : Kind(kind), Style(style), name(name), list(valueList) {}

    void AddGroup(std::string_view child, std::int32_t kind, std::int32_t style) override {
        AddSetting(child, kind, style, "");
    }
    std::shared_ptr<SettingsNode> AddSetting(std::string_view child, std::int32_t kind, std::int32_t style,
                                             std::string_view valueList) override {
        return children.emplace_back(std::make_shared<FakeNode>(child, kind, style, valueList));
    }
    void AddNode(const std::shared_ptr<SettingsNode>& node, bool notify, bool store) override {
        EXPECT_TRUE(notify && store);
        children.push_back(node);
    }
    std::shared_ptr<SettingsNode> Item(std::string_view path) override;
    std::vector<std::shared_ptr<SettingsNode>> Children() override { return children; }
    std::string Name() override { return name; }
    platform::Value GetValue() override { return value; }
    void SetValue(bool notify, bool store, const platform::Value& to) override;
    std::string ValueList() override { return list; }
    void SetValueList(std::string_view to) override { list = to; }
    void SetFixed(bool to) override { Fixed = to; }

    std::int32_t Kind, Style;
    bool Fixed = false;

  private:
    std::string name, list;
    platform::Value value;
    std::vector<std::shared_ptr<SettingsNode>> children;
};

/// The world around one driver: framework, settings and an instrument that follows a dialogue.
class FakeFramework : public platform::Framework,
                      public platform::Application,
                      public platform::MessageLog,
                      public platform::ErrorService,
                      public std::enable_shared_from_this<FakeFramework> {
  public:
    platform::Application& TheApplication() override { return *this; }
    platform::MessageLog& TheMessageLog() override { return *this; }
    platform::ErrorService& TheErrorService() override { return *this; }
    std::shared_ptr<platform::SettingsNode> CreateNode() override { return std::make_shared<FakeNode>(); }
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override;
    std::optional<double> NumberFromText(std::string_view text) override {  // a region with a decimal comma
        std::string point(text);
        std::ranges::replace(point, ',', '.');
        return StrictNumber(point);
    }

    bool AbortRequested() override { return Abort || Sent >= AbortAfterSending; }
    void Delay(float seconds) override { Delays.push_back(seconds); }
    std::int32_t AppState() override { return State; }
    void SuspendState() override { States += "suspend "; }
    void ResumeState() override { States += "resume "; }

    void Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) override {
        if (LogFails) throw AutomationError(5, "log", "log fails");
        Logged.push_back(
            std::to_string(kind).append(" ").append(source).append(" ").append(text).append("|").append(data));
    }

    void RaiseDriverError(const AutomationError& error) override {
        ++Raised;
        throw error;
    }
    bool ErrorReporting() override { return Reporting; }
    void SetErrorReporting(bool reporting) override { Reporting = reporting; }

    /// Takes the next exchange; a drain of the error queue that the dialogue does not have finds the queue empty.
    std::string Take(std::string_view command);

    std::vector<Exchange> Dialogue;  // the rest of it
    std::size_t Sent = 0, AbortAfterSending = SIZE_MAX;
    int Drains = 0, Raised = 0;
    bool Abort = false, LogFails = false, Reporting = true, ConnectFails = false;
    std::int32_t State = 0;
    std::string States, MissingProgId, TransportName;
    std::vector<std::string> Logged, BlockReads;  // "count command"
    std::vector<int> SerialPorts{1};
    std::vector<bool> ReportingDuringProbe, Connects;
    float Timeout = 0.0F;
    std::vector<float> Delays, TimeoutsSet;
    std::string Block;  // what ReadBlock hands out, piece by piece
    std::shared_ptr<platform::SettingsNode> LastSettings;
};

class FakeTransport : public platform::Transport {
  public:
    FakeTransport(std::shared_ptr<FakeFramework> world, std::string_view progId);

    float Timeout() override { return world->Timeout; }
    void SetTimeout(float seconds) override { world->TimeoutsSet.push_back(world->Timeout = seconds); }
    void SendReceive(std::string_view command, std::string* response) override {
        const auto came = world->Take(command);
        if (response != nullptr) *response = came;
    }
    void WriteString(std::string_view command) override { world->Take(command); }
    std::string ReadString(std::optional<std::string_view> command) override { return world->Take(command.value()); }
    std::vector<std::uint8_t> ReadBlock(std::int16_t count, std::optional<std::string_view> command) override;
    void WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                    std::optional<std::string_view> command) override {
        world->Take("block " + std::to_string(count) + ' ' + std::string(data.begin(), data.end()) + ' ' +
                    std::string(command.value_or("none")));
    }
    void SetName(std::string_view name) override { world->TransportName = name; }
    std::shared_ptr<platform::SettingsNode> Settings() override { return settings; }
    void Connect(bool connect) override;
    bool IsConnected() override { return connected; }

  private:
    std::shared_ptr<FakeFramework> world;
    std::string progId;
    std::shared_ptr<platform::SettingsNode> settings;
    bool connected = false;
};

/// A driver that is on-line over TCP/IP; its dialogue starts behind going on-line. The bench fails on a command that
/// the dialogue does not have next, and on an exchange left over.
class Bench {
  public:
    explicit Bench(std::string_view dialogue = {}, bool onLine = true);
    /// With a driver that knows the measure mode.
    explicit Bench(TarnMeasureModes mode, std::string_view dialogue = {});
    ~Bench() { ExpectEnd(); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    clsTarn4x* operator->() { return &driver; }
    void Expect(std::string_view dialogue);
    void ExpectEnd();
    platform::SettingsNode& Setting(std::string_view path) { return *driver.get_IDriverSetup_Settings()->Item(path); }
    void Set(std::string_view path, std::string value) { Setting(path).SetValue(true, true, std::move(value)); }

    std::shared_ptr<FakeFramework> world = std::make_shared<FakeFramework>();
    clsTarn4x driver{world};
};

constexpr auto Done = "";  // the outcome of a call without a result

/// A result as text. Of an error: "number source: description", where "+" in front of the number stands for
/// ObjectErrorBase, and a source of the driver is without its "clsTarn4x".
template <class Result>
std::string Text(const Result& result) {
    if constexpr (std::is_convertible_v<Result, std::string_view>) {
        return std::string(std::string_view(result));
    } else {
        return platform::GeneralNumber(static_cast<double>(result));
    }
}
std::string Text(const AutomationError& error);

/// The regular errors of a member; Refused stands behind them when the transport says that the instrument refused.
inline std::string GetFailed(const std::string& member) { return "+2004 ." + member + ": Get " + member + " failed"; }
inline std::string LetFailed(const std::string& member) { return "+2005 ." + member + ": Let " + member + " failed"; }
inline std::string OutOfRange(const std::string& member) {
    return "+380 ." + member + ": " + member + " value out of range";
}
inline std::string WrongMode(const std::string& member) {
    return "+2016 ." + member + ": Wrong measurement mode selected";
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

/// A property with words on the wire, for tables.
struct Property {
    const char* Name;
    int (*Get)(clsTarn4x&);
    void (*Put)(clsTarn4x&, int);
};
// clang-format off
#define PROPERTY(name) Property{#name, [](clsTarn4x& d) { return static_cast<int>(d.get_##name()); }, \
    [](clsTarn4x& d, int value) { d.put_##name(static_cast<decltype(d.get_##name())>(value)); }}
// clang-format on

}  // namespace tarn4x::test
