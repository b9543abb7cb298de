#include <filesystem>

#include "platform/com/Categories.h"
#include "tests/com/Bench.h"

// The framework's objects as hosts, scripts and drivers see them: the host, settings, services and transports.

namespace {

TEST(Host, FindsAndCreatesDrivers) {
    Script host(Create<IHost>(CLSID_clsHost)), entry(Create<_clsRegister>(CLSID_clsRegister));
    const auto categories = Create<ICatRegister>(CLSID_StdComponentCategoriesMgr);
    CATID category = com::DriverCategory;
    EXPECT_EQ(categories->RegisterClassImplCategories(CLSID_clsTarn4x, 1, &category), S_OK);
    EXPECT_EQ(host.Get(L"Drivers"), "array");
    EXPECT_EQ(host.Result.parray->rgsabound[0].cElements, 1U)
        << "one component, although two of its classes are drivers";
    EXPECT_EQ(categories->UnRegisterClassImplCategories(CLSID_clsTarn4x, 1, &category), S_OK);
    EXPECT_EQ(host.Get(L"Describe", {"XTarn4x"}), "Tarn4x");
    EXPECT_EQ(entry.All({L"IRegister_GetClassName", L"IRegister_GetClassDescription"}), "clsTarn4x|Tarn4x");
    EXPECT_EQ(host.Object(L"CreateDriver", {"XTarn4x"}).Get(L"FormatFftMode", {1}), "8K");
    EXPECT_EQ(host.Get(L"CreateDriver", {"None"}), "429 Seamlib: Component can't create object: \"None.clsRegister\"");
    const StandIn failing(CLSID_clsTarn4x, nullptr);
    EXPECT_EQ(host.Get(L"CreateDriver", {"XTarn4x"}), "380 source: text");
}

TEST(Host, ReachesADriversSetupAndIdentity) {
    Bench bench("", false);
    Script host(Create<IHost>(CLSID_clsHost));
    const Arg driver(Typed(VT_DISPATCH, bench.driver.get()));
    Script setup = host.Object(L"Setup", {driver}), identity = host.Object(L"Identify", {driver});
    EXPECT_EQ(setup.Put(L"Name", {"TARN1"}), "");
    EXPECT_EQ(setup.Object(L"Settings").Get(L"Count"), "12");
    for (const bool works : {false, true}) {
        bench.link.Works = works;
        EXPECT_EQ(setup.Put(L"OnLine", {true}), "");
        EXPECT_EQ(setup.All({L"OnLine", L"WhyOffLine"}), works ? "1|" : "0|COM9: No connection");
    }
    EXPECT_EQ(setup.Get(L"Name") + bench.link.Name, "TARN1TARN1");
    EXPECT_EQ(identity.All(Identity), "VANTERRA|TARN|100123|5.10|TARN-B12");
    EXPECT_EQ(setup.Put(L"OnLine", {true}), "2002 .OnLine: Driver already on-line");
    EXPECT_EQ(bench.application->put_AppState(8), S_OK);
    EXPECT_EQ(setup.Put(L"OnLine", {false}), "");
    EXPECT_EQ(bench.link.StateThen, 4) << "suspended";
    EXPECT_EQ(Script(bench.application).Get(L"AppState"), "8");
    EXPECT_EQ(setup.Put(L"OnLine", {false}), "2003 .OnLine: Driver already off-line");
    EXPECT_EQ(bench.link.Lines.back(), "SYST:LOC");
    Fake<IDispatch> other;
    const Arg object(Typed(VT_DISPATCH, static_cast<IDispatch*>(&other))), nothing(Typed(VT_DISPATCH, nullptr));
    const std::string refusal = "13 Seamlib.clsHost: The object is no driver that has ";
    EXPECT_EQ(host.Get(L"Setup", {object}), refusal + "settings and an on-line state");
    EXPECT_EQ(host.Get(L"Identify", {object}), refusal + "an identity");
    EXPECT_EQ(host.Get(L"Setup", {nothing}), "91 Seamlib.clsHost: There is no driver object");
}

TEST(Host, SavesBytes) {
    Script host(Create<IHost>(CLSID_clsHost));
    const Arg bytes(com::ToVariant(std::vector<std::uint8_t>{'a', 10, 0}));
    const std::wstring file = std::filesystem::temp_directory_path() / L"saved.bin";
    EXPECT_EQ(host.Get(L"SaveBytes", {std::wstring_view(file), bytes}), "");
    EXPECT_EQ(std::filesystem::file_size(file), 3u);
    EXPECT_EQ(host.Get(L"SaveBytes", {"", bytes}), "75 Seamlib.clsHost: The file  cannot be written");
}

struct Nodes : testing::Test {
    const ComPtr<INode> root = Create<INode>(CLSID_clsNode);
    Script script{root};

