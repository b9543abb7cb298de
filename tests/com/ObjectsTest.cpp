#include <comcat.h>

#include "platform/com/Categories.h"
#include "platform/com/TypeLibrary.h"
#include "tests/com/Bench.h"

// Objects and class objects: identity, what they tell about themselves, and how long their components stay.

namespace {

const struct Class {
    const CLSID& Id;
    const wchar_t* In;                   // the component
    std::vector<const IID*> Interfaces;  // the default one first
} Classes[] = {
    {CLSID_clsTarn4x, L"XTarn4x", {&__uuidof(_clsTarn4x), &IID_IDriverIdentify, &IID_IDriverSetup}},
    {CLSID_clsRegister, L"XTarn4x", {&__uuidof(_clsRegister), &IID_IRegister}},
    {CLSID_clsNode, L"Seamcfg", {&IID_INode}},
    {CLSID_clsApplication, L"Seamlib", {&IID_IApplication}},
    {CLSID_clsMessageLog, L"Seamlib", {&IID_IMessageLog}},
    {CLSID_clsErrorService, L"Seamlib", {&IID_IErrorService}},
    {CLSID_clsHost, L"Seamlib", {&IID_IHost}},
    {CLSID_clsGPIB, L"Conduit", {&IID_ITextLink, &IID_IBlockLink, &IID_IConnection}},
    {CLSID_clsComm, L"Conduit", {&IID_ITextLink, &IID_IBlockLink, &IID_IConnection}},
    {CLSID_clsEthernet, L"Conduit", {&IID_ITextLink, &IID_IBlockLink, &IID_IConnection}},
    {CLSID_clsGUI, L"Conduit", {&IID_ITextLink, &IID_IBlockLink, &IID_IConnection}},
};

TEST(Objects, HaveOneIdentityAndDescribeThemselves) {
    for (const auto& entry : Classes) {
        SCOPED_TRACE(com::Utf8(com::ToText(entry.Id)));
        const auto object = Create<IDispatch>(entry.Id);
        const auto unknown = object.As<IUnknown>();
        const auto support = object.As<ISupportErrorInfo>();
        for (const auto* other : {&IID_IConnectionPoint, &__uuidof(_clsStatistics)}) {
            EXPECT_FALSE(object.As<IUnknown>(*other));
            EXPECT_EQ(support->InterfaceSupportsErrorInfo(*other), S_FALSE);
        }
        EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_OK);
        for (const auto* iid : entry.Interfaces) {
            const auto face = unknown.As<IDispatch>(*iid);
            ASSERT_TRUE(face);
            EXPECT_EQ(support->InterfaceSupportsErrorInfo(*iid), S_OK);
            EXPECT_EQ(face.As<IUnknown>().get(), unknown.get());
            EXPECT_EQ(face.As<IDispatch>(IID_IDispatch).get(), object.get());
            for (const auto* other : entry.Interfaces) EXPECT_TRUE(face.As<IUnknown>(*other));
            ComPtr<ITypeInfo> description;
            EXPECT_EQ(face->GetTypeInfo(0, LOCALE_INVARIANT, description.put()), S_OK);
            EXPECT_EQ(com::AttributesOf(description).guid, *iid);
            EXPECT_EQ(face->GetTypeInfo(1, LOCALE_INVARIANT, description.put()), DISP_E_BADINDEX);
            UINT count = 0;
            EXPECT_EQ(face->GetTypeInfoCount(&count), S_OK);
            EXPECT_EQ(count, 1u);
        }
        ComPtr<ITypeInfo> description;
        ASSERT_EQ(object.As<IProvideClassInfo>()->GetClassInfo(description.put()), S_OK);
        EXPECT_EQ(com::AttributesOf(description).guid, entry.Id);
    }
}

