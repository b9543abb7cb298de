#include <Conduit_h.h>
#include <Seamcfg_h.h>

#include <algorithm>

#include "tests/com-driver/Bench.h"

// Texts that are no ASCII, long, or hold what others end at: through the function table and Invoke, to and from the
// wire.

namespace {

using namespace std::string_literals;

constexpr std::size_t Long = 65536;

/// What a client gives, and what is kept of it: half a character becomes U+FFFD.
struct Sample {
    std::wstring given, kept = given;
};
const Sample samples[] = {{L"Gr\u00F6\u00DFe"},
                          {L"\x6D4B\x8BD5"},
                          {L"\xD834\xDD1E"},
                          {L"a\0b"s},
                          {L"\0"s},
                          {std::wstring(Long, L'\xF6')},
                          {std::wstring(Long - 1, L'x') + L"\xD834\xDD1E"},
                          {L"a\xD834.", L"a\xFFFD."},
                          {L"\xDD1E-", L"\xFFFD-"},
                          {L"\xDD1E\xD834", L"\xFFFD\xFFFD"}};

com::Bstr Given(const std::wstring& text) { return com::Bstr(std::wstring_view(text)); }
com::Variant Argument(const std::wstring& text) {
    com::Variant value;
    value.vt = VT_BSTR;
    value.bstrVal = Given(text).detach();
    return value;
}
std::wstring Kept(BSTR text) { return {text, SysStringLen(text)}; }
std::wstring Kept(const VARIANT& value) {
    EXPECT_EQ(value.vt, VT_BSTR);
    return value.vt == VT_BSTR ? Kept(value.bstrVal) : L"";
}
/// The beginning and the length, for a message.
std::string Shown(const std::wstring& text) {
    return com::Utf8(text.substr(0, 20)) + " " + std::to_string(text.size());
}
#define EXPECT_KEPT(text, expected) \
    EXPECT_TRUE(Kept(text) == (expected)) << Shown(Kept(text)) << ", not " << Shown(expected)

/// Latin-1 bytes as they arrive.
std::wstring Decoded(const std::string& bytes) {
    std::wstring text;
    for (const char byte : bytes) text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return text;
}
/// Every byte that an answer can hold, and many of them.
std::string EveryByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n') bytes += static_cast<char>(byte);
    }
    return bytes + std::string(Long, '\xE4');
}

TEST(Texts, AreKeptAsNameOfADriver) {
    const auto setup = Create<_clsTarn4x>(CLSID_clsTarn4x).As<IDriverSetup>();
    Script script(setup.get());
    for (const auto& [given, kept] : samples) {
        com::Bstr name;
        EXPECT_EQ(setup->put_Name(Given(given).get()), S_OK);
        EXPECT_EQ(setup->get_Name(name.put()), S_OK);
        EXPECT_KEPT(name.get(), kept);
        EXPECT_EQ(setup->put_Name(nullptr), S_OK);
        EXPECT_EQ(script.Put(L"Name", Argument(given)), S_OK);
        EXPECT_KEPT(script.Value(L"Name"), kept);
    }
}

TEST(Texts, AreKeptAsNamesAndValuesOfSettings) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    ComPtr<INode> settings;
    ASSERT_EQ(driver.As<IDriverSetup>()->get_Settings(settings.put()), S_OK);
    long number = 0;
    for (const auto& [given, kept] : samples) {
        const auto name = std::to_wstring(++number) + given, keptName = std::to_wstring(number) + kept;
        ComPtr<INode> setting, found;
        com::Bstr text;
        com::Variant value;
        EXPECT_EQ(settings->AddSetting(Given(name).get(), 1, 2, Given(given + L"=1,x=!" + given).get(), nullptr,
                                       setting.put()),
                  S_OK);
        EXPECT_EQ(setting->get_Name(text.put()), S_OK);
        EXPECT_KEPT(text.get(), keptName);
        EXPECT_EQ(setting->get_ValueList(text.put()), S_OK);
        EXPECT_KEPT(text.get(), kept + L"=1,x=!" + kept);
        EXPECT_EQ(settings->get_Item(Argument(name), found.put()), S_OK);
        EXPECT_EQ(found.get(), setting.get());
        // A display text becomes the value behind it, and the other way round.
        EXPECT_EQ(setting->put_Value(Argument(given)), S_OK);
        EXPECT_EQ(setting->get_Value(&value), S_OK);
        EXPECT_KEPT(value, L"1"s);
        Script script(setting.get());
        EXPECT_EQ(script.Put(L"Value", Argument(L"x")), S_OK);
        EXPECT_KEPT(script.Value(L"Value"), L"!" + kept);
        EXPECT_KEPT(script.Value(L"DisplayValue"), L"x"s);
        EXPECT_EQ(script.Put(L"Value", Argument(given + L"?")), S_OK);
        EXPECT_KEPT(script.Value(L"Value"), kept + L"?");
    }
}

