#include "tests/driver/Bench.h"

namespace tarn4x::test {

namespace {

/// The error "number text" of a transport, with help.
AutomationError Error(const std::string& told) {
    const int code = std::stoi(told);
    AutomationError error(code / 100 == 20 ? platform::ObjectError(code) : code, "Conduit", told);
    error.HelpFile = ", help.chm";
    return error;
}

/// A transport with the settings of the real one.
class FakeTransport : public platform::Transport {
  public:
    FakeTransport(std::shared_ptr<World> framework, std::string_view id)
        : world(std::move(framework)), progId(id), settings(world->Framework::CreateTransport(id)->Settings()) {
        for (const auto& setting : settings->Children()) {  // the driver brings what it needs
            setting->SetValueList("");
            setting->SetValue(true, true, std::string());
        }
    }

    float Timeout() override { return world->Timeout; }
    void SetTimeout(float seconds) override { world->TimeoutsSet.push_back(world->Timeout = seconds); }
    void SendReceive(std::string_view command, std::string* response) override {
        const auto came = world->Take(command);
        if (response != nullptr) *response = came;
    }
    void WriteString(std::string_view command) override { world->Take(command); }
    std::string ReadString(std::optional<std::string_view> command) override { return world->Take(command.value()); }
    std::vector<std::uint8_t> ReadBlock(std::int16_t count, std::optional<std::string_view> command) override {
        world->BlockReads.push_back(std::to_string(count) + (command ? ' ' + std::string(*command) : ""));
        const auto size = static_cast<std::size_t>(count);
        if (size > world->Block.size()) throw Error("2014 Receive timed out");
        const auto piece = world->Block.substr(0, size);
        world->Block.erase(0, size);
        return {piece.begin(), piece.end()};
    }
    void WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                    std::optional<std::string_view> command) override {
        world->Take("block " + std::to_string(count) + ' ' + std::string(data.begin(), data.end()) + ' ' +
                    std::string(command.value_or("none")));
    }
    void SetName(std::string_view name) override { world->TransportName = name; }
    std::shared_ptr<platform::SettingsNode> Settings() override { return settings; }
    void Connect(bool connect) override {
        connected = false;
        if (!connect) return world->StatesAtClosing.push_back(world->AppState());
        if (progId == "Conduit.clsComm") {
            world->ReportingDuringProbe.push_back(world->TheErrorService().ErrorReporting());
            const auto port = std::stoi(platform::ToText(settings->Item("Comm Port")->GetValue()));
            if (std::ranges::count(world->SerialPorts, port) == 0) throw Error("2015 refused");
        } else {
            world->Enter("Connect");
        }
        connected = true;
    }
    bool IsConnected() override { return connected && !std::exchange(world->LinkLost, false); }

  private:
    std::shared_ptr<World> world;
    std::string progId;
    std::shared_ptr<platform::SettingsNode> settings;
    bool connected = false;
};

}  // namespace

host::MessageLog& World::TheMessageLog() {
    Enter("Log");
    return Framework::TheMessageLog();
}

std::shared_ptr<platform::Transport> World::CreateTransport(std::string_view progId) {
    Enter(progId);
    auto transport = std::make_shared<FakeTransport>(shared_from_this(), progId);
    LastSettings = transport->Settings();
    return transport;
}

void World::Enter(std::string_view service) {
    if (service == Failing) throw AutomationError(5, "framework", Failing + " fails");
}

void World::Delay(float seconds) {
    Delays.push_back(seconds);
    Enter("Delay");
    if (const auto act = std::exchange(AtDelay, nullptr)) act();
}

void World::ResumeState() {
    Enter("ResumeState");
    Application::ResumeState();
}

void World::Expect(std::string_view dialogue) {
    for (auto line : Split(dialogue, " | ")) {
        const auto times = static_cast<std::size_t>(LeadingNumber(line));  // no line begins with a number
        if (times > 0) line.remove_prefix(line.find(" x ") + 3);
        Lines.insert(Lines.end(), std::max<std::size_t>(times, 1), std::string(line));
    }
}

std::string World::Take(std::string_view command) {
    const bool drains = command == "SYST:ERR?" && (Lines.empty() || !Lines.front().starts_with(command));
    if (drains) return R"(0,"No error")";
    ++Sent;
    if (Lines.empty()) Lines.emplace_back("nothing more");
    const auto line = std::move(Lines.front());
    Lines.pop_front();
    const auto answer = line.find(" = "), error = line.find(" ! "), end = std::min(answer, error);
    EXPECT_EQ(line.substr(0, end), command);
    if (error < answer) throw Error(line.substr(error + 3));
    return answer == line.npos ? "" : line.substr(answer + 3);
}

Bench::Bench(std::string_view dialogue, bool onLine) {
    if (onLine) {
        Set("Remote Control", "TCP/IP");
        CHECK(*this, "*CLS;*SRE 0;*ESE 0 | SYST:REM", put_IDriverSetup_OnLine(true), Done);
    }
    Forget();
    Expect(dialogue);
}

Bench::Bench(int mode) : Bench() {
    if (mode >= 0) CHECK(*this, TellsMode(mode), get_MeasureMode(), mode);
    Forget();
}

void Bench::LearnOptions(const std::string& mask) {
    Expect("READ:INFO:DATA? = " + mask +
           " | *IDN? = VANTERRA,TARN,100123,5.05 | SYSTEM:SERVICE:GET:BOARD:INFO? = 0x83");
    driver.get_InstalledHardware();
    Forget();
}

void Bench::ExpectEnd() {
    for (const auto& left : std::exchange(world->Lines, {})) ADD_FAILURE() << "never sent: " << left;
}

std::vector<std::string> Bench::Logged() {
    auto& log = world->TheMessageLog();
    std::vector<std::string> entries;
    for (int i = 1; i <= log.Count(); ++i) std::ranges::replace(entries.emplace_back(log.Entry(i)), '\t', ' ');
    return entries;
}

void Bench::Forget() {
    world->Sent = 0;
    world->TimeoutsSet.clear();
    world->Delays.clear();
    world->StatesAtClosing.clear();
    world->TheMessageLog().Clear();
}

std::string TellsMode(int mode) {
    constexpr const char* words[] = {"NORM", "CDI",  "MDB",  "MPCT", "INT",  "IQ",   "APH",  "AGD",  "POL", "SP_1",
                                     "SP_2", "SP_3", "ADIS", "CCDF", "IR_1", "IR_2", "IR_3", "HIST", "PAR", "CENV"};
    return mode < 0 ? "" : std::string("SENS:DVBT:MEAS? = ") + words[mode];
}

std::string Text(const AutomationError& error) {
    const bool own = error.Number < 0;
    const auto number = static_cast<std::uint32_t>(error.Number) - (own ? platform::ObjectErrorBase : 0U);
    const auto source = error.Source.starts_with("clsTarn4x.") ? error.Source.substr(9) : error.Source;
    return (own ? "+" : "") + std::to_string(number) + ' ' + source + ": " + error.Description + error.HelpFile;
}

}  // namespace tarn4x::test
