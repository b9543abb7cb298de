#include "platform/com/Server.h"
#include "platform/com/TypeLibrary.h"
#include "tests/com-host/Client.h"
#include "tests/com-host/Fake.h"

using com::ComPtr;

namespace {

/// A server's DLL, as COM finds it.
class Module {
  public:
    explicit Module(const CLSID& clsid) {
        wchar_t file[MAX_PATH] = L"";
        LONG size = sizeof file;
        RegQueryValueW(HKEY_CLASSES_ROOT, (L"CLSID\\" + com::ToText(clsid) + L"\\InprocServer32").c_str(), file, &size);
        module_ = LoadLibraryW(file);
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { FreeLibrary(module_); }

    HRESULT CanUnloadNow() const { return Function<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")(); }
    HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** object) const {
        return Function<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid, object);
    }

  private:
    template <class Pointer>
    Pointer Function(const char* name) const {
        return reinterpret_cast<Pointer>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

    HMODULE module_;
};

struct {
    const CLSID& clsid;
    const IID& defaultInterface;
} const classes[] = {{CLSID_clsApplication, IID_IApplication},
                     {CLSID_clsMessageLog, IID_IMessageLog},
                     {CLSID_clsErrorService, IID_IErrorService},
                     {CLSID_clsHost, IID_IHost},
                     {CLSID_clsNode, IID_INode},
                     {CLSID_clsGPIB, IID_ITextLink},
                     {CLSID_clsComm, IID_ITextLink},
                     {CLSID_clsEthernet, IID_ITextLink},
                     {CLSID_clsGUI, IID_ITextLink}};

}  // namespace

TEST(Server, MayGoWhenNothingIsHeld) {
    for (const auto& entry : classes) {
        const Module module(entry.clsid);
        ASSERT_EQ(module.CanUnloadNow(), S_OK) << com::Utf8(com::ToText(entry.clsid));
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(module.GetClassObject(entry.clsid, IID_IClassFactory, factory.putVoid()), S_OK);
        EXPECT_EQ(module.CanUnloadNow(), S_FALSE);
        ComPtr<IUnknown> object;
        ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.putVoid()), S_OK);
        factory->LockServer(TRUE);
        factory = {};
        EXPECT_EQ(module.CanUnloadNow(), S_FALSE);
        object = {};
        EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "locked";
        ASSERT_EQ(module.GetClassObject(entry.clsid, IID_IClassFactory, factory.putVoid()), S_OK);
        factory->LockServer(FALSE);
        factory = {};
        EXPECT_EQ(module.CanUnloadNow(), S_OK);
    }
}

TEST(Server, CountsNodesAndEnumerators) {
    const Module module(CLSID_clsNode);
    auto root = com::CreateByProgId<INode>("Seamcfg.clsNode");
    ComPtr<IUnknown> children;
    ASSERT_EQ(root->get__NewEnum(children.put()), S_OK);
    root = {};
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE);
    children = {};
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
}

TEST(Server, LeavesNothingBehind) {
    const Module nodes(CLSID_clsNode), transports(CLSID_clsEthernet), services(CLSID_clsApplication);
    for (int round = 0; round < 1000; ++round) {
        com::NodeProxy root(com::CreateByProgId<INode>("Seamcfg.clsNode"));
        com::TransportProxy transport(com::CreateByProgId<ITextLink>("Conduit.clsEthernet"));
        const auto settings = transport.Settings();
        root.AddNode(settings, true, true);
        settings->Children();
        EXPECT_THROW(root.Item("none"), platform::AutomationError);
    }
    for (const auto* module : {&nodes, &transports, &services}) EXPECT_EQ(module->CanUnloadNow(), S_OK);
}

TEST(Server, RefusesAggregationAndUnknownClasses) {
    Fake<IDispatch> outer;
    for (const auto& entry : classes) {
        IUnknown* object = nullptr;
        EXPECT_EQ(CoCreateInstance(entry.clsid, static_cast<IDispatch*>(&outer), CLSCTX_INPROC_SERVER, IID_IUnknown,
                                   reinterpret_cast<void**>(&object)),
                  CLASS_E_NOAGGREGATION);
        EXPECT_EQ(object, nullptr);
    }
    const Module module(CLSID_clsNode);
    void* factory = &outer;
    EXPECT_EQ(module.GetClassObject(CLSID_clsHost, IID_IClassFactory, &factory), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory, nullptr);
}

TEST(Server, DescribesItsObjects) {
    for (const auto& entry : classes) {
        ComPtr<IDispatch> object;
        ComPtr<ITypeInfo> description;
        com::Check(CoCreateInstance(entry.clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.putVoid()));
        ASSERT_EQ(object.As<IProvideClassInfo>()->GetClassInfo(description.put()), S_OK);
        EXPECT_EQ(com::AttributesOf(description).guid, entry.clsid);
        ASSERT_EQ(object->GetTypeInfo(0, LOCALE_INVARIANT, description.put()), S_OK);
        EXPECT_EQ(com::AttributesOf(description).guid, entry.defaultInterface);
        EXPECT_EQ(object.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(entry.defaultInterface), S_OK);
        EXPECT_EQ(object.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID_IConnectionPoint), S_FALSE);
    }
}

TEST(Server, KeepsTheRulesOfIdentity) {
    const auto text = com::CreateByProgId<ITextLink>("Conduit.clsGPIB");
    const auto blocks = text.As<IBlockLink>();
    const auto connection = blocks.As<IConnection>();
    EXPECT_EQ(connection.As<ITextLink>().get(), text.get());
    EXPECT_EQ(connection.As<IUnknown>().get(), text.As<IUnknown>().get());
    EXPECT_EQ(connection.As<IDispatch>().get(), text.As<IDispatch>().get());
    EXPECT_FALSE(text.As<INode>());

    // Each dual interface dispatches its own members.
    DISPID member = 0;
    auto* name = const_cast<LPOLESTR>(L"ReadBlock");
    EXPECT_EQ(blocks->GetIDsOfNames(IID_NULL, &name, 1, 0x407, &member), S_OK);
    EXPECT_EQ(member, 1);
    EXPECT_EQ(text->GetIDsOfNames(IID_NULL, &name, 1, 0x407, &member), DISP_E_UNKNOWNNAME);
}
