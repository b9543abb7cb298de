#include "platform/com/Server.h"

#include <atomic>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Object.h"
#include "platform/com/Text.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace com {
namespace {

std::atomic<long> inUse = 0;

// A module that is never unloaded has nothing to give back, and no last release can race with its end.
void StayLoaded() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&__ImageBase), &module);
}

class ClassFactory : public Object<IClassFactory, ISupportErrorInfo> {
  public:
    explicit ClassFactory(const ClassEntry& entry) : entry_(entry) {}

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return Border(IID_IClassFactory, [&] {
            StayLoaded();
            return entry_.create(iid, object);
        });
    }

    STDMETHODIMP LockServer(BOOL lock) override {
        lock ? CountObject() : DiscountObject();
        return S_OK;
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override { return iid == IID_IClassFactory ? S_OK : S_FALSE; }

  private:
    const ClassEntry& entry_;
};

}  // namespace

HMODULE ThisModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }

std::wstring FileName(HMODULE module) {
    std::wstring name(0x8000, L'\0');  // the longest path
    name.resize(GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

std::string ComponentName() {
    const auto file = Utf8(FileName(ThisModule()));
    const auto name = file.substr(file.rfind('\\') + 1);
    return name.substr(0, name.rfind('.'));
}

void CountObject() { ++inUse; }

void DiscountObject() { --inUse; }

bool InUse() { return inUse != 0; }

HRESULT GetClassObject(const Server& server, REFCLSID clsid, REFIID iid, void** factory) {
    if (!factory) return E_POINTER;
    *factory = nullptr;
    for (const auto& entry : server.classes) {
        if (*entry.clsid != clsid) continue;
        return Border(IID_IClassFactory,
                      [&] { return ComPtr<IClassFactory>(new ClassFactory(entry))->QueryInterface(iid, factory); });
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace com
