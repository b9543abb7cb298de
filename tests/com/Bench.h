#pragma once

#include <map>

#include "platform/com/Object.h"
#include "tests/com/Client.h"

/// Hands out an output.
template <class Out, class Value>
HRESULT Give(Out* output, Value value) {
    *output = value;
    return S_OK;
}

/// A COM object on the test's stack, without a type library. While clients hold it, com::InUse() tells so.
template <class First, class... More>
class Fake : public com::Object<First, More..., ISupportErrorInfo> {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return Give(count, 0U); }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return SupportsErrors ? S_OK : S_FALSE; }

    bool SupportsErrors = true;

  private:
    void* Find(REFIID iid) override {
        return iid == IID_IDispatch ? static_cast<First*>(this) : Fake::Object::Find(iid);
    }
    void LastReleased() override {}
};

/// Stands in for a registered class in this apartment: its factory hands out one object, or fails.
class StandIn : public com::Object<IClassFactory, ISupportErrorInfo> {
  public:
    StandIn(REFCLSID clsid, IUnknown* object) : object_(object) {
        com::Check(CoRegisterClassObject(clsid, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                                         REGCLS_MULTIPLEUSE, &cookie_));
    }
    ~StandIn() override { CoRevokeClassObject(cookie_); }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return S_OK; }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return com::Border(IID_IClassFactory, [&] {
            if (object_) return object_->QueryInterface(iid, object);
            throw platform::AutomationError(380, "source", "text");
        });
    }

  private:
    void LastReleased() override {}

    IUnknown* object_;
    DWORD cookie_ = 0;
};

/// A link to a scripted instrument: notes the lines that leave, and answers those that it has an answer for. "{n}" in
/// an answer becomes the number of times that the query has come.
class FakeLink : public Fake<ITextLink, IBlockLink, IConnection> {
  public:
    /// From now on the answers to queries, as "QUERY? = ANSWER | QUERY? = ANSWER".
    void Answers(const std::string& dialogue);

    STDMETHODIMP get_Timeout(float* seconds) override { return Give(seconds, 5.0F); }
    STDMETHODIMP put_Timeout(float) override { return S_OK; }
    STDMETHODIMP SendReceive(BSTR command, VARIANT* response) override;
    STDMETHODIMP WriteString(BSTR command) override;
    STDMETHODIMP ReadString(VARIANT command, BSTR* answer) override;
    STDMETHODIMP ReadBlock(short count, VARIANT command, VARIANT* data) override;
    STDMETHODIMP WriteBlock(short, VARIANT, BSTR) override { return S_OK; }
    STDMETHODIMP put_Name(BSTR name) override { return Give(&Name, com::Utf8(name)); }
    STDMETHODIMP get_Name(BSTR* name) override { return Give(name, com::ToBstr(Name)); }
    STDMETHODIMP get_Settings(INode** settings) override;
    STDMETHODIMP put_Connect(VARIANT_BOOL connect) override;
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* connected) override { return Give(connected, connected_); }

    std::vector<std::string> Lines;
    std::string Block, Name;  ///< what ReadBlock hands out, piece by piece
    bool Works = true;

  private:
    std::string Take(const std::string& line);

    std::map<std::string, std::string> answers_;
    VARIANT_BOOL connected_ = VARIANT_FALSE;
};

/// A driver whose TCP/IP link leads to a scripted instrument, on-line unless told; delays take no time. Creating a
/// driver takes a serial port that opens.
class Bench {
  public:
    explicit Bench(const std::string& dialogue = "", bool onLine = true);
    ~Bench();
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    /// Takes the driver on-line or off-line, if it is not there already.
    void OnLine(bool onLine);
    ComPtr<INode> Setting(const char* path) const;

    FakeLink link;
    StandIn standIn{CLSID_clsEthernet, static_cast<ITextLink*>(&link)};
    ComPtr<IApplication> application = Create<IApplication>(CLSID_clsApplication);
    ComPtr<_clsTarn4x> driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    ComPtr<IDriverSetup> setup = driver.As<IDriverSetup>();
    Script script{driver};
};