    static ComPtr<INode> Add(const ComPtr<INode>& parent, const char* name, const char* list = "") {
        Script script(parent);
        EXPECT_EQ(script.Get(L"AddSetting", {name, 1, 2, list, ""}, {}, DISPATCH_PROPERTYGET), "object");
        return ComPtr<IDispatch>(script.Result.pdispVal).As<INode>();
    }
    static ComPtr<INode> Item(const ComPtr<INode>& parent, const Arg& name) {
        ComPtr<INode> node;
        EXPECT_EQ(Told(parent->get_Item(name, node.put())), "");
        return node;
    }
};

TEST_F(Nodes, KeepAllThatTheyAreGiven) {
    const std::string list = "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm";
    EXPECT_EQ(script.Get(L"AddGroup", {"General", 4, 3, "", ""}), "");
    const auto setting = Add(root, "Remote Control", list.c_str());
    EXPECT_EQ(setting->SetValue(VARIANT_TRUE, VARIANT_TRUE, Arg("RS232")), S_OK);
    EXPECT_EQ(setting->put_Fixed(VARIANT_TRUE), S_OK);
    EXPECT_EQ(script.Object(L"Item", {1}).All({L"Kind", L"Style", L"Fixed"}) + script.Get(L"Count"), "4|3|02");
    Script late(setting);
    EXPECT_EQ(late.All({L"Kind", L"Style", L"Fixed", L"DisplayValue", L"ValueList", L"Value"}),
              "1|2|1|RS232|" + list + "|Conduit.clsComm");
    EXPECT_EQ(late.Put(L"ValueList", {""}), "");
    EXPECT_EQ(late.Put(L"Value", {5025}), "");
    EXPECT_EQ(late.Get(L"value", {}, {}, DISPATCH_METHOD), "5025");
    EXPECT_EQ(late.Result.vt, VT_I4);
}

TEST_F(Nodes, AreFoundAndHaveOneIdentity) {
    const auto group = Add(root, "RS232"), setting = Add(group, "Baud Rate");
    for (const Arg& name : {Arg("RS232"), Arg(1), Arg(1.0)}) {
        EXPECT_EQ(Item(root, name).As<IUnknown>().get(), group.As<IUnknown>().get());
    }
    EXPECT_EQ(Item(root, "RS232.Baud Rate").get(), setting.get());
    const std::string none = "9 Seamcfg.clsNode: There is no setting ";
    EXPECT_EQ(script.Get(L"Item", {"Hast"}), none + "\"Hast\" below the root, which has \"RS232\"");
    EXPECT_EQ(script.Get(L"Item", {2}), none + "number 2, there are 1");
    auto* poison = reinterpret_cast<INode*>(std::intptr_t{1});
    EXPECT_EQ(Told(root->get_Item(Arg(0), &poison)), none + "number 0, there are 1");
    EXPECT_EQ(poison, nullptr);
    EXPECT_EQ(root->get_Item(Arg("none"), nullptr), E_POINTER);
}

TEST_F(Nodes, AreGraftedIntoATree) {
    const auto group = Add(Create<INode>(CLSID_clsNode), "GPIB"), twin = Add(Create<INode>(CLSID_clsNode), "gpib");
    const auto address = Add(group, "Primary Address");
    EXPECT_EQ(root->AddNode(group.get(), VARIANT_TRUE, VARIANT_TRUE), S_OK);
    EXPECT_EQ(address->put_Value(Arg(6)), S_OK);
    EXPECT_EQ(Item(root, "GPIB").get(), group.get());
    EXPECT_EQ(Script(Item(root, "GPIB.Primary Address")).Get(L"Value"), "6");
    Fake<IDispatch> foreign;  // asked for nothing but its interfaces
    const std::tuple<INode*, INode*, std::string> refused[] = {
        {root.get(), reinterpret_cast<INode*>(&foreign),
         "13 Seamcfg.clsNode: Only nodes of the settings component in the same thread can be added"},
        {root.get(), nullptr, "91 Seamcfg.clsNode: There is no node to add"},
        {group.get(), root.get(), "5 Seamcfg.clsNode: A tree cannot be added below a part of itself"},
        {root.get(), twin.get(), "457 Seamcfg.clsNode: There is already a setting \"gpib\" below the root"}};
    for (const auto& [parent, node, error] : refused) EXPECT_EQ(Told(parent->AddNode(node, TRUE, TRUE)), error);
    EXPECT_FALSE(com::InUse());
}

TEST_F(Nodes, AreEnumerated) {
    for (const auto name : {"a", "b", "c"}) Add(root, name);
    EXPECT_EQ(script.Get(L"_NewEnum"), "object");
    const auto children = ComPtr<IUnknown>(script.Result.punkVal).As<IEnumVARIANT>();
    Add(root, "later");  // not in an enumeration that is under way
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

void CALLBACK AskToStop(HWND, UINT, UINT_PTR, DWORD) {
    Create<IApplication>(CLSID_clsApplication)->put_AbortRequested(VARIANT_TRUE);
}

TEST(Services, HandleMessagesInADelayAndLeaveItsEndToTheHost) {
    const auto application = Create<IApplication>(CLSID_clsApplication);
    const auto timer = SetTimer(nullptr, 0, 1, AskToStop);
    // Long enough to be noticed by everybody: a test that waits for its end is a failed one.
    EXPECT_EQ(application->Delay(100000.0F), S_OK);
    KillTimer(nullptr, timer);
    EXPECT_EQ(application->put_AbortRequested(VARIANT_FALSE), S_OK);
    PostQuitMessage(7);
    EXPECT_EQ(application->Delay(0.15F), S_OK);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7U);
    Script script(application);
    EXPECT_EQ(script.Put(L"AppState", {8}), "");
    EXPECT_EQ(script.All({L"SuspendState", L"AppState", L"ResumeState", L"AppState"}), "4||8");
    EXPECT_TRUE(script.Put(L"DelayScale", {-1.0}).starts_with("5 "));
    EXPECT_EQ(script.Get(L"DelayScale"), "1");
}

TEST(Services, KeepALog) {
    Script log(Create<IMessageLog>(CLSID_clsMessageLog));
    EXPECT_EQ(log.Get(L"Clear"), "");
    EXPECT_EQ(log.Get(L"Log", {6, "TARN", "RF?", com::MissingArgument()}), "");
    EXPECT_EQ(log.Get(L"Log", {5, "TARN", "RF?", 1.5}), "");
    EXPECT_EQ(log.Get(L"Count"), "2");
    EXPECT_EQ(log.Get(L"Entry", {1}), "6\tTARN\tRF?\t");
    EXPECT_EQ(log.Get(L"Entry", {2}), "5\tTARN\tRF?\t1.5");
    EXPECT_EQ(log.Get(L"Entry", {3}), "9 Seamlib.clsMessageLog: There is no entry 3 in the message log, it has 2");
    EXPECT_TRUE(log.Put(L"FileName", {"Z:\\none\\log.txt"}).starts_with("75 "));
    EXPECT_EQ(log.All({L"FileName", L"Clear", L"Count"}), "0");
}

TEST(Services, RaiseExactlyWhatTheyAreGiven) {
    Script errors(Create<IErrorService>(CLSID_clsErrorService));
    const auto raise = [&](std::int32_t number) {
        return errors.Get(L"RaiseDriverError", {number, "a.b ", "Get  x failed"});
    };
    for (const auto& [number, told] : {std::pair(1, "1"), {65535, "65535"}, {-2147219500, "+2004"}, {-5, "FFFFFFFB"}}) {
        EXPECT_EQ(raise(number), std::string(told) + " a.b : Get  x failed");
    }
    for (const auto number : {0, 65536}) {
        EXPECT_EQ(raise(number), "5 Seamlib.clsErrorService: " + std::to_string(number) + " is no error number");
    }
    EXPECT_EQ(errors.Get(L"RaiseDriverError", {2003, "a", "text", "tarn.hlp", 77}), "2003 a: texttarn.hlp");
    EXPECT_EQ(errors.Exception.dwHelpContext, 77u);
    EXPECT_EQ(errors.Put(L"ErrorReporting", {false}), "");
    EXPECT_EQ(errors.Get(L"ErrorReporting"), "0");
    EXPECT_EQ(errors.Put(L"ErrorReporting", {true}), "");
}

TEST(Transports, AreCreatedAndAskedByProxies) {
    const auto create = [](const char* progId) { return com::ComFramework()->CreateTransport(progId); };
    EXPECT_EQ(Raised([&] { create("Conduit.clsNone"); }),
              "429 test-com: Component can't create object: \"Conduit.clsNone\"");
    for (const auto& [progId, subtree] : {std::pair("Conduit.clsGPIB", "GPIB"),
                                          {"Conduit.clsComm", "RS232"},
                                          {"Conduit.clsEthernet", "TCP/IP"},
                                          {"Conduit.clsGUI", "GUI"}}) {
        const auto transport = create(progId);
        EXPECT_EQ(transport->Settings()->Name(), subtree);
        EXPECT_EQ(com::ComOf(*transport->Settings()), com::ComOf(*transport->Settings())) << "the same node every time";
    }
    FakeLink link;
    link.Answers("RF? = 5 | nothing = 7");
    {
        com::TransportProxy proxy{ComPtr<ITextLink>(&link)};
        std::string answer = "---";
        proxy.SendReceive("*CLS", nullptr);
        EXPECT_EQ(link.Lines.back(), "*CLS");
        proxy.SendReceive("RF?", &answer);
        EXPECT_EQ(answer + proxy.ReadString("RF?") + proxy.ReadString(std::nullopt), "557");
        EXPECT_EQ(Raised([&] { proxy.ReadString("none"); }), "+2014 link: Timed out");
    }
    EXPECT_FALSE(com::InUse());
}

TEST(Transports, TalkToTheReceiver) {
    const auto link = Create<ITextLink>(CLSID_clsEthernet);
    Script text(link), blocks(link.As<IBlockLink>()), connection(link.As<IConnection>());
    Arg variable("kept"), fixed("");
    EXPECT_NE(text.Get(L"SendReceive", {"*IDN?", Reference(&variable)}), "") << "not connected";
    EXPECT_EQ(Text(variable), "kept");
    const int port = Environment("simulator_port", 0);
    EXPECT_EQ(connection.Object(L"Settings").Object(L"Item", {"Port"}).Put(L"Value", {port}), "");
    EXPECT_EQ(connection.Put(L"Name", {"TARN1"}), "");
    EXPECT_EQ(connection.Put(L"Connect", {true}), "");
    EXPECT_EQ(text.Put(L"Timeout", {2.5}), "");
    EXPECT_EQ(connection.All({L"Name", L"IsConnected"}) + text.Get(L"Timeout"), "TARN1|12.5");
    const auto identity = text.Get(L"ReadString", {"*IDN?"});
    EXPECT_TRUE(identity.starts_with("VANTERRA,TARN,")) << identity;
    for (const VARIANT& response : {Reference(&variable), Typed(VT_BYREF | VT_BSTR, &fixed.bstrVal)}) {
        EXPECT_EQ(text.Get(L"SendReceive", {"*IDN?", response}), "");
    }
    EXPECT_EQ(Text(variable) + Text(fixed), identity + identity);
    for (const auto& [member, arguments] :
         {std::pair(L"SendReceive", std::vector<Arg>{"*IDN?"}), {L"WriteString", {"*IDN?"}}}) {
        EXPECT_EQ(text.Get(member, arguments), "");
        EXPECT_EQ(text.Get(L"ReadString"), identity);
    }
    EXPECT_EQ(text.Get(L"SendReceive", {"*IDN?", "lost"}), "80020005");
    EXPECT_EQ(blocks.Get(L"WriteBlock", {3, com::ToVariant(std::vector<std::uint8_t>{'N', '?', '\n'}), "*ID"}), "");
    EXPECT_EQ(text.Get(L"ReadString"), identity);
    EXPECT_EQ(blocks.Get(L"ReadBlock", {2, "READ:BUFFER:PCX?"}), "#1");
    EXPECT_EQ(connection.Put(L"Connect", {false}), "");
    EXPECT_EQ(connection.Get(L"IsConnected"), "0");
}

}  // namespace
