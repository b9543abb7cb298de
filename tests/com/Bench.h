#pragma once

#include <algorithm>
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
    void Answers(const std::string& dialogue) {
        for (std::size_t from = 0, to; from < dialogue.size(); from = to + 3) {
            to = std::min(dialogue.find(" | ", from), dialogue.size());
            const auto equals = dialogue.find(" = ", from);
            if (equals < to)
                answers_[dialogue.substr(from, equals - from)] = dialogue.substr(equals + 3, to - equals - 3);
        }
    }

    STDMETHODIMP get_Timeout(float* seconds) override { return Give(seconds, 5.0F); }
    STDMETHODIMP put_Timeout(float) override { return S_OK; }
    STDMETHODIMP SendReceive(BSTR command, VARIANT* response) override {
        if (com::ParameterNotFound(*response)) return WriteString(command);
        return com::Border(IID_ITextLink, [&] { com::Assign(*response, Take(com::Utf8(command))); });
    }
    STDMETHODIMP WriteString(BSTR command) override { return Lines.push_back(com::Utf8(command)), S_OK; }
    STDMETHODIMP ReadString(VARIANT command, BSTR* answer) override {
        return com::Border(IID_ITextLink,
                           [&] { *answer = com::ToBstr(Take(com::OptionalText(command).value_or("nothing"))); });
    }
    STDMETHODIMP ReadBlock(short count, VARIANT, VARIANT* data) override {
        const std::string piece = Block.substr(0, static_cast<std::size_t>(count));
        Block.erase(0, piece.size());
        return Give(data, com::ToVariant(std::vector<std::uint8_t>(piece.begin(), piece.end())));
    }
    STDMETHODIMP WriteBlock(short, VARIANT, BSTR) override { return S_OK; }
    STDMETHODIMP put_Name(BSTR name) override { return Give(&Name, com::Utf8(name)); }
    STDMETHODIMP get_Name(BSTR* name) override { return Give(name, com::ToBstr(Name)); }
    STDMETHODIMP get_Settings(INode** settings) override {
        const Bstr name(std::string_view("TCP/IP"));
        return Create<INode>(CLSID_clsNode)->AddSetting(name.get(), 0, 0, nullptr, nullptr, settings);
    }
    STDMETHODIMP put_Connect(VARIANT_BOOL connect) override {
        connected_ = Works ? connect : VARIANT_FALSE;
        com::Check(Create<IApplication>(CLSID_clsApplication)->get_AppState(&StateThen));
        if (!connect || Works) return S_OK;
        com::ComFramework()->TheMessageLog().Log(1, "TARN", "No connection", "COM9: sent nothing");
        return E_FAIL;
    }
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* connected) override { return Give(connected, connected_); }

    std::vector<std::string> Lines;
    std::string Block, Name;  ///< what ReadBlock hands out, piece by piece
    bool Works = true;
    long StateThen = 0;  ///< of the application, when the link was opened or closed last

  private:
    std::string Take(const std::string& line) {
        Lines.push_back(line);
        if (!answers_.contains(line)) throw platform::AutomationError(platform::ObjectError(2014), "link", "Timed out");
        std::string text = answers_[line];
        const auto place = text.find("{n}");
        return place == text.npos ? text : text.replace(place, 3, std::to_string(std::ranges::count(Lines, line)));
    }

    std::map<std::string, std::string> answers_;
    VARIANT_BOOL connected_ = VARIANT_FALSE;
};

/// A driver whose TCP/IP link leads to a scripted instrument, on-line unless told; delays take no time. Creating a
/// driver takes a serial port that opens.
class Bench {
  public:
    explicit Bench(const std::string& dialogue = "", bool onLine = true) {
        EXPECT_EQ(application->put_DelayScale(0.0), S_OK);
        link.Answers(
            "SYST:ERR? = 0,\"No error\" | *IDN? = VANTERRA,TARN,100123,5.10 | READ:INFO:DATA? = 0 | "
            "SYSTEM:SERVICE:GET:BOARD:INFO? = 0x83 7.0 | " +
            dialogue);
        EXPECT_EQ(Setting("Remote Control")->put_Value(Arg("TCP/IP")), S_OK);
        OnLine(onLine);
    }
    ~Bench() {
        OnLine(false);
        EXPECT_EQ(application->put_DelayScale(1.0), S_OK);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    /// Takes the driver on-line or off-line, if it is not there already.
    void OnLine(bool onLine) {
        const VARIANT_BOOL wanted = onLine ? VARIANT_TRUE : VARIANT_FALSE;
        VARIANT_BOOL now = VARIANT_FALSE;
        EXPECT_EQ(setup->get_OnLine(&now), S_OK);
        EXPECT_EQ(now == wanted ? S_OK : setup->put_OnLine(wanted), S_OK);
    }
    ComPtr<INode> Setting(const char* path) const {
        ComPtr<INode> settings, setting;
        EXPECT_EQ(setup->get_Settings(settings.put()), S_OK);
        EXPECT_EQ(settings->get_Item(Arg(path), setting.put()), S_OK);
        return setting;
    }

    FakeLink link;
    StandIn standIn{CLSID_clsEthernet, static_cast<ITextLink*>(&link)};
    ComPtr<IApplication> application = Create<IApplication>(CLSID_clsApplication);
    ComPtr<_clsTarn4x> driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    ComPtr<IDriverSetup> setup = driver.As<IDriverSetup>();
    Script script{driver};
};

/// A whole number from an environment variable.
int Environment(const char* variable, int otherwise);

/// A session with the simulated receiver: through the function table and by name, with a read, an object, a failure.
void UseTheReceiver(const ComPtr<_clsTarn4x>& driver);