TEST(Texts, AreNoMembers) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    IDispatch* const faces[] = {driver.get(), driver.As<IDriverSetup>().get(), driver.As<IDriverIdentify>().get()};
    std::vector<std::wstring> names = {L"", L"R", L"RFF", L" RF", L"RF ", L"\xFF32\xFF26", L"R\u0307F"};
    for (const auto& sample : samples) names.push_back(sample.given);
    for (IDispatch* face : faces) {
        for (const auto& name : names) {
            auto* text = const_cast<LPOLESTR>(name.c_str());
            DISPID identifier = 0;
            EXPECT_EQ(face->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &identifier), DISP_E_UNKNOWNNAME);
            EXPECT_EQ(identifier, DISPID_UNKNOWN);
        }
    }
    for (const auto& name : names) {
        EXPECT_EQ(Script(driver.get()).Get(L"StatusOfdmCodeRate", {}, {{name.c_str(), Number(1)}}), DISP_E_UNKNOWNNAME);
    }
}

TEST(Texts, NameNoTransport) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    const auto setup = driver.As<IDriverSetup>();
    auto names = std::vector(std::begin(samples), std::end(samples));
    names.push_back({L"Conduit.clsEthernet\0"s});
    for (auto& [given, kept] : names) {
        Select(setup.get(), {{"Remote Control", com::Utf8(given)}});
        std::ranges::replace(kept, L'\0', L'\xFFFD');  // an error's description cannot hold it
        EXPECT_TRUE(TakeFailure(setup->put_OnLine(VARIANT_TRUE)) ==
                    (Failure{0x800A01AD, "XTarn4x", "Component can't create object: \"" + com::Utf8(kept) + '"'}))
            << Shown(given);
    }
}

using WireTexts = OnLine;

TEST_F(WireTexts, ArriveInMembers) {
    const auto bytes = EveryByte();
    peer.Answers("*IDN? = Gr\xF6\xDF,a" + "\0b,"s + std::string(Long, '\xE4') + ",\x80");
    peer.Answers("READ:RF:LEVEL? = <-12.5 (" + bytes + ")");
    Script script(driver.get());
    const std::pair<const wchar_t*, std::string> fields[] = {{L"Manufacturer", "Gr\xF6\xDF"},
                                                             {L"ModelNumber", "a\0b"s},
                                                             {L"SerialNumber", std::string(Long, '\xE4')},
                                                             {L"FirmwareVersion", "\x80"}};
    com::Bstr identity;
    EXPECT_EQ(driver->get_Identity(identity.put()), S_OK);
    std::string all;
    for (const auto& [member, text] : fields) {
        EXPECT_KEPT(script.Value(member), Decoded(text));
        all += (all.empty() ? "" : ",") + text;
    }
    EXPECT_KEPT(identity.get(), Decoded(all));
    EXPECT_EQ(Get<double>(&_clsTarn4x::get_MeasureRfLevel), -12.5);
    com::Variant postfix, whole;
    EXPECT_EQ(driver->get_Postfix(&postfix), S_OK);
    EXPECT_EQ(driver->get_ResponseString(&whole), S_OK);
    for (const VARIANT* text : {&static_cast<const VARIANT&>(postfix), &script.Value(L"Postfix")}) {
        EXPECT_KEPT(*text, Decoded("(" + bytes + ")"));
    }
    for (const VARIANT* text : {&static_cast<const VARIANT&>(whole), &script.Value(L"ResponseString")}) {
        EXPECT_KEPT(*text, Decoded("<-12.5 (" + bytes + ")"));
    }
}

