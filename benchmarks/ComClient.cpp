#define INITGUID
#include "benchmarks/ComClient.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "platform/com/Errors.h"
#include "platform/com/Proxies.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"

namespace bench {

using com::Bstr;
using com::Check;
using com::Variant;

namespace {

/// A service that the drivers of the process share, created once in each apartment.
template <class Service>
com::ComPtr<Service> Shared(const char* progId) {
    return com::CreateByProgId(progId, __uuidof(Service)).template As<Service>();
}

}  // namespace

Client::Parts::Parts()
    : driver(com::CreateByProgId("XTarn4x.clsTarn4x", __uuidof(_clsTarn4x)).As<_clsTarn4x>()),
      setup(driver.As<IDriverSetup>()) {
    Check(setup->get_Settings(settings.put()), setup.get());
    Check(Shared<IApplication>("Seamlib.clsApplication")->put_DelayScale(0.0));
}

void Client::Parts::Set(const wchar_t* path, const std::string& value) {
    com::ComPtr<INode> node;
    Check(settings->get_Item(Variant(com::ToVariant(platform::Value(com::Utf8(path)))), node.put()), settings.get());
    Check(node->put_Value(Variant(com::ToVariant(platform::Value(value)))), node.get());
}

Client::Client() : parts(std::make_unique<Parts>()) {}
Client::~Client() = default;

void Client::GoOnLine(const std::string& port) {
    parts->Set(L"Remote Control", "TCP/IP");
    parts->Set(L"TCP/IP.Port", port);
    Check(parts->setup->put_OnLine(VARIANT_TRUE), parts->setup.get());
    VARIANT_BOOL onLine = VARIANT_FALSE;
    Check(parts->setup->get_OnLine(&onLine), parts->setup.get());
    if (onLine == VARIANT_FALSE) throw std::runtime_error("no receiver on port " + port);
}

void Client::GoOffLine() { Check(parts->setup->put_OnLine(VARIANT_FALSE), parts->setup.get()); }

double Client::Level() {
    double level = 0.0;
    Check(parts->driver->get_MeasureRfLevel(&level), parts->driver.get());
    return level;
}

std::size_t Client::Screen() {
    SAFEARRAY* image = nullptr;
    VARIANT_BOOL done = VARIANT_FALSE;
    Check(parts->driver->get_ScreenShot(tarnTransfer, &image, &done), parts->driver.get());
    const std::size_t size = image ? image->rgsabound[0].cElements : 0;
    SafeArrayDestroy(image);
    return size;
}

void Client::LogMessages(bool log) { parts->Set(L"Log Messages", log ? "Yes" : "No"); }

void LogInto(const std::string& fileName) {
    Check(Shared<IMessageLog>("Seamlib.clsMessageLog")->put_FileName(Bstr(fileName).get()));
}

void Apartment::Enter() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
void Apartment::Leave() { CoUninitialize(); }

std::size_t MemoryInUse() {
    HANDLE heaps[256];
    const DWORD count = std::min<DWORD>(GetProcessHeaps(std::size(heaps), heaps), std::size(heaps));
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry)) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
        }
        HeapUnlock(heaps[i]);
    }
    return bytes;
}

}  // namespace bench
