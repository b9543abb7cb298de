#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/clsTarn4x.h"
#include "platform/Framework.h"

namespace tarn4x::test {

using platform::AutomationError;
using platform::ObjectError;

/// One exchange of a transcript: what the driver must send, and what the instrument answers. An answer of nullopt
/// belongs to a command; an error is raised instead of the answer.
struct Exchange {
    Exchange(std::string sent) : Sent(std::move(sent)) {}  // NOLINT: transcripts read better
    Exchange(const char* sent) : Sent(sent) {}             // NOLINT
    Exchange(std::string sent, std::string answer) : Sent(std::move(sent)), Answer(std::move(answer)) {}
    Exchange(std::string sent, AutomationError error) : Sent(std::move(sent)), Error(std::move(error)) {}

    std::string Sent;
    std::optional<std::string> Answer;
    std::optional<AutomationError> Error;
};

inline AutomationError TransportFailure(std::int32_t code, std::string description = "failed") {
    return {ObjectError(code), "Conduit", std::move(description)};
}

/// A plain settings tree: what the driver needs of it and no more.
class FakeNode : public platform::SettingsNode {
  public:
    explicit FakeNode(std::string name = {}) : name(std::move(name)) {}

    void AddGroup(std::string_view child, std::int32_t kind, std::int32_t style) override {
        AddSetting(child, kind, style, "");
    }
    std::shared_ptr<SettingsNode> AddSetting(std::string_view child, std::int32_t kind, std::int32_t style,
                                             std::string_view valueList) override {
        auto node = std::make_shared<FakeNode>(std::string(child));
        node->Kind = kind;
        node->Style = style;
        node->list = valueList;
        children.push_back(node);
        return node;
    }
    void AddNode(const std::shared_ptr<SettingsNode>& node, bool notify, bool store) override {
        EXPECT_TRUE(notify && store);
        children.push_back(std::static_pointer_cast<FakeNode>(node));
    }
    std::shared_ptr<SettingsNode> Item(std::string_view path) override {
        const auto dot = path.find('.');
        for (const auto& child : children) {
            if (child->name != path.substr(0, dot)) continue;
            return dot == std::string_view::npos ? child : child->Item(path.substr(dot + 1));
        }
        throw AutomationError(platform::SubscriptOutOfRange, "FakeNode", "no " + std::string(path));
    }
    std::vector<std::shared_ptr<SettingsNode>> Children() override { return {children.begin(), children.end()}; }
    std::string Name() override { return name; }
    platform::Value GetValue() override { return value; }
    void SetValue(bool notify, bool store, const platform::Value& to) override {
        EXPECT_TRUE(notify && store);
        value = to;
        // What the real tree does with a display text.
        for (const auto entry : Split(list)) {
            const auto equals = entry.find('=');
            if (platform::ToText(to) == Trim(entry.substr(0, equals))) value = std::string(entry.substr(equals + 1));
        }
    }
    std::string ValueList() override { return list; }
    void SetValueList(std::string_view to) override { list = to; }
    void SetFixed(bool to) override { Fixed = to; }

    std::int32_t Kind = 0;
    std::int32_t Style = 0;
    bool Fixed = false;

  private:
    std::string name;
    std::string list;
    platform::Value value;
    std::vector<std::shared_ptr<FakeNode>> children;
};

/// The world around one driver: framework, settings and an instrument that follows a transcript.
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
        for (char& c : point) c = c == ',' ? '.' : c;
        return StrictNumber(point);
    }

    bool AbortRequested() override { return Abort || (AbortAfterSending && Sent.size() >= *AbortAfterSending); }
    void Delay(float seconds) override { Delays.push_back(seconds); }
    std::int32_t AppState() override { return State; }
    void SuspendState() override { States += "suspend "; }
    void ResumeState() override { States += "resume "; }

    void Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) override {
        if (LogFails) throw AutomationError(5, "log", "log fails");
        Logged.push_back(std::to_string(kind) + ' ' + std::string(source) + ' ' + std::string(text) + '|' +
                         std::string(data));
    }

    void RaiseDriverError(const AutomationError& error) override {
        ++Raised;
        throw error;
    }
    bool ErrorReporting() override { return Reporting; }
    void SetErrorReporting(bool reporting) override { Reporting = reporting; }

    /// Takes the next exchange of the transcript; drains of the error queue answer by themselves unless scripted.
    std::string Take(std::string_view command);

    std::deque<Exchange> Transcript;
    std::vector<std::string> Sent;  // without the drains
    bool ScriptedErrorQueue = false;
    int Drains = 0;

    bool Abort = false;
    std::optional<std::size_t> AbortAfterSending;
    std::vector<float> Delays;
    std::int32_t State = 0;
    std::string States;
    std::vector<std::string> Logged;
    bool LogFails = false;
    bool Reporting = true;
    int Raised = 0;

    std::vector<int> SerialPorts{1};
    std::vector<bool> ReportingDuringProbe;
    bool ConnectFails = false;
    std::string MissingProgId;
    float Timeout = 0.0F;
    std::vector<float> TimeoutsSet;
    std::vector<bool> Connects;
    std::string TransportName;
    std::vector<std::uint8_t> Block;      // what ReadBlock hands out, piece by piece
    std::vector<std::string> BlockReads;  // "count command"
    std::shared_ptr<platform::SettingsNode> LastSettings;
};

class FakeTransport : public platform::Transport {
  public:
    FakeTransport(std::shared_ptr<FakeFramework> world, std::string_view progId);

    float Timeout() override { return world->Timeout; }
    void SetTimeout(float seconds) override {
        world->Timeout = seconds;
        world->TimeoutsSet.push_back(seconds);
    }
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
    std::shared_ptr<FakeNode> settings;
    bool connected = false;
};

/// A driver that is on-line over TCP/IP; the transcript starts behind going on-line. The bench fails on a command that
/// the transcript does not have next, and on a line left over.
class Bench {
  public:
    explicit Bench(std::vector<Exchange> transcript = {}, bool onLine = true);
    ~Bench() {
        for (const auto& left : world->Transcript) ADD_FAILURE() << "never sent: " << left.Sent;
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    void Expect(std::vector<Exchange> transcript) {
        for (auto& exchange : transcript) world->Transcript.push_back(std::move(exchange));
    }
    /// Lets the driver know the measure mode without an exchange.
    void KnowMode(TarnMeasureModes mode);

    std::shared_ptr<FakeFramework> world = std::make_shared<FakeFramework>();
    std::optional<clsTarn4x> storage;
    clsTarn4x& driver;

  private:
    clsTarn4x& Create();
};

/// What a statement raises, or a description of its absence.
template <class Statement>
AutomationError Raised(Statement&& statement) {
    try {
        statement();
    } catch (const AutomationError& error) {
        return error;
    }
    return {0, "nothing", "was raised"};
}

#define EXPECT_RAISES(statement, number, source, description)                                        \
    do {                                                                                             \
        const auto raisedError = ::tarn4x::test::Raised([&] { static_cast<void>(statement); });      \
        EXPECT_EQ(raisedError.Number, static_cast<std::int32_t>(number)) << raisedError.Description; \
        EXPECT_EQ(raisedError.Source, source);                                                       \
        EXPECT_EQ(raisedError.Description, description);                                             \
    } while (false)

}  // namespace tarn4x::test