TEST_F(WireTexts, ArriveInErrors) {
    const std::string answer = "x" + EveryByte().substr(1);
    TarnModes mode{};
    peer.Answers("SYST:MODE? = " + answer);
    const Failure expected{0x8004017C, "clsTarn4x.Mode",
                           "Device reported an unrecognised mode (" + com::Utf8(Decoded(answer)) + ")"};
    EXPECT_TRUE(TakeFailure(driver->get_Mode(&mode)) == expected);
    Script script(driver.get());
    EXPECT_EQ(script.Get(L"Mode"), DISP_E_EXCEPTION);
    EXPECT_TRUE(script.raised == expected);
    // An error's description cannot hold a NUL.
    peer.Answers("SYST:MODE? = a\0b"s);
    EXPECT_RAISES(driver->get_Mode(&mode), 0x8004017C, "clsTarn4x.Mode",
                  "Device reported an unrecognised mode (a\xEF\xBF\xBD"
                  "b)");
}

TEST_F(WireTexts, ArriveInReportsThatCannotBeDecoded) {
    const std::string tail = "\xF6\0\x80"s + std::string(Long, '\xE4');
    peer.Answers("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,1,1," + tail);
    ComPtr<_clsStatistics> statistics;
    ASSERT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    Script script(statistics.get());
    EXPECT_TRUE(Kept(script.Value(L"Statistics")).ends_with(Decoded(tail)));
    com::Bstr report;
    for (const auto& [given, kept] : samples) {
        EXPECT_EQ(static_cast<unsigned>(statistics->put_Statistics(Given(given).get())), 0x800A0009);
        EXPECT_EQ(statistics->get_Statistics(report.put()), S_OK);
        EXPECT_KEPT(report.get(), kept);
        EXPECT_EQ(script.Put(L"Statistics", Argument(given + L",")), DISP_E_EXCEPTION);
        EXPECT_KEPT(script.Value(L"Statistics"), kept + L",");
    }
}

TEST_F(WireTexts, LeaveAsTheyAreOrNotAtAll) {
    const auto link = Create<ITextLink>(__uuidof(clsEthernet));
    const auto connection = link.As<IConnection>();
    ComPtr<INode> settings, port;
    ASSERT_EQ(connection->get_Settings(settings.put()), S_OK);
    ASSERT_EQ(settings->get_Item(Argument(L"Port"), port.put()), S_OK);
    ASSERT_EQ(port->put_Value(Number(peer.Port())), S_OK);
    ASSERT_EQ(driver.As<IDriverSetup>()->put_OnLine(VARIANT_FALSE), S_OK);  // the peer talks to one at a time
    ASSERT_EQ(connection->put_Connect(VARIANT_TRUE), S_OK);
    Script script(link.get());
    for (const auto& bytes : {"Gr\xF6\xDF"s, "a\0b"s, std::string(Long, '\xE4')}) {
        EXPECT_EQ(link->WriteString(Given(Decoded(bytes)).get()), S_OK);
        EXPECT_TRUE(peer.Received(bytes));
        EXPECT_EQ(script.Get(L"WriteString", {Argument(Decoded(bytes + "!"))}), S_OK);
        EXPECT_TRUE(peer.Received(bytes + "!"));
    }
    EXPECT_EQ(static_cast<unsigned>(link->WriteString(Given(L"\x6D4B").get())), 0x800A0005);
    EXPECT_EQ(script.Get(L"WriteString", {Argument(L"\xD834")}), DISP_E_EXCEPTION);
    EXPECT_EQ(script.raised.result, 0x800A0005);
}

}  // namespace
