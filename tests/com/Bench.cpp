#include "tests/com/Bench.h"

#include <algorithm>

void FakeLink::Answers(const std::string& dialogue) {
    for (std::size_t from = 0, to; from < dialogue.size(); from = to + 3) {
        to = std::min(dialogue.find(" | ", from), dialogue.size());
        const auto line = dialogue.substr(from, to - from);
        const auto equals = line.find(" = ");
        if (equals != line.npos) answers_[line.substr(0, equals)] = line.substr(equals + 3);
    }
}

std::string FakeLink::Take(const std::string& line) {
    Lines.push_back(line);
    const auto answer = answers_.find(line);
    if (answer == answers_.end()) {
        throw platform::AutomationError(platform::ObjectError(platform::ReceiveTimedOut), "link", "Receive timed out");
    }
    std::string text = answer->second;
    if (const auto place = text.find("{n}"); place != text.npos) {
        text.replace(place, 3, std::to_string(std::ranges::count(Lines, line)));
    }
    return text;
}

HRESULT FakeLink::SendReceive(BSTR command, VARIANT* response) {
    return com::Border(IID_ITextLink, [&] {
        if (com::ParameterNotFound(*response)) return Lines.push_back(com::Utf8(command));
        com::Assign(*response, Take(com::Utf8(command)));
    });
}

HRESULT FakeLink::WriteString(BSTR command) {
    Lines.push_back(com::Utf8(command));
    return S_OK;
}

HRESULT FakeLink::ReadString(VARIANT command, BSTR* answer) {
    return com::Border(IID_ITextLink,
                       [&] { *answer = com::ToBstr(Take(com::OptionalText(command).value_or("nothing"))); });
}

HRESULT FakeLink::ReadBlock(short count, VARIANT, VARIANT* data) {
    const std::string piece = Block.substr(0, static_cast<std::size_t>(count));
    Block.erase(0, piece.size());
    *data = com::ToVariant(std::vector<std::uint8_t>(piece.begin(), piece.end()));
    return S_OK;
}

HRESULT FakeLink::get_Settings(INode** settings) {
    return Create<INode>(CLSID_clsNode)
        ->AddSetting(Bstr(std::string_view("TCP/IP")).get(), 0, 0, nullptr, nullptr, settings);
}

HRESULT FakeLink::put_Connect(VARIANT_BOOL connect) {
    connected_ = Works ? connect : VARIANT_FALSE;
    if (!connect || Works) return S_OK;
    return com::Border(IID_IConnection, [] {
        const auto framework = com::ComFramework();
        framework->TheMessageLog().Log(1, "TARN", "No connection", "COM9: sent nothing");
        throw platform::AutomationError(platform::ObjectError(platform::LinkLost), "link", "No connection");
    });
}

Bench::Bench(const std::string& dialogue, bool onLine) {
    EXPECT_EQ(application->put_DelayScale(0.0), S_OK);
    link.Answers(
        "SYST:ERR? = 0,\"No error\" | *IDN? = VANTERRA,TARN,100123,5.10 | READ:INFO:DATA? = 0 | "
        "SYSTEM:SERVICE:GET:BOARD:INFO? = 0x83 7.0");
    link.Answers(dialogue);
    EXPECT_EQ(Setting("Remote Control")->put_Value(Arg("TCP/IP")), S_OK);
    OnLine(onLine);
}

Bench::~Bench() {
    OnLine(false);
    EXPECT_EQ(application->put_DelayScale(1.0), S_OK);
}

void Bench::OnLine(bool onLine) {
    VARIANT_BOOL now = VARIANT_FALSE;
    EXPECT_EQ(setup->get_OnLine(&now), S_OK);
    const VARIANT_BOOL wanted = onLine ? VARIANT_TRUE : VARIANT_FALSE;
    EXPECT_EQ(now == wanted ? S_OK : setup->put_OnLine(wanted), S_OK);
}

ComPtr<INode> Bench::Setting(const char* path) const {
    ComPtr<INode> settings, setting;
    EXPECT_EQ(setup->get_Settings(settings.put()), S_OK);
    EXPECT_EQ(settings->get_Item(Arg(path), setting.put()), S_OK);
    return setting;
}
