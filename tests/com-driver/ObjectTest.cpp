#include "platform/com/TypeLibrary.h"
#include "tests/com-driver/Bench.h"

// The driver as a COM object: identity and class objects.

namespace {

TEST(Identity, IsTheSameThroughEveryInterface) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    const auto unknown = driver.As<IUnknown>();
    const GUID* const interfaces[] = {&__uuidof(_clsTarn4x), &__uuidof(IDriverIdentify), &__uuidof(IDriverSetup),
                                      &IID_IDispatch,        &IID_ISupportErrorInfo,     &IID_IProvideClassInfo};
    for (const auto from : interfaces) {
        ComPtr<IUnknown> one;
        ASSERT_HRESULT_SUCCEEDED(unknown->QueryInterface(*from, one.putVoid()));
        EXPECT_EQ(one.As<IUnknown>().get(), unknown.get());
        for (const auto to : interfaces) {
            ComPtr<IUnknown> other;
            EXPECT_HRESULT_SUCCEEDED(one->QueryInterface(*to, other.putVoid()));
        }
    }
    ComPtr<IUnknown> none;
    EXPECT_EQ(unknown->QueryInterface(__uuidof(_clsStatistics), none.putVoid()), E_NOINTERFACE);
}

TEST(Identity, IsDescribed) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    ComPtr<ITypeInfo> description;
    ASSERT_EQ(driver.As<IProvideClassInfo>()->GetClassInfo(description.put()), S_OK);
    EXPECT_EQ(com::AttributesOf(description).guid, CLSID_clsTarn4x);
    const auto support = driver.As<ISupportErrorInfo>();
    for (const GUID* known : {&__uuidof(_clsTarn4x), &__uuidof(IDriverIdentify), &__uuidof(IDriverSetup)}) {
        EXPECT_EQ(support->InterfaceSupportsErrorInfo(*known), S_OK);
    }
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(_clsStatistics)), S_FALSE);
}

TEST(ClassObjects, RefuseAggregationAndWhatCannotBeCreated) {
    const auto outer = Create<IUnknown>(CLSID_clsTarn4x);
    ComPtr<IUnknown> inner;
    EXPECT_EQ(CoCreateInstance(CLSID_clsTarn4x, outer.get(), CLSCTX_INPROC_SERVER, IID_IUnknown, inner.putVoid()),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(CoCreateInstance(CLSID_clsStatistics, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, inner.putVoid()),
              REGDB_E_CLASSNOTREG);
}

TEST(ClassObjects, TellWhichDriverTheComponentProvides) {
    const auto registration = Create<IRegister>(CLSID_clsRegister);
    com::Bstr name, description;
    EXPECT_EQ(registration->GetClassName(name.put()), S_OK);
    EXPECT_EQ(registration->GetClassDescription(description.put()), S_OK);
    EXPECT_EQ(name.Utf8() + ", " + description.Utf8(), "clsTarn4x, Tarn4x");
    Script script(registration.As<_clsRegister>().get());
    EXPECT_EQ(com::Utf8(script.Value(L"IRegister_GetClassName").bstrVal), "clsTarn4x");
    EXPECT_EQ(com::Utf8(script.Value(L"IRegister_GetClassDescription").bstrVal), "Tarn4x");
}

}  // namespace
