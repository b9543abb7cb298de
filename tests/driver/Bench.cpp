#include "tests/driver/Bench.h"

#include <charconv>

namespace tarn4x::test {

namespace {

constexpr std::string_view EmptyQueue = R"(0,"No error")";

/// The number in front, which is cut off.
int TakeNumber(std::string_view& text) {
    int number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

AutomationError Error(int number, std::string_view description) {
    return {number < 1000 ? number : platform::ObjectError(number), "Conduit", std::string(description)};
}

struct Subtree {
    std::string_view ProgId, Name, Settings;
};
constexpr Subtree Subtrees[] = {
    {"Conduit.clsGPIB", "GPIB", "Board,Primary Address"},
    {"Conduit.clsComm", "RS232", "Comm Port,Baud Rate,Data Bits,Parity,Stop Bits,Handshaking"},
    {"Conduit.clsEthernet", "TCP/IP", "Host,Port"},
    {"Conduit.clsGUI", "GUI", "Port"}};

}  // namespace

std::vector<Exchange> Dialogue(std::string_view text) {
    std::vector<Exchange> dialogue;
    for (auto line : Split(text, " | ")) {
        auto rest = line;
        const int times = TakeNumber(rest);
        if (times > 0) line = rest.substr(3);
        const auto answer = line.find(" = "), error = line.find(" ! ");
        Exchange exchange{std::string(line.substr(0, std::min(answer, error))), {}, {}};
        if (answer != line.npos) {
            exchange.Answer = line.substr(answer + 3);
        } else if (error != line.npos) {
            rest = line.substr(error + 3);
            const int number = TakeNumber(rest);
            exchange.Error = Error(number, Trim(rest));
        }
        dialogue.insert(dialogue.end(), static_cast<std::size_t>(std::max(times, 1)), exchange);
    }
    return dialogue;
}

std::vector<std::pair<int, std::string>> Words(std::string_view list) {
    std::vector<std::pair<int, std::string>> words;
    for (auto entry : Split(list, " | ")) {
        const int number = TakeNumber(entry);
        words.emplace_back(number, entry.substr(1));
    }
    return words;
}

std::shared_ptr<platform::SettingsNode> FakeNode::Item(std::string_view path) {
    const auto dot = path.find('.');
    for (const auto& child : children) {
        if (child->Name() == path.substr(0, dot)) return dot == path.npos ? child : child->Item(path.substr(dot + 1));
    }
    throw AutomationError(platform::SubscriptOutOfRange, "FakeNode", "no " + std::string(path));
}

void FakeNode::SetValue(bool notify, bool store, const platform::Value& to) {
    EXPECT_TRUE(notify && store);
    value = to;
    for (const auto entry : Split(list)) {  // what the real tree does with a display text
        const auto equals = entry.find('=');
        if (platform::ToText(to) == Trim(entry.substr(0, equals))) value = std::string(entry.substr(equals + 1));
    }
}

std::shared_ptr<platform::Transport> FakeFramework::CreateTransport(std::string_view progId) {
    if (progId == MissingProgId) throw AutomationError(429, "COM", "ActiveX component can't create object");
    auto transport = std::make_shared<FakeTransport>(shared_from_this(), progId);
    LastSettings = transport->Settings();
    return transport;
}

std::string FakeFramework::Take(std::string_view command) {
    if (command == "SYST:ERR?" && (Dialogue.empty() || Dialogue.front().Sent != command)) {
        ++Drains;
        return std::string(EmptyQueue);
    }
    ++Sent;
    if (Dialogue.empty()) {
        ADD_FAILURE() << "unexpected: " << command;
        return {};
    }
    const auto next = Dialogue.front();
    Dialogue.erase(Dialogue.begin());
    EXPECT_EQ(next.Sent, command);
    if (next.Error) throw *next.Error;
    return next.Answer;
}

FakeTransport::FakeTransport(std::shared_ptr<FakeFramework> framework, std::string_view id)
    : world(std::move(framework)), progId(id) {
    const auto& subtree = *std::ranges::find(Subtrees, id, &Subtree::ProgId);
    settings = std::make_shared<FakeNode>(subtree.Name);
    for (const auto name : Split(subtree.Settings)) settings->AddSetting(name, 1, 4, "");
}

std::vector<std::uint8_t> FakeTransport::ReadBlock(std::int16_t count, std::optional<std::string_view> command) {
    world->BlockReads.push_back(std::to_string(count) + (command ? ' ' + std::string(*command) : ""));
    const auto size = static_cast<std::size_t>(count);
    if (size > world->Block.size()) throw Error(2014, "Receive timed out");
    const auto piece = world->Block.substr(0, size);
    world->Block.erase(0, size);
    return {piece.begin(), piece.end()};
}

void FakeTransport::Connect(bool connect) {
    bool works = !world->ConnectFails;
    if (progId != "Conduit.clsComm") {
        world->Connects.push_back(connect);
    } else if (connect) {
        world->ReportingDuringProbe.push_back(world->Reporting);
        const auto port = platform::ToText(settings->Item("Comm Port")->GetValue());
        works = std::ranges::count(world->SerialPorts, std::stoi(port)) != 0;
    }
    connected = connect && works;
    if (connect && !works) throw Error(2015, "refused");
}

Bench::Bench(std::string_view dialogue, bool onLine) {
    if (onLine) {
        Set("Remote Control", "TCP/IP");
        Expect("*CLS;*SRE 0;*ESE 0 | SYST:REM");
        driver.put_IDriverSetup_OnLine(true);
        world->Sent = 0;
        world->Drains = 0;
        world->Delays.clear();
        world->Logged.clear();
        world->TimeoutsSet.clear();
    }
    Expect(dialogue);
}

Bench::Bench(TarnMeasureModes mode, std::string_view dialogue) : Bench() {
    static constexpr const char* Names[] = {"NORM", "CDI",  "MDB",  "MPCT", "INT",  "IQ",   "APH",
                                            "AGD",  "POL",  "SP_1", "SP_2", "SP_3", "ADIS", "CCDF",
                                            "IR_1", "IR_2", "IR_3", "HIST", "PAR",  "CENV"};
    CHECK(*this, std::string("SENS:DVBT:MEAS? = ") + Names[mode], get_MeasureMode(), mode);
    world->Sent = 0;
    world->Drains = 0;
    Expect(dialogue);
}

void Bench::Expect(std::string_view dialogue) {
    for (const auto& exchange : Dialogue(dialogue)) world->Dialogue.push_back(exchange);
}

void Bench::ExpectEnd() {
    for (const auto& left : std::exchange(world->Dialogue, {})) ADD_FAILURE() << "never sent: " << left.Sent;
}

std::string Text(const AutomationError& error) {
    const bool own = error.Number < 0;
    const auto number = static_cast<std::uint32_t>(error.Number) - (own ? platform::ObjectErrorBase : 0U);
    const auto source = error.Source.starts_with("clsTarn4x.") ? error.Source.substr(9) : error.Source;
    return (own ? "+" : "") + std::to_string(number) + ' ' + source + ": " + error.Description;
}

}  // namespace tarn4x::test
