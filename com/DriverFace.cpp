#include "com/DriverFace.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "com/Members.h"
#include "driver/clsTarn4x.h"
#include "platform/com/DualFace.h"
#include "platform/com/Variants.h"

namespace com {

/// A script passes its variables as Variants by reference, which the type description takes only for arguments by
/// value: not for the bytes of ScreenShot and the number of an echo.
template <>
STDMETHODIMP Dispatch<_clsTarn4x>::Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments,
                                          VARIANT* result, EXCEPINFO* exception, UINT* badArgument);

namespace {

using Driver = tarn4x::clsTarn4x;

// Gives the caller an array of the bytes for the one that it passed. Without bytes, and when the caller's array is
// fixed or locked, it stays as it is.
void HandOver(const std::vector<std::uint8_t>& bytes, SAFEARRAY** array) {
    if (bytes.empty() || (*array && ((*array)->fFeatures & FADF_FIXEDSIZE) != 0)) return;
    SAFEARRAY* handed = ToByteArray(bytes);
    if (*array && FAILED(SafeArrayDestroy(*array))) {
        SafeArrayDestroy(handed);
        return;
    }
    *array = handed;
}

class DriverFace : public DualFace<&CLSID_clsTarn4x, _clsTarn4x, IDriverIdentify, IDriverSetup> {
  public:
    // Types as driver/Members.def names them.
    using Boolean = VARIANT_BOOL;
    using Date = DATE;
    using Double = double;
    using Integer = short;
    using Long = long;
    using String = BSTR;
    using Variant = VARIANT;
    using clsStatistics = _clsStatistics*;

    // _clsTarn4x; get_Manufacturer to get_InstalledHardware are those of IDriverIdentify too.

#define READ(identifier, name, type, ...) \
    STDMETHODIMP get_##name(type* value) override { return Get(value, &Driver::get_##name); }
#define READ_WITH(...)
#define CONTROL(identifier, name, type, ...)                                                  \
    STDMETHODIMP put_##name(type value) override { return Call(&Driver::put_##name, value); } \
    STDMETHODIMP get_##name(type* value) override { return Get(value, &Driver::get_##name); }
#define CONTROL_WITH(...)
#define METHOD(identifier, name, ...) \
    STDMETHODIMP name() override { return Call(&Driver::name); }
#define METHOD_WITH(...)
#define FUNCTION(identifier, name, argument, type, ...) \
    STDMETHODIMP name(argument udtValue, type* value) override { return Get(value, &Driver::name, udtValue); }
#include "driver/Members.def"

    // The members with arguments

    STDMETHODIMP get_ScreenShot(TarnScreenShotModes udtMode, SAFEARRAY** bytBuffer, VARIANT_BOOL* value) override {
        if (!bytBuffer) return E_POINTER;
        return Get(value, [&](Driver& driver) {
            std::vector<std::uint8_t> bytes;
            const bool done = driver.get_ScreenShot(static_cast<tarn4x::TarnScreenShotModes>(udtMode), bytes);
            HandOver(bytes, bytBuffer);
            return done;
        });
    }
    STDMETHODIMP get_ImpulseResponseAtten(short* intNumber, double* value) override {
        return intNumber ? Get(value, &Driver::get_ImpulseResponseAtten, *intNumber) : E_POINTER;
    }
    STDMETHODIMP get_ImpulseResponseDelay(short* intNumber, double* value) override {
        return intNumber ? Get(value, &Driver::get_ImpulseResponseDelay, *intNumber) : E_POINTER;
    }
    STDMETHODIMP put_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates value) override {
        return Call(&Driver::put_StatusOfdmCodeRate, udtPriority, value);
    }
    STDMETHODIMP get_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates* value) override {
        return Get(value, &Driver::get_StatusOfdmCodeRate, udtPriority);
    }
    STDMETHODIMP MeasureOfdmCarrierRange(short intStart, short intStop) override {
        return Call(&Driver::MeasureOfdmCarrierRange, intStart, intStop);
    }

    // IDriverSetup

    STDMETHODIMP put_Name(BSTR name) override { return Call(&Driver::put_IDriverSetup_Name, name); }
    STDMETHODIMP get_Name(BSTR* name) override { return Get(name, &Driver::get_IDriverSetup_Name); }
    STDMETHODIMP get_Settings(INode** settings) override { return Get(settings, &Driver::get_IDriverSetup_Settings); }
    STDMETHODIMP put_OnLine(VARIANT_BOOL onLine) override { return Call(&Driver::put_IDriverSetup_OnLine, onLine); }
    STDMETHODIMP get_OnLine(VARIANT_BOOL* onLine) override { return Get(onLine, &Driver::get_IDriverSetup_OnLine); }

  private:
    // The driver stays for the length of a call: a host that handles its events in a wait may let go of it.
    template <class Out, class Member, class... In>
    HRESULT Get(Out* value, Member member, In... arguments) {
        const ComPtr<IUnknown> self(static_cast<_clsTarn4x*>(this));
        return GetMember(driver_, __uuidof(_clsTarn4x), value, member, arguments...);
    }
    template <class Member, class... In>
    HRESULT Call(Member member, In... arguments) {
        const ComPtr<IUnknown> self(static_cast<_clsTarn4x*>(this));
        return CallMember(driver_, __uuidof(_clsTarn4x), member, arguments...);
    }

    Driver driver_{ComFramework()};
};

