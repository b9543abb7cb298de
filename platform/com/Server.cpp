#include "platform/com/Server.h"

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace com {
namespace {

LONG objects = 0;
LONG locks = 0;

class ClassFactory : public IClassFactory, public ISupportErrorInfo {
  public:
    explicit ClassFactory(const ClassEntry& entry) : entry_(entry) { CountObject(); }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IClassFactory) *object = static_cast<IClassFactory*>(this);
        if (iid == IID_ISupportErrorInfo) *object = static_cast<ISupportErrorInfo*>(this);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }

    STDMETHODIMP_(ULONG) Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete this;
            DiscountObject();
        }
        return static_cast<ULONG>(left);
    }

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return Border(IID_IClassFactory, [&] { return entry_.create(iid, object); });
    }

    STDMETHODIMP LockServer(BOOL lock) override {
        lock ? InterlockedIncrement(&locks) : InterlockedDecrement(&locks);
        return S_OK;
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override { return iid == IID_IClassFactory ? S_OK : S_FALSE; }

  private:
    virtual ~ClassFactory() = default;

    const ClassEntry& entry_;
    LONG references_ = 1;
};

}  // namespace

HMODULE ThisModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }

std::wstring FileName(HMODULE module) {
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) {
            name.resize(length);
            return name;
        }
        name.resize(2 * name.size());
    }
}

void CountObject() { InterlockedIncrement(&objects); }

void DiscountObject() { InterlockedDecrement(&objects); }

bool InUse() {
    return InterlockedCompareExchange(&objects, 0, 0) != 0 || InterlockedCompareExchange(&locks, 0, 0) != 0;
}

HRESULT GetClassObject(const Server& server, REFCLSID clsid, REFIID iid, void** factory) {
    if (!factory) return E_POINTER;
    *factory = nullptr;
    for (const auto& entry : server.classes) {
        if (*entry.clsid != clsid) continue;
        return Border(IID_IClassFactory, [&] {
            return ComPtr<IClassFactory>::Attach(new ClassFactory(entry))->QueryInterface(iid, factory);
        });
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace com
