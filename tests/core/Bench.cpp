#include "tests/core/Bench.h"

namespace tarn4x::test {

namespace {

std::string_view SubtreeName(std::string_view progId) {
    if (progId == "Conduit.clsGPIB") return "GPIB";
    if (progId == "Conduit.clsComm") return "RS232";
    if (progId == "Conduit.clsEthernet") return "TCP/IP";
    return "GUI";
}

}  // namespace

std::shared_ptr<platform::Transport> FakeFramework::CreateTransport(std::string_view progId) {
    if (progId == MissingProgId) throw AutomationError(429, "COM", "ActiveX component can't create object");
    auto transport = std::make_shared<FakeTransport>(shared_from_this(), progId);
    LastSettings = transport->Settings();
    return transport;
}

std::string FakeFramework::Take(std::string_view command) {
    if (command == "SYST:ERR?" && !ScriptedErrorQueue) {
        ++Drains;
        return R"(0,"No error")";
    }
    Sent.emplace_back(command);
    if (Transcript.empty()) {
        ADD_FAILURE() << "unexpected: " << command;
        return {};
    }
    const auto next = Transcript.front();
    Transcript.pop_front();
    EXPECT_EQ(next.Sent, command);
    if (next.Error) throw *next.Error;
    return next.Answer.value_or("");
}

FakeTransport::FakeTransport(std::shared_ptr<FakeFramework> framework, std::string_view id)
    : world(std::move(framework)), progId(id), settings(std::make_shared<FakeNode>(std::string(SubtreeName(id)))) {
    const auto add = [&](std::initializer_list<std::string_view> names) {
        for (const auto name : names) settings->AddSetting(name, 1, 4, "");
    };
    if (progId == "Conduit.clsGPIB") add({"Board", "Primary Address"});
    if (progId == "Conduit.clsComm") {
        add({"Comm Port", "Baud Rate", "Data Bits", "Parity", "Stop Bits", "Handshaking"});
    }
    if (progId == "Conduit.clsEthernet") add({"Host", "Port"});
    if (progId == "Conduit.clsGUI") add({"Port"});
}

std::vector<std::uint8_t> FakeTransport::ReadBlock(std::int16_t count, std::optional<std::string_view> command) {
    world->BlockReads.push_back(std::to_string(count) + (command ? ' ' + std::string(*command) : ""));
    if (static_cast<std::size_t>(count) > world->Block.size()) throw TransportFailure(2014, "Receive timed out");
    std::vector<std::uint8_t> piece(world->Block.begin(), world->Block.begin() + count);
    world->Block.erase(world->Block.begin(), world->Block.begin() + count);
    return piece;
}

void FakeTransport::Connect(bool connect) {
    if (progId == "Conduit.clsComm" && connect) {
        world->ReportingDuringProbe.push_back(world->Reporting);
        const auto value = settings->Item("Comm Port")->GetValue();
        const auto text = platform::ToText(value);
        int number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        connected = std::ranges::find(world->SerialPorts, number) != world->SerialPorts.end();
        if (!connected) throw TransportFailure(2015, "no such port");
        return;
    }
    if (progId != "Conduit.clsComm") world->Connects.push_back(connect);
    if (connect && world->ConnectFails) throw TransportFailure(2015, "refused");
    connected = connect;
}

Bench::Bench(std::vector<Exchange> transcript, bool onLine) : driver(Create()) {
    if (onLine) {
        driver.get_IDriverSetup_Settings()->Item("Remote Control")->SetValue(true, true, std::string("TCP/IP"));
        Expect({"*CLS;*SRE 0;*ESE 0", "SYST:REM"});
        driver.put_IDriverSetup_OnLine(true);
        world->Sent.clear();
        world->Drains = 0;
        world->Delays.clear();
        world->Logged.clear();
        world->TimeoutsSet.clear();
    }
    Expect(std::move(transcript));
}

clsTarn4x& Bench::Create() { return storage.emplace(world); }

void Bench::KnowMode(TarnMeasureModes mode) {
    static constexpr const char* Names[] = {"NORM", "CDI",  "MDB",  "MPCT", "INT",  "IQ",   "APH",
                                            "AGD",  "POL",  "SP_1", "SP_2", "SP_3", "ADIS", "CCDF",
                                            "IR_1", "IR_2", "IR_3", "HIST", "PAR",  "CENV"};
    world->Transcript.emplace_front("SENS:DVBT:MEAS?", Names[mode]);
    EXPECT_EQ(driver.get_MeasureMode(), mode);
    world->Sent.clear();
    world->Drains = 0;
}

}  // namespace tarn4x::test
