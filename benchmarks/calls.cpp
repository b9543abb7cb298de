// Times calls of the registered driver that need no instrument, through the function table and through IDispatch:
//
//   bench-calls PORT
//
// PORT is that of a simulated receiver. Prints as bench-dialogue does.
#include <cstdio>
#include <stdexcept>

#include "benchmarks/ComClient.h"
#include "benchmarks/Rounds.h"
#include "platform/com/Errors.h"
#include "platform/com/Proxies.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"

namespace {

using com::Check;

DISPID Lookup(IDispatch* object, const wchar_t* name) {
    auto* text = const_cast<wchar_t*>(name);
    DISPID identifier = 0;
    Check(object->GetIDsOfNames(GUID{}, &text, 1, LOCALE_USER_DEFAULT, &identifier), object);
    return identifier;
}

/// Reads a property, or calls a method with one argument, through Invoke.
void Invoke(IDispatch* object, DISPID identifier, WORD how, UINT arguments = 0) {
    VARIANT argument;
    argument.vt = VT_I4;
    argument.lVal = 0;
    DISPPARAMS parameters{&argument, nullptr, arguments, 0};
    VARIANT result;
    VariantInit(&result);
    Check(object->Invoke(identifier, GUID{}, LOCALE_USER_DEFAULT, how, &parameters, &result, nullptr, nullptr), object);
    VariantClear(&result);
}

void Run(const char* port) {
    bench::Client client;
    client.GoOnLine(port);
    _clsTarn4x* driver = client.parts->driver.get();
    Check(driver->put_MeasureMode(tarnPAR), driver);

    const auto log = com::CreateByProgId("Seamlib.clsMessageLog", __uuidof(IMessageLog)).As<IMessageLog>();
    const com::Bstr source("TARN"), text("READ:RF:LEVEL?");
    const com::Variant data(com::ToVariant(platform::Value(std::string("-45.3"))));
    const DISPID prefix = Lookup(driver, L"Prefix"), mode = Lookup(driver, L"MeasureMode");
    // The first member that needs no instrument, one of its kind further down, and the last member.
    const DISPID first = Lookup(driver, L"ResponseString"), middle = Lookup(driver, L"Postfix");
    const DISPID last = Lookup(driver, L"ValueCodeRate");
    constexpr int batch = 100;
    bench::RunRound(
        {{"Prefix, function table", batch,
          [=] {
              VARIANT value;
              driver->get_Prefix(&value);
              VariantClear(&value);
          }},
         {"MeasureMode, function table", batch,
          [=] {
              TarnMeasureModes value;
              driver->get_MeasureMode(&value);
          }},
         {"message log entry", batch, [&] { Check(log->Log(5, source.get(), text.get(), data), log.get()); }},
         {"Prefix, Invoke", batch, [=] { Invoke(driver, prefix, DISPATCH_PROPERTYGET); }},
         {"MeasureMode, Invoke", batch, [=] { Invoke(driver, mode, DISPATCH_PROPERTYGET); }},
         {"ResponseString, Invoke", batch, [=] { Invoke(driver, first, DISPATCH_PROPERTYGET); }},
         {"Postfix, Invoke", batch, [=] { Invoke(driver, middle, DISPATCH_PROPERTYGET); }},
         {"ValueCodeRate, Invoke", batch, [=] { Invoke(driver, last, DISPATCH_METHOD, 1); }},
         {"name of the first member", batch, [=] { Lookup(driver, L"Reset"); }},
         {"name of the last member", batch, [=] { Lookup(driver, L"ValueCodeRate"); }},
         {"ResponseString, by name", batch,
          [=] { Invoke(driver, Lookup(driver, L"ResponseString"), DISPATCH_PROPERTYGET); }},
         {"ValueCodeRate, by name", batch,
          [=] { Invoke(driver, Lookup(driver, L"ValueCodeRate"), DISPATCH_METHOD, 1); }}},
        200);

    // With the instrument: a member near the front and one near the end of the interface, both of two exchanges.
    bench::RunRound({{"MeasureTsBitrate, by name", 1,
                      [=] { Invoke(driver, Lookup(driver, L"MeasureTsBitrate"), DISPATCH_PROPERTYGET); }},
                     {"MeasureCodeRate, by name", 1,
                      [=] { Invoke(driver, Lookup(driver, L"MeasureCodeRate"), DISPATCH_PROPERTYGET); }}},
                    500);
    client.GoOffLine();
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: bench-calls PORT\n", stderr);
        return 2;
    }
    const bench::Apartment apartment;
    try {
        Run(arguments[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench-calls: %s\n", error.what());
        return 1;
    }
    return 0;
}
