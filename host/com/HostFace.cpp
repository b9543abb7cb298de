#include "host/com/HostFace.h"

#include <algorithm>
#include <cstdio>

#include "host/FailureWatch.h"
#include "host/com/Members.h"
#include "host/com/ServiceFaces.h"
#include "platform/com/Categories.h"
#include "platform/com/DualFace.h"
#include "platform/com/Proxies.h"

namespace com {
namespace {

constexpr char Source[] = "Seamlib.clsHost";

/// Calls a driver's member for an interface of ours. What the driver raises reaches the caller unchanged.
template <class Face, class Driver, class... Arguments>
HRESULT Forward(const ComPtr<Driver>& driver, HRESULT (STDMETHODCALLTYPE Driver::*member)(Arguments...),
                Arguments... arguments) {
    return Call<Face>([&] { Check((driver.get()->*member)(arguments...), driver.get()); });
}

class SetupFace : public DualFace<nullptr, ISetup> {
  public:
    explicit SetupFace(ComPtr<IDriverSetup> driver) : driver_(std::move(driver)) {}

    STDMETHODIMP put_Name(BSTR name) override { return Forward<ISetup>(driver_, &IDriverSetup::put_Name, name); }
    STDMETHODIMP get_Name(BSTR* name) override { return Forward<ISetup>(driver_, &IDriverSetup::get_Name, name); }
    STDMETHODIMP get_Settings(INode** settings) override {
        return Forward<ISetup>(driver_, &IDriverSetup::get_Settings, settings);
    }
    STDMETHODIMP put_OnLine(VARIANT_BOOL onLine) override {
        if (onLine == VARIANT_FALSE) return Forward<ISetup>(driver_, &IDriverSetup::put_OnLine, onLine);
        return Call<ISetup>([&] {
            whyOffLine_.clear();
            const host::FailureWatch failures(TheErrorService());
            Check(driver_->put_OnLine(onLine), driver_.get());
            VARIANT_BOOL isOnLine = VARIANT_FALSE;
            Check(driver_->get_OnLine(&isOnLine), driver_.get());
            if (isOnLine != VARIANT_FALSE) return;
            whyOffLine_ = failures.Reason().empty() ? "The driver has given no reason" : failures.Reason();
        });
    }
    STDMETHODIMP get_OnLine(VARIANT_BOOL* onLine) override {
        return Forward<ISetup>(driver_, &IDriverSetup::get_OnLine, onLine);
    }
    STDMETHODIMP get_WhyOffLine(BSTR* text) override {
        return Get<ISetup>(text, [&] { return whyOffLine_; });
    }

  private:
    std::string whyOffLine_;
    ComPtr<IDriverSetup> driver_;
};

class IdentifyFace : public DualFace<nullptr, IIdentify> {
  public:
    explicit IdentifyFace(ComPtr<IDriverIdentify> driver) : driver_(std::move(driver)) {}

    STDMETHODIMP get_Manufacturer(BSTR* text) override { return Read(&IDriverIdentify::get_Manufacturer, text); }
    STDMETHODIMP get_ModelNumber(BSTR* text) override { return Read(&IDriverIdentify::get_ModelNumber, text); }
    STDMETHODIMP get_SerialNumber(BSTR* text) override { return Read(&IDriverIdentify::get_SerialNumber, text); }
    STDMETHODIMP get_FirmwareVersion(BSTR* text) override { return Read(&IDriverIdentify::get_FirmwareVersion, text); }
    STDMETHODIMP get_InstalledHardware(BSTR* text) override {
        return Read(&IDriverIdentify::get_InstalledHardware, text);
    }

  private:
    HRESULT Read(HRESULT (STDMETHODCALLTYPE IDriverIdentify::*member)(BSTR*), BSTR* text) {
        return Forward<IIdentify>(driver_, member, text);
    }

