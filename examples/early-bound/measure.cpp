// An early-bound C++ host: creates the driver through COM, takes it on-line and measures through the function table.
//
//   measure.exe [HOST [PORT]]
//
// XTarn4x_h.h, Seamlib_h.h and Seamcfg_h.h come from the type libraries of the components (widl -h, or #import with
// MSVC).
#define INITGUID
#include <windows.h>

#include <cstdio>

#include "XTarn4x_h.h"

namespace {

/// Prints what the driver says about a failure, and ends.
[[noreturn]] void Fail(const char* what, HRESULT result) {
    IErrorInfo* info = nullptr;
    BSTR source = nullptr;
    BSTR description = nullptr;
    if (GetErrorInfo(0, &info) == S_OK) {
        info->GetSource(&source);
        info->GetDescription(&description);
    }
    std::printf("%s failed with %08lX\n%ls: %ls\n", what, static_cast<unsigned long>(result),
                source != nullptr ? source : L"no source", description != nullptr ? description : L"no description");
    std::exit(1);
}

void Check(const char* what, HRESULT result) {
    if (FAILED(result)) Fail(what, result);
}

template <class Interface>
Interface* Create(const wchar_t* progId) {
    CLSID clsid;
    Check("Looking up the class", CLSIDFromProgID(progId, &clsid));
    void* object = nullptr;
    Check("Creating the object", CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object));
    return static_cast<Interface*>(object);
}

/// Writes a setting, for example "TCP/IP.Port".
void Set(INode* settings, const wchar_t* path, const wchar_t* text) {
    VARIANT name;
    name.vt = VT_BSTR;
    name.bstrVal = SysAllocString(path);
    VARIANT value;
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(text);
    INode* setting = nullptr;
    Check("Finding a setting", settings->get_Item(name, &setting));
    Check("Writing a setting", setting->put_Value(value));
    setting->Release();
    VariantClear(&name);
    VariantClear(&value);
}

void Measure(_clsTarn4x* driver, const char* name, HRESULT (STDMETHODCALLTYPE _clsTarn4x::*member)(double*),
             const char* unit) {
    double value = 0.0;
    Check(name, (driver->*member)(&value));
    std::printf("%-24s %14.6g %s\n", name, value, unit);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    Check("Starting COM", CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    auto* application = Create<IApplication>(L"Seamlib.clsApplication");
    application->put_DelayScale(0.0);  // for the simulated receiver; a real instrument needs its waits
    auto* driver = Create<_clsTarn4x>(L"XTarn4x.clsTarn4x");
    auto* host = Create<IHost>(L"Seamlib.clsHost");
    ISetup* setup = nullptr;
    Check("Setup", host->Setup(driver, &setup));
    INode* settings = nullptr;
    Check("Settings", setup->get_Settings(&settings));
    Set(settings, L"Remote Control", L"TCP/IP");
    Set(settings, L"TCP/IP.Host", count > 1 ? arguments[1] : L"127.0.0.1");
    Set(settings, L"TCP/IP.Port", count > 2 ? arguments[2] : L"5025");

    Check("Going on-line", setup->put_OnLine(VARIANT_TRUE));
    VARIANT_BOOL onLine = VARIANT_FALSE;
    Check("OnLine", setup->get_OnLine(&onLine));
    if (onLine == VARIANT_FALSE) {
        BSTR reason = nullptr;
        Check("WhyOffLine", setup->get_WhyOffLine(&reason));
        std::printf("The receiver does not answer: %ls\n", reason);
        return 1;
    }
    Check("RF", driver->put_RF(474e6));
    Check("MeasureMode", driver->put_MeasureMode(tarnPAR));
    Measure(driver, "RF level", &_clsTarn4x::get_MeasureRfLevel, "dBm");
    Measure(driver, "MER (rms)", &_clsTarn4x::get_MeasureOfdmMerRmsDb, "dB");
    Measure(driver, "Phase jitter", &_clsTarn4x::get_MeasureOfdmPhaseJitter, "deg");
    Measure(driver, "BER before Viterbi", &_clsTarn4x::get_MeasureBerBeforeVit, "");
    Check("Going off-line", setup->put_OnLine(VARIANT_FALSE));

    settings->Release();
    setup->Release();
    host->Release();
    driver->Release();
    application->Release();
    CoUninitialize();
    return 0;
}
