#include <cstdio>

#include "tests/com/Bench.h"
#include "tests/com/Footprint.h"

// The framework's objects as hosts, scripts and drivers see them: the host, settings, services and transports.

namespace {

using platform::Value;

TEST(Host, FindsAndCreatesDrivers) {
    Script host(Create<IHost>(CLSID_clsHost));
    const VARIANT& names = host.Result;
    EXPECT_THROW(host.Get(L"Drivers"), platform::AutomationError) << "an array is no single value";
    ASSERT_EQ(names.vt, VT_ARRAY | VT_VARIANT);
    LONG first = 0, last = -1;
    com::Variant name;
    EXPECT_EQ(SafeArrayGetElement(names.parray, &first, &name), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(names.parray, 1, &last), S_OK);
    EXPECT_EQ(Text(name) + std::to_string(last), "XTarn4x0");
    EXPECT_EQ(host.Get(L"Describe", {"XTarn4x"}), "Tarn4x");
    EXPECT_EQ(host.Get(L"CreateDriver", {"XTarn4x"}), "object");
    EXPECT_TRUE(ComPtr<IDispatch>(host.Result.pdispVal).As<_clsTarn4x>());
    EXPECT_EQ(host.Get(L"CreateDriver", {"None"}), "429 Seamlib: Component can't create object: \"None.clsRegister\"");
    const StandIn failing(CLSID_clsTarn4x, nullptr);
    EXPECT_EQ(host.Get(L"CreateDriver", {"XTarn4x"}), "380 source: text");
    Script entry(Create<_clsRegister>(CLSID_clsRegister));
    EXPECT_EQ(entry.All({L"IRegister_GetClassName", L"IRegister_GetClassDescription"}), "clsTarn4x|Tarn4x");
}

TEST(Host, ReachesADriversSetupAndIdentity) {
    Bench bench("", false);
    Script host(Create<IHost>(CLSID_clsHost));
    const Arg driver(Typed(VT_DISPATCH, bench.driver.get()));
    Script setup = host.Object(L"Setup", {driver});
    EXPECT_EQ(setup.Put(L"Name", {"TARN1"}), "");
    EXPECT_EQ(setup.Get(L"Name"), "TARN1");
    EXPECT_EQ(setup.Object(L"Settings").Get(L"Count"), "12");
    for (const bool works : {false, true}) {
        bench.link.Works = works;
        EXPECT_EQ(setup.Put(L"OnLine", {true}), "");
        EXPECT_EQ(setup.Get(L"OnLine"), works ? "1" : "0");
        EXPECT_EQ(setup.Get(L"WhyOffLine"), works ? "" : "COM9: No connection");
    }
    EXPECT_EQ(bench.link.Name, "TARN1");
    EXPECT_EQ(setup.Put(L"OnLine", {true}), "2002 .OnLine: Driver already on-line");
    Script identity = host.Object(L"Identify", {driver});
    EXPECT_EQ(
        identity.All({L"Manufacturer", L"ModelNumber", L"SerialNumber", L"FirmwareVersion", L"InstalledHardware"}),
        "VANTERRA|TARN|100123|5.10|TARN-B12");
    EXPECT_EQ(setup.Put(L"OnLine", {false}), "");
    EXPECT_EQ(bench.link.Lines.back(), "SYST:LOC");
    EXPECT_EQ(setup.Put(L"OnLine", {false}), "2003 .OnLine: Driver already off-line");
    Fake<IDispatch> other;
    const Arg object(Typed(VT_DISPATCH, static_cast<IDispatch*>(&other)));
    EXPECT_EQ(host.Get(L"Setup", {object}),
              "13 Seamlib.clsHost: The object is no driver that has settings and an on-line state");
    EXPECT_EQ(host.Get(L"Identify", {object}), "13 Seamlib.clsHost: The object is no driver that has an identity");
    EXPECT_EQ(host.Get(L"Setup", {Typed(VT_DISPATCH, nullptr)}), "91 Seamlib.clsHost: There is no driver object");
}

TEST(Host, SavesBytes) {
    wchar_t file[MAX_PATH];
    GetTempPathW(MAX_PATH, file);
    const auto name = std::wstring(file) + L"saved.bin";
    Script host(Create<IHost>(CLSID_clsHost));
    EXPECT_EQ(host.Get(L"SaveBytes", {std::wstring_view(name), com::ToVariant(std::vector<std::uint8_t>{'a', 10, 0})}),
              "");
    std::FILE* saved = _wfopen(name.c_str(), L"rb");
    char bytes[4] = "";
    EXPECT_EQ(std::fread(bytes, 1, sizeof bytes, saved), 3u);
    EXPECT_STREQ(bytes, "a\n");
    std::fclose(saved);
    EXPECT_EQ(host.Get(L"SaveBytes", {"", com::ToVariant(std::vector<std::uint8_t>{})}),
              "75 Seamlib.clsHost: The file  cannot be written");
}

struct Nodes : testing::Test {
    const ComPtr<INode> root = Create<INode>(CLSID_clsNode);
    Script script{root};

