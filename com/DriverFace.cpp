#include "com/DriverFace.h"

#include <cstdint>
#include <vector>

#include "com/Members.h"
#include "driver/clsTarn4x.h"
#include "platform/com/DualFace.h"
#include "platform/com/Variants.h"

namespace com {
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

}  // namespace

HRESULT CreateDriver(REFIID iid, void** object) { return Create<DriverFace>(iid, object); }

}  // namespace com
