// Times calls of the registered driver through the function table and through IDispatch, without an instrument's time:
//
//   com-calls.exe PORT
//
// PORT is that of a simulated receiver. Prints one line a case: name, median and 99th percentile in nanoseconds.
#define INITGUID
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "XTarn4x_h.h"

namespace {

void Check(HRESULT result, const char* what) {
    if (FAILED(result)) throw std::runtime_error(what);
}

template <class Interface>
Interface* Create(const wchar_t* progId) {
    CLSID clsid;
    void* object = nullptr;
    Check(CLSIDFromProgID(progId, &clsid), "finding a class");
    Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object), "creating an object");
    return static_cast<Interface*>(object);
}

void Set(INode* settings, const wchar_t* path, const wchar_t* text) {
    VARIANT name, value;
    name.vt = value.vt = VT_BSTR;
    name.bstrVal = SysAllocString(path);
    value.bstrVal = SysAllocString(text);
    INode* node = nullptr;
    Check(settings->get_Item(name, &node), "finding a setting");
    Check(node->put_Value(value), "writing a setting");
    node->Release();
    VariantClear(&name);
    VariantClear(&value);
}

/// Median and 99th percentile of batches of calls, in nanoseconds a call.
template <class Call>
void Time(const char* name, Call&& call) {
    constexpr int batches = 400, batch = 100;
    std::vector<double> times;
    for (int i = 0; i < batches; ++i) {
        const auto start = std::chrono::steady_clock::now();
        for (int n = 0; n < batch; ++n) call();
        const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
        times.push_back(taken.count() / batch);
    }
    std::ranges::sort(times);
    std::printf("%-32s %9.0f %9.0f\n", name, times[times.size() / 2], times[times.size() * 99 / 100]);
}

DISPID Lookup(IDispatch* object, const wchar_t* name) {
    auto* text = const_cast<wchar_t*>(name);
    DISPID identifier = 0;
    Check(object->GetIDsOfNames(GUID{}, &text, 1, LOCALE_USER_DEFAULT, &identifier), "looking up a name");
    return identifier;
}

void Read(IDispatch* object, DISPID identifier) {
    DISPPARAMS none{};
    VARIANT result;
    VariantInit(&result);
    Check(
        object->Invoke(identifier, GUID{}, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr),
        "reading late-bound");
    VariantClear(&result);
}

void Format(IDispatch* object, DISPID identifier) {
    VARIANT argument;
    argument.vt = VT_I4;
    argument.lVal = 0;
    DISPPARAMS one{&argument, nullptr, 1, 0};
    VARIANT result;
    VariantInit(&result);
    Check(object->Invoke(identifier, GUID{}, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &one, &result, nullptr, nullptr),
          "calling late-bound");
    VariantClear(&result);
}

void Run(const wchar_t* port) {
    auto* application = Create<IApplication>(L"Seamlib.clsApplication");
    application->put_DelayScale(0.0);
    auto* driver = Create<_clsTarn4x>(L"XTarn4x.clsTarn4x");
    IDriverSetup* setup = nullptr;
    Check(driver->QueryInterface(__uuidof(IDriverSetup), reinterpret_cast<void**>(&setup)), "the setup interface");
    INode* settings = nullptr;
    Check(setup->get_Settings(&settings), "the settings");
    Set(settings, L"Remote Control", L"TCP/IP");
    Set(settings, L"TCP/IP.Port", port);
    Check(setup->put_OnLine(VARIANT_TRUE), "going on-line");
    Check(driver->put_MeasureMode(tarnPAR), "selecting a measure mode");

    Time("vtable Prefix", [&] {
        VARIANT prefix;
        driver->get_Prefix(&prefix);
        VariantClear(&prefix);
    });
    Time("vtable MeasureMode", [&] {
        TarnMeasureModes mode;
        driver->get_MeasureMode(&mode);
    });
    const DISPID prefix = Lookup(driver, L"Prefix"), mode = Lookup(driver, L"MeasureMode");
    const DISPID first = Lookup(driver, L"FormatFftMode"), last = Lookup(driver, L"ValueCodeRate");
    Time("Invoke Prefix", [&] { Read(driver, prefix); });
    Time("Invoke MeasureMode", [&] { Read(driver, mode); });
    Time("Invoke FormatFftMode", [&] { Format(driver, first); });
    Time("Invoke ValueCodeRate (last)", [&] { Format(driver, last); });
    Time("name Reset (first)", [&] { Lookup(driver, L"Reset"); });
    Time("name VALUECODERATE (last)", [&] { Lookup(driver, L"VALUECODERATE"); });
    Time("property read", [&] {
        double level = 0.0;
        driver->get_MeasureRfLevel(&level);
    });
    Check(setup->put_OnLine(VARIANT_FALSE), "going off-line");
    settings->Release();
    setup->Release();
    driver->Release();
    application->Release();
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: com-calls.exe PORT\n", stderr);
        return 2;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try {
        Run(arguments[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "com-calls: %s failed\n", error.what());
        return 1;
    }
    CoUninitialize();
    return 0;
}