    ComPtr<IDriverIdentify> driver_;
};

/// The driver's interface of that kind.
template <class Interface>
ComPtr<Interface> InterfaceOf(IDispatch* driver, const char* what) {
    if (!driver) throw platform::AutomationError(platform::ObjectVariableNotSet, Source, "There is no driver object");
    if (auto found = ComPtr<IDispatch>(driver).As<Interface>()) return found;
    throw platform::AutomationError(platform::TypeMismatch, Source,
                                    std::string("The object is no driver that has ") + what);
}

template <class Face, class Interface>
ComPtr<Interface> FaceFor(auto driver) {
    return ComPtr<Interface>(new Face(std::move(driver)));
}

/// Names of the components that have a class in the drivers' category, in the order of their names.
std::vector<std::string> DriverComponents() {
    ComPtr<ICatInformation> categories;
    Check(CoCreateInstance(CLSID_StdComponentCategoriesMgr, nullptr, CLSCTX_INPROC_SERVER, IID_ICatInformation,
                           categories.putVoid()));
    CATID wanted[] = {DriverCategory};
    ComPtr<IEnumCLSID> classes;
    Check(categories->EnumClassesOfCategories(1, wanted, 0, nullptr, classes.put()));
    std::vector<std::string> components;
    CLSID clsid;
    while (classes->Next(1, &clsid, nullptr) == S_OK) {
        LPOLESTR progId = nullptr;
        if (FAILED(ProgIDFromCLSID(clsid, &progId))) continue;
        const auto name = Utf8(std::wstring_view(progId));
        CoTaskMemFree(progId);
        components.push_back(name.substr(0, name.find('.')));
    }
    std::ranges::sort(components);
    components.erase(std::unique(components.begin(), components.end()), components.end());
    return components;
}

/// An array that script engines can index.
Variant ArrayOf(const std::vector<std::string>& texts) {
    Variant result;
    V_ARRAY(&result) = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(texts.size()));
    if (!V_ARRAY(&result)) throw std::bad_alloc();
    V_VT(&result) = VT_ARRAY | VT_VARIANT;
    LONG index = 0;
    for (const auto& text : texts) {
        Variant element(ToVariant(platform::Value(text)));
        Check(SafeArrayPutElement(V_ARRAY(&result), &index, &element));
        ++index;
    }
    return result;
}

ComPtr<IRegister> RegisterOf(const std::string& component) {
    return CreateByProgId<IRegister>(component + ".clsRegister");
}

class HostFace : public DualFace<&CLSID_clsHost, IHost> {
  public:
    STDMETHODIMP get_Drivers(VARIANT* names) override {
        return Get<IHost>(names, [] { return ArrayOf(DriverComponents()); });
    }
    STDMETHODIMP Describe(BSTR component, BSTR* description) override {
        return Get<IHost>(description, [&] {
            Bstr text;
            const auto registration = RegisterOf(Utf8(component));
            Check(registration->GetClassDescription(text.put()), registration.get());
            return text.Utf8();
        });
    }
    STDMETHODIMP CreateDriver(BSTR component, IDispatch** driver) override {
        return Get<IHost>(driver, [&] {
            Bstr className;
            const auto registration = RegisterOf(Utf8(component));
            Check(registration->GetClassName(className.put()), registration.get());
            return CreateByProgId<IDispatch>(Utf8(component) + '.' + className.Utf8());
        });
    }
    STDMETHODIMP Setup(IDispatch* driver, ISetup** setup) override {
        return Get<IHost>(setup, [&] {
            return FaceFor<SetupFace, ISetup>(InterfaceOf<IDriverSetup>(driver, "settings and an on-line state"));
        });
    }
    STDMETHODIMP Identify(IDispatch* driver, IIdentify** identify) override {
        return Get<IHost>(identify, [&] {
            return FaceFor<IdentifyFace, IIdentify>(InterfaceOf<IDriverIdentify>(driver, "an identity"));
        });
    }
    STDMETHODIMP SaveBytes(BSTR fileName, VARIANT bytes) override {
        return Call<IHost>([&] {
            const auto contents = BytesOf(bytes);
            std::FILE* file = _wfopen(fileName ? fileName : L"", L"wb");
            const bool written = file && std::fwrite(contents.data(), 1, contents.size(), file) == contents.size();
            if (!file || std::fclose(file) != 0 || !written) {
                throw platform::AutomationError(platform::PathFileAccessError, Source,
                                                "The file " + Utf8(fileName) + " cannot be written");
            }
        });
    }
};

}  // namespace

HRESULT CreateHost(REFIID iid, void** object) { return Create<HostFace>(iid, object); }

}  // namespace com
