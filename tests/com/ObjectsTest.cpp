#include "platform/com/TypeLibrary.h"
#include "tests/com/Bench.h"

// Objects and class objects: identity, what they tell about themselves, and how long their components stay.

namespace {

const std::vector<const IID*> Link = {&IID_ITextLink, &IID_IBlockLink, &IID_IConnection};

const struct Class {
    const CLSID& Id;
    const wchar_t* In;                   // the component
    std::vector<const IID*> Interfaces;  // the default one first
} Classes[] = {{CLSID_clsTarn4x, L"XTarn4x", {&__uuidof(_clsTarn4x), &IID_IDriverIdentify, &IID_IDriverSetup}},
               {CLSID_clsRegister, L"XTarn4x", {&__uuidof(_clsRegister), &IID_IRegister}},
               {CLSID_clsNode, L"Seamcfg", {&IID_INode}},
               {CLSID_clsApplication, L"Seamlib", {&IID_IApplication}},
               {CLSID_clsMessageLog, L"Seamlib", {&IID_IMessageLog}},
               {CLSID_clsErrorService, L"Seamlib", {&IID_IErrorService}},
               {CLSID_clsHost, L"Seamlib", {&IID_IHost}},
               {CLSID_clsGPIB, L"Conduit", Link},
               {CLSID_clsComm, L"Conduit", Link},
               {CLSID_clsEthernet, L"Conduit", Link},
               {CLSID_clsGUI, L"Conduit", Link}};

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
    const Component driver(Component::File(L"XTarn4x")), nodes(Component::File(L"Seamcfg"));
    const auto asked = [](Script&& script, const wchar_t* member, const std::vector<Arg>& arguments = {}) {
        EXPECT_EQ(script.Get(member, arguments), "object");
        return ComPtr<IUnknown>(script.Result.punkVal);
    };
    const auto host = [&](Bench& bench, const wchar_t* member) {
        return asked(Script(Create<IHost>(CLSID_clsHost)), member, {Typed(VT_DISPATCH, bench.driver.get())});
    };
    const std::tuple<std::function<ComPtr<IUnknown>(Bench&)>, HRESULT, HRESULT> companions[] = {
        {[](Bench& b) { return b.driver.As<IUnknown>(); }, S_FALSE, S_FALSE},
        {[](Bench& b) { return b.setup.As<IUnknown>(IID_IDriverSetup); }, S_FALSE, S_FALSE},
        {[](Bench& b) { return b.driver.As<IUnknown>(IID_ISupportErrorInfo); }, S_FALSE, S_FALSE},
        {[&](Bench& b) { return host(b, L"Setup"); }, S_FALSE, S_FALSE},
        {[&](Bench& b) { return host(b, L"Identify"); }, S_FALSE, S_FALSE},
        {[&](Bench& b) { return asked(Script(b.driver), L"AlarmStatistics"); }, S_FALSE, S_OK},
        {[](Bench& b) { return b.Setting("GPIB").As<IUnknown>(); }, S_OK, S_FALSE},
        {[&](Bench& b) { return asked(Script(b.Setting("GPIB")), L"_NewEnum"); }, S_OK, S_FALSE}};
    for (const auto& [of, driverStays, nodesStay] : companions) {
        auto companion = of(*std::make_unique<Bench>("READ:DVBT:ALAR:STAT? = 1:0:0,0,-,0,-,0,-,0,-,0,-,0,-,1,2,3"));
        EXPECT_EQ(driver.CanUnload(), driverStays);
        EXPECT_EQ(nodes.CanUnload(), nodesStay);
        companion = {};
        EXPECT_EQ(driver.CanUnload(), S_OK);
        EXPECT_EQ(nodes.CanUnload(), S_OK);
    }
}

}  // namespace
