#include "host/com/TransportFaces.h"

#include "host/Transports.h"
#include "host/com/Members.h"
#include "host/com/MessagePump.h"
#include "platform/com/DualFace.h"
#include "platform/com/Proxies.h"

namespace com {
namespace {

std::shared_ptr<platform::Transport> NewTransport(const char* progId) {
    const std::shared_ptr<platform::Framework> framework = ComFramework();
    return host::CreateTransport(
        progId, *framework->CreateNode(),
        {.AbortRequested = [framework] { return framework->TheApplication().AbortRequested(); },
         .Log = [framework](auto... entry) { framework->TheMessageLog().Log(entry...); },
         .Wait = host::PumpMessages,
         .ErrorReporting = [framework] { return framework->TheErrorService().ErrorReporting(); }});
}

template <const CLSID* Coclass, const char* ProgId>
class TransportFace : public DualFace<Coclass, ITextLink, IBlockLink, IConnection> {
  public:
    STDMETHODIMP get_Timeout(float* seconds) override {
        return Get<ITextLink>(seconds, [&] { return transport_->Timeout(); });
    }
    STDMETHODIMP put_Timeout(float seconds) override {
        return Call<ITextLink>([&] { transport_->SetTimeout(seconds); });
    }
    STDMETHODIMP SendReceive(BSTR command, VARIANT* response) override {
        return Call<ITextLink>([&] {
            if (!response || ParameterNotFound(*response)) return transport_->SendReceive(Utf8(command), nullptr);
            std::string answer;
            transport_->SendReceive(Utf8(command), &answer);
            Assign(*response, answer);
        });
    }
    STDMETHODIMP WriteString(BSTR command) override {
        return Call<ITextLink>([&] { transport_->WriteString(Utf8(command)); });
    }
    STDMETHODIMP ReadString(VARIANT command, BSTR* answer) override {
        return Get<ITextLink>(answer, [&] { return transport_->ReadString(OptionalText(command)); });
    }

    STDMETHODIMP ReadBlock(short count, VARIANT command, VARIANT* data) override {
        return Get<IBlockLink>(data, [&] { return transport_->ReadBlock(count, OptionalText(command)); });
    }
    STDMETHODIMP WriteBlock(short count, VARIANT data, BSTR command) override {
        return Call<IBlockLink>([&] {
            const auto text = Utf8(command);
            transport_->WriteBlock(count, BytesOf(data),
                                   text.empty() ? std::nullopt : std::optional<std::string_view>(text));
        });
    }

    STDMETHODIMP put_Name(BSTR name) override {
        return Call<IConnection>([&] {
            auto text = Utf8(name);
            transport_->SetName(text);
            name_ = std::move(text);
        });
    }
    STDMETHODIMP get_Name(BSTR* name) override {
        return Get<IConnection>(name, [&] { return name_; });
    }
    STDMETHODIMP get_Settings(INode** settings) override {
        return Get<IConnection>(settings, [&] { return ComPtr<INode>(ComOf(*transport_->Settings())); });
    }
    STDMETHODIMP put_Connect(VARIANT_BOOL connect) override {
        return Call<IConnection>([&] { transport_->Connect(connect != VARIANT_FALSE); });
    }
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* connected) override {
        return Get<IConnection>(connected, [&] { return transport_->IsConnected(); });
    }

  private:
    std::shared_ptr<platform::Transport> transport_ = NewTransport(ProgId);
    std::string name_;
};

}  // namespace

HRESULT CreateGpib(REFIID iid, void** object) { return Create<TransportFace<&CLSID_clsGPIB, GpibId>>(iid, object); }
HRESULT CreateComm(REFIID iid, void** object) { return Create<TransportFace<&CLSID_clsComm, CommId>>(iid, object); }
HRESULT CreateEthernet(REFIID iid, void** object) {
    return Create<TransportFace<&CLSID_clsEthernet, EthernetId>>(iid, object);
}
HRESULT CreateGui(REFIID iid, void** object) { return Create<TransportFace<&CLSID_clsGUI, GuiId>>(iid, object); }

}  // namespace com