TEST(ClassObjects, KeepTheirComponentWhileTheyAreInUse) {
    for (const auto& entry : Classes) {
        SCOPED_TRACE(com::Utf8(com::ToText(entry.Id)));
        const Component component(Component::File(entry.In));
        ASSERT_EQ(component.CanUnload(), S_OK);
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(component.GetClassObject(entry.Id, IID_IClassFactory, factory.putVoid()), S_OK);
        EXPECT_EQ(component.CanUnload(), S_FALSE);
        ComPtr<IUnknown> object, aggregated;
        EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, aggregated.putVoid()), CLASS_E_NOAGGREGATION);
        ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.putVoid()), S_OK);
        factory->LockServer(TRUE);
        factory = {};
        EXPECT_EQ(component.CanUnload(), S_FALSE) << "an object, locked";
        object = {};
        EXPECT_EQ(component.CanUnload(), S_FALSE) << "locked";
        ASSERT_EQ(component.GetClassObject(entry.Id, IID_IClassFactory, factory.putVoid()), S_OK);
        factory->LockServer(FALSE);
        factory = {};
        EXPECT_EQ(component.CanUnload(), S_OK);
        void* none = &object;
        EXPECT_EQ(component.GetClassObject(CLSID_clsStatistics, IID_IClassFactory, &none), CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(none, nullptr);
    }
}

TEST(Components, StayOnceTheyHaveCreatedAnObject) {
    for (const auto& entry : Classes) Create<IDispatch>(entry.Id);
    CoFreeUnusedLibrariesEx(0, 0);
    for (const auto& entry : Classes) EXPECT_NE(GetModuleHandleW(entry.In), nullptr) << com::Utf8(entry.In);
}

TEST(Components, KnowWhatIsHeld) {
    const Component driverComponent(Component::File(L"XTarn4x")), nodes(Component::File(L"Seamcfg"));
    using Held = std::function<ComPtr<IUnknown>(Bench&)>;
    const auto as = [](const IID& iid) -> Held { return [&iid](Bench& b) { return b.driver.As<IUnknown>(iid); }; };
    const auto object = [](const wchar_t* host, const wchar_t* member) -> Held {
        return [=](Bench& bench) {
            Script driver(bench.driver), helper(Create<IDispatch>(CLSID_clsHost));
            Script& script = *host ? helper : driver;
            EXPECT_EQ(*host ? script.Get(host, {Typed(VT_DISPATCH, bench.driver.get())}) : script.Get(member),
                      "object");
            return ComPtr<IUnknown>(script.Result.pdispVal);
        };
    };
    const std::tuple<Held, HRESULT, HRESULT> companions[] = {
        {as(__uuidof(_clsTarn4x)), S_FALSE, S_FALSE},
        {as(IID_IDriverSetup), S_FALSE, S_FALSE},
        {as(IID_ISupportErrorInfo), S_FALSE, S_FALSE},
        {object(L"Setup", L""), S_FALSE, S_FALSE},
        {object(L"Identify", L""), S_FALSE, S_FALSE},
        {object(L"", L"AlarmStatistics"), S_FALSE, S_OK},
        {[](Bench& bench) { return bench.Setting("GPIB").As<IUnknown>(); }, S_OK, S_FALSE},
        {[](Bench& bench) {
             ComPtr<IUnknown> children;
             EXPECT_EQ(bench.Setting("GPIB")->get__NewEnum(children.put()), S_OK);
             return children;
         },
         S_OK, S_FALSE},
    };
    int number = 0;
    for (const auto& [held, driverStays, nodesStay] : companions) {
        SCOPED_TRACE(number++);
        ComPtr<IUnknown> companion;
        {
            Bench bench("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,2,3");
            companion = held(bench);
        }
        EXPECT_EQ(driverComponent.CanUnload(), driverStays);
        EXPECT_EQ(nodes.CanUnload(), nodesStay);
        companion = {};
        EXPECT_EQ(driverComponent.CanUnload(), S_OK);
        EXPECT_EQ(nodes.CanUnload(), S_OK);
    }
}

}  // namespace
