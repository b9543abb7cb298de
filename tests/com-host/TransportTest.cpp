#include "tests/com-host/Client.h"
#include "tests/com-host/Fake.h"

using com::ComPtr;
using platform::Value;

namespace {

/// Notes what arrives and leaves the answer to a query as it is.
class FakeLink : public Fake<ITextLink> {
  public:
    STDMETHODIMP get_Timeout(float* seconds) override { return Give(seconds, 5.0F); }
    STDMETHODIMP put_Timeout(float) override {
        return com::Border(IID_ITextLink, [] {
            throw platform::AutomationError(platform::ObjectError(platform::ReceiveTimedOut), "clsLink", "Timed out");
        });
    }
    STDMETHODIMP SendReceive(BSTR command, VARIANT* response) override {
        const bool without = com::ParameterNotFound(*response);
        return Give(&Seen, com::Utf8(command) + (without ? " without response" : " into " + com::TextOf(*response)));
    }
    STDMETHODIMP WriteString(BSTR command) override { return Give(&Seen, com::Utf8(command)); }
    STDMETHODIMP ReadString(VARIANT command, BSTR* answer) override {
        return Give(answer, com::ToBstr(com::OptionalText(command).value_or("no command")));
    }

    std::string Seen;
};

}  // namespace

TEST(TransportProxy, PassesOptionalArguments) {
    FakeLink link;
    {
        com::TransportProxy proxy{ComPtr<ITextLink>(&link)};
        std::string answer = "---";
        proxy.SendReceive("RF?", &answer);
        EXPECT_EQ(link.Seen, "RF? into ---");
        EXPECT_EQ(answer, "---");
        proxy.SendReceive("*CLS", nullptr);
        EXPECT_EQ(link.Seen, "*CLS without response");
        EXPECT_EQ(proxy.ReadString(std::nullopt), "no command");
        EXPECT_EQ(proxy.ReadString("SYST:ERR?"), "SYST:ERR?");
        EXPECT_EQ(proxy.Timeout(), 5.0F);
        EXPECT_EQ(Raised([&] { proxy.SetTimeout(1.0F); }),
                  std::to_string(static_cast<std::int32_t>(0x800407DEU)) + "|clsLink|Timed out");
        EXPECT_EQ(link.Taken, 1 + 2) << "only the text interface, and error support when it was needed";
        EXPECT_THROW(proxy.IsConnected(), platform::AutomationError);
    }
    EXPECT_EQ(link.References, 0);
}

TEST(Framework, CreatesTransportsByProgId) {
    const auto framework = com::ComFramework();
    EXPECT_EQ(Raised([&] { framework->CreateTransport("Conduit.clsNone"); }),
              "429|test-com-host|Component can't create object: \"Conduit.clsNone\"");
    for (const auto& [progId, subtree] : {std::pair{"Conduit.clsGPIB", "GPIB"},
                                          {"Conduit.clsComm", "RS232"},
                                          {"Conduit.clsEthernet", "TCP/IP"},
                                          {"Conduit.clsGUI", "GUI"}}) {
        const auto transport = framework->CreateTransport(progId);
        const auto group = transport->Settings();
        EXPECT_EQ(group->Name(), subtree);
        EXPECT_EQ(com::ComOf(*group), com::ComOf(*transport->Settings())) << "the same node every time";
    }
}

TEST(Transport, NeedsAConnection) {
    const auto link = com::CreateByProgId<ITextLink>("Conduit.clsEthernet");
    EXPECT_LT(link->WriteString(com::Bstr("*CLS").get()), S_OK);
    com::Variant response = Arg("kept");
    EXPECT_LT(link->SendReceive(com::Bstr("RF?").get(), &response), S_OK);
    EXPECT_EQ(com::TextOf(response), "kept");
    EXPECT_EQ(Raised([&] {
                  Call(link.get(), L"SendReceive", {Text("RF?"), Text("lost")});
              }),
              "13|test-com-host|Type mismatch");
}