constexpr DISPID ScreenShotIdentifier = 0x68030110;
constexpr DISPID BytesPosition = 1;  // ScreenShot(udtMode, bytBuffer)

// The arguments of a call with the values of the script's variables in place of references to them. The bytes of
// ScreenShot go into an array on the way.
class ScriptArguments {
  public:
    ScriptArguments(DISPID member, const DISPPARAMS& given) : arguments_(given) {
        if (std::none_of(given.rgvarg, given.rgvarg + given.cArgs, Refers)) return;
        values_.assign(given.rgvarg, given.rgvarg + given.cArgs);
        arguments_.rgvarg = values_.data();
        for (UINT index = 0; index < given.cArgs; ++index) {
            VARIANT& value = values_[index];
            if (!Refers(value)) continue;
            VARIANT* variable = value.pvarVal;
            while (Refers(*variable)) variable = variable->pvarVal;
            if (member == ScreenShotIdentifier && Position(given, index) == BytesPosition) {
                target_ = variable;
                value.vt = VT_BYREF | VT_ARRAY | VT_UI1;
                value.pparray = &array_;
            } else {
                value = *variable;
            }
        }
    }
    ~ScriptArguments() {
        if (array_) SafeArrayDestroy(array_);
    }
    ScriptArguments(const ScriptArguments&) = delete;
    ScriptArguments& operator=(const ScriptArguments&) = delete;

    DISPPARAMS* Get() { return &arguments_; }

    // Puts the bytes, if any have come, into the script's variable.
    void HandOver() {
        if (!array_) return;
        VariantClear(target_);
        target_->vt = VT_ARRAY | VT_UI1;
        target_->parray = std::exchange(array_, nullptr);
    }

  private:
    static bool Refers(const VARIANT& value) { return value.vt == (VT_BYREF | VT_VARIANT); }

    // Named arguments come first; the others follow from the last one to the first.
    static DISPID Position(const DISPPARAMS& given, UINT index) {
        if (index < given.cNamedArgs) return given.rgdispidNamedArgs[index];
        return static_cast<DISPID>(given.cArgs - 1 - index);
    }

    std::vector<VARIANT> values_;
    DISPPARAMS arguments_;
    VARIANT* target_ = nullptr;
    SAFEARRAY* array_ = nullptr;
};

}  // namespace

template <>
STDMETHODIMP Dispatch<_clsTarn4x>::Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments,
                                          VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!arguments) return E_POINTER;
    return Border(IID_IDispatch, [&] {
        ScriptArguments passed(member, *arguments);
        const HRESULT called =
            Shared().Members().Invoke(this, member, flags, passed.Get(), result, exception, badArgument);
        if (SUCCEEDED(called)) passed.HandOver();
        return called;
    });
}

HRESULT CreateDriver(REFIID iid, void** object) { return Create<DriverFace>(iid, object); }

}  // namespace com