    static ComPtr<INode> Add(INode* parent, const char* name, const char* list = "") {
        ComPtr<INode> setting;
        EXPECT_EQ(Told(parent->AddSetting(Bstr(std::string_view(name)).get(), 1, 2, Bstr(std::string_view(list)).get(),
                                          nullptr, setting.put())),
                  "");
        return setting;
    }
    static ComPtr<INode> Item(INode* parent, const Arg& name) {
        ComPtr<INode> node;
        EXPECT_EQ(Told(parent->get_Item(name, node.put())), "");
        return node;
    }
};

TEST_F(Nodes, KeepAllThatTheyAreGiven) {
    const auto list = "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm";
    EXPECT_EQ(script.Get(L"AddGroup", {"General", 4, 3, "", ""}), "");
    const auto setting = Add(root.get(), "Remote Control", list);
    EXPECT_EQ(setting->SetValue(VARIANT_TRUE, VARIANT_TRUE, Arg("RS232")), S_OK);
    EXPECT_EQ(setting->put_Fixed(VARIANT_TRUE), S_OK);
    Script group(Item(root.get(), "General")), late(setting);
    EXPECT_EQ(group.All({L"Kind", L"Style", L"Fixed"}), "4|3|0");
    EXPECT_EQ(script.Get(L"Count"), "2");
    EXPECT_EQ(late.All({L"Kind", L"Style", L"Fixed", L"Count"}), "1|2|1|0");
    EXPECT_EQ(late.All({L"DisplayValue", L"ValueList", L"Value"}), std::string("RS232|") + list + "|Conduit.clsComm");
    EXPECT_EQ(late.Put(L"ValueList", {""}), "");
    EXPECT_EQ(late.Put(L"Value", {5025}), "");
    EXPECT_EQ(late.Get(L"value", {}, {}, DISPATCH_METHOD), "5025");
    EXPECT_EQ(late.Result.vt, VT_I4);
}

TEST_F(Nodes, AreFoundAndHaveOneIdentity) {
    const auto group = Add(root.get(), "RS232"), setting = Add(group.get(), "Baud Rate");
    for (const Arg& name : {Arg("RS232"), Arg(1), Arg(1.0)}) {
        EXPECT_EQ(Item(root.get(), name).As<IUnknown>().get(), group.As<IUnknown>().get());
    }
    EXPECT_EQ(Item(root.get(), "RS232.Baud Rate").get(), setting.get());
    EXPECT_EQ(script.Get(L"Item", {"Hast"}),
              "9 Seamcfg.clsNode: There is no setting \"Hast\" below the root, which has \"RS232\"");
    EXPECT_EQ(script.Get(L"Item", {2}), "9 Seamcfg.clsNode: There is no setting number 2, there are 1");
    auto* poison = reinterpret_cast<INode*>(std::intptr_t{1});
    EXPECT_TRUE(Told(root->get_Item(Arg(0), &poison)).starts_with("9 "));
    EXPECT_EQ(poison, nullptr);
    EXPECT_EQ(root->get_Item(Arg("none"), nullptr), E_POINTER);
    EXPECT_EQ(root->get_Value(nullptr), E_POINTER);
}

TEST_F(Nodes, AreGraftedIntoATree) {
    const auto group = Add(Create<INode>(CLSID_clsNode).get(), "GPIB"), address = Add(group.get(), "Primary Address");
    EXPECT_EQ(root->AddNode(group.get(), VARIANT_TRUE, VARIANT_TRUE), S_OK);
    EXPECT_EQ(address->put_Value(Arg(6)), S_OK);
    EXPECT_EQ(Item(root.get(), "GPIB").get(), group.get());
    EXPECT_EQ(Script(Item(root.get(), "GPIB.Primary Address")).Get(L"Value"), "6");
    const auto twin = Add(Create<INode>(CLSID_clsNode).get(), "gpib");
    Fake<IDispatch> foreign;  // asked for nothing but its interfaces
    const std::tuple<INode*, INode*, const char*> refused[] = {
        {root.get(), reinterpret_cast<INode*>(&foreign),
         "13 Seamcfg.clsNode: Only nodes of the settings component in the same thread can be added"},
        {root.get(), nullptr, "91 Seamcfg.clsNode: There is no node to add"},
        {group.get(), root.get(), "5 Seamcfg.clsNode: A tree cannot be added below a part of itself"},
        {root.get(), twin.get(), "457 Seamcfg.clsNode: There is already a setting \"gpib\" below the root"}};
    for (const auto& [parent, node, error] : refused)
        EXPECT_EQ(Told(parent->AddNode(node, VARIANT_TRUE, VARIANT_TRUE)), error);
    EXPECT_FALSE(com::InUse());
}

TEST_F(Nodes, AreEnumerated) {
    for (const auto name : {"a", "b", "c"}) Add(root.get(), name);
    EXPECT_EQ(script.Get(L"_NewEnum"), "object");
    const auto children = ComPtr<IUnknown>(script.Result.punkVal).As<IEnumVARIANT>();
    Add(root.get(), "later");  // not in an enumeration that is under way
    const auto next = [&] {
        com::Variant child;
        return children->Next(1, &child, nullptr) == S_OK ? Script(child).Get(L"Name") : "end";
    };
    EXPECT_EQ(next(), "a");
    ComPtr<IEnumVARIANT> clone;
    ASSERT_EQ(children->Clone(clone.put()), S_OK);
    EXPECT_EQ(children->Skip(1), S_OK);
    EXPECT_EQ(next(), "c");
    EXPECT_EQ(next(), "end");
    EXPECT_EQ(children->Skip(1), S_FALSE);
    EXPECT_EQ(children->Reset(), S_OK);
    EXPECT_EQ(next(), "a");
    com::Variant rest[4];
    ULONG fetched = 99;
    EXPECT_EQ(clone->Next(4, rest, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2U);
    EXPECT_EQ(clone->Next(2, rest, nullptr), E_POINTER);
}

TEST(Services, HandleMessagesInADelayAndLeaveItsEndToTheHost) {
    // Long enough to be noticed by everybody: a test that waits for its end is a failed one.
    constexpr float forever = 100000.0F;
    const auto application = Create<IApplication>(CLSID_clsApplication);
    const auto timer = SetTimer(nullptr, 0, 1, [](HWND, UINT, UINT_PTR, DWORD) {
        Create<IApplication>(CLSID_clsApplication)->put_AbortRequested(VARIANT_TRUE);
    });
    EXPECT_EQ(application->Delay(forever), S_OK);
    KillTimer(nullptr, timer);
    EXPECT_EQ(application->put_AbortRequested(VARIANT_FALSE), S_OK);
    PostQuitMessage(7);
    EXPECT_EQ(application->Delay(0.15F), S_OK);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7U);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    Script script(application);
    EXPECT_EQ(script.Put(L"AppState", {8}), "");
    EXPECT_EQ(script.Get(L"SuspendState"), "");
    EXPECT_NE(script.Get(L"AppState"), "8");
    EXPECT_EQ(script.Get(L"ResumeState"), "");
    EXPECT_EQ(script.Get(L"AppState"), "8");
    EXPECT_TRUE(script.Put(L"DelayScale", {-1.0}).starts_with("5 "));
    EXPECT_EQ(script.Get(L"DelayScale"), "1");
}

TEST(Services, KeepALog) {
    const auto log = Create<IMessageLog>(CLSID_clsMessageLog);
    Script script(log);
    EXPECT_EQ(script.Get(L"Clear"), "");
    EXPECT_EQ(
        log->Log(6, Bstr(std::string_view("TARN")).get(), Bstr(std::string_view("RF?")).get(), com::MissingArgument()),
        S_OK);
    EXPECT_EQ(script.Get(L"Log", {5, "TARN", "RF?", 1.5}), "");
    EXPECT_EQ(script.Get(L"Count"), "2");
    EXPECT_EQ(script.Get(L"Entry", {1}), "6\tTARN\tRF?\t");
    EXPECT_EQ(script.Get(L"Entry", {2}), "5\tTARN\tRF?\t1.5");
    EXPECT_EQ(script.Get(L"Entry", {3}), "9 Seamlib.clsMessageLog: There is no entry 3 in the message log, it has 2");
    EXPECT_EQ(log->Clear(), S_OK);
    EXPECT_EQ(script.Get(L"FileName"), "");
    EXPECT_TRUE(script.Put(L"FileName", {"Z:\\none\\log.txt"}).starts_with("75 "));
}

TEST(Services, RaiseExactlyWhatTheyAreGiven) {
    const auto service = Create<IErrorService>(CLSID_clsErrorService);
    Script script(service);
    const VARIANT missing = com::MissingArgument();
    for (const auto& [number, told] : {std::pair(2002, "2002"),
                                       {40006, "40006"},
                                       {platform::ObjectError(2004), "+2004"},
                                       {DISP_E_OVERFLOW, "8002000A"}}) {
        const auto expected = std::string(told) + " a.b : Get  x failed";
        EXPECT_EQ(Told(service->RaiseDriverError(number, Bstr(std::string_view("a.b ")).get(),
                                                 Bstr(std::string_view("Get  x failed")).get(), missing, missing)),
                  expected);
        EXPECT_EQ(script.Get(L"RaiseDriverError", {number, "a.b ", "Get  x failed"}), expected);
    }
    for (const auto number : {0, 65536}) {
        EXPECT_EQ(script.Get(L"RaiseDriverError", {number, "", ""}),
                  "5 Seamlib.clsErrorService: " + std::to_string(number) + " is no error number");
    }
    EXPECT_EQ(script.Get(L"RaiseDriverError", {2003, "source", "text", "tarn.hlp", 77}), "2003 source: texttarn.hlp");
    EXPECT_EQ(script.Exception.dwHelpContext, 77u);
    EXPECT_EQ(script.Put(L"ErrorReporting", {false}), "");
    EXPECT_EQ(script.Get(L"ErrorReporting"), "0");
    EXPECT_EQ(script.Put(L"ErrorReporting", {true}), "");
}

TEST(Transports, AreCreatedByTheirProgIDs) {
    const auto framework = com::ComFramework();
    EXPECT_EQ(Raised([&] { framework->CreateTransport("Conduit.clsNone"); }),
              "429 test-com: Component can't create object: \"Conduit.clsNone\"");
    for (const auto& [progId, subtree] : {std::pair{"Conduit.clsGPIB", "GPIB"},
                                          {"Conduit.clsComm", "RS232"},
                                          {"Conduit.clsEthernet", "TCP/IP"},
                                          {"Conduit.clsGUI", "GUI"}}) {
        const auto transport = framework->CreateTransport(progId);
        EXPECT_EQ(transport->Settings()->Name(), subtree);
        EXPECT_EQ(com::ComOf(*transport->Settings()), com::ComOf(*transport->Settings())) << "the same node every time";
    }
}

TEST(Transports, AreAskedWithOptionalArguments) {
    FakeLink link;
    link.Answers("RF? = 5 | nothing = 7");
    {
        com::TransportProxy proxy{ComPtr<ITextLink>(&link)};
        std::string answer = "---";
        proxy.SendReceive("*CLS", nullptr);
        EXPECT_EQ(link.Lines.back(), "*CLS");
        proxy.SendReceive("RF?", &answer);
        EXPECT_EQ(answer + proxy.ReadString("RF?") + proxy.ReadString(std::nullopt), "557");
        EXPECT_EQ(Raised([&] { proxy.ReadString("none"); }), "+2014 link: Receive timed out");
    }
    EXPECT_FALSE(com::InUse());
}

TEST(Transports, TalkToTheReceiver) {
    const auto link = Create<ITextLink>(CLSID_clsEthernet);
    Script text(link), blocks(link.As<IBlockLink>()), connection(link.As<IConnection>());
    com::Variant variable(com::ToVariant(Value(std::string("kept"))));
    EXPECT_NE(text.Get(L"WriteString", {"*CLS"}), "");
    EXPECT_NE(text.Get(L"SendReceive", {"*IDN?", Reference(&variable)}), "");
    EXPECT_EQ(Text(variable), "kept");
    auto settings = connection.Object(L"Settings");
    EXPECT_EQ(settings.Object(L"Item", {"Port"}).Put(L"Value", {Environment("simulator_port", 0)}), "");
    EXPECT_EQ(connection.Put(L"Name", {"TARN1"}), "");
    EXPECT_EQ(connection.Put(L"Connect", {true}), "");
    EXPECT_EQ(connection.All({L"Name", L"IsConnected"}), "TARN1|1");
    EXPECT_EQ(text.Put(L"Timeout", {2.5}), "");
    EXPECT_EQ(text.Get(L"Timeout"), "2.5");
    const auto identity = text.Get(L"ReadString", {"*IDN?"});
    EXPECT_TRUE(identity.starts_with("VANTERRA,TARN,")) << identity;
    Arg fixed("");
    for (const VARIANT& response : {Reference(&variable), Typed(VT_BYREF | VT_BSTR, &fixed.bstrVal)}) {
        EXPECT_EQ(text.Get(L"SendReceive", {"*IDN?", response}), "");
    }
    EXPECT_EQ(Text(variable) + Text(fixed), identity + identity);
    EXPECT_EQ(text.Get(L"SendReceive", {"*CLS"}), "");
    EXPECT_EQ(text.Get(L"WriteString", {"*IDN?"}), "");
    EXPECT_EQ(text.Get(L"ReadString"), identity);
    EXPECT_EQ(text.Get(L"SendReceive", {"*IDN?", "lost"}), "80020005");
    EXPECT_EQ(blocks.Get(L"WriteBlock", {3, com::ToVariant(std::vector<std::uint8_t>{'N', '?', '\n'}), "*ID"}), "");
    EXPECT_EQ(text.Get(L"ReadString"), identity);
    EXPECT_EQ(blocks.Get(L"ReadBlock", {2, "READ:BUFFER:PCX?"}), "#1");
    EXPECT_EQ(connection.Put(L"Connect", {false}), "");
    EXPECT_EQ(connection.Get(L"IsConnected"), "0");
}

}  // namespace
