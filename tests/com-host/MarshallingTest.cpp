#include <atomic>
#include <thread>

#include "tests/com-host/Client.h"

using com::ComPtr;
using platform::Value;

namespace {

/// Uses the object from a second single-threaded apartment while this one handles the calls that arrive.
template <class Interface>
void InAnotherApartment(Interface* object, const std::function<void(Interface*)>& use) {
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(Interface), object, &stream), S_OK);
    std::atomic<bool> done = false;
    std::thread other([&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        ComPtr<Interface> there;
        const HRESULT result = CoGetInterfaceAndReleaseStream(stream, __uuidof(Interface), there.putVoid());
        EXPECT_EQ(result, S_OK);
        if (there) {
            EXPECT_NE(there.get(), object);
            use(there.get());
        }
        there = {};
        CoUninitialize();
        done = true;
    });
    PumpUntil([&] { return done.load(); });
    other.join();
}

}  // namespace

TEST(Marshalling, CarriesANodeIntoAnotherApartment) {
    const auto root = com::CreateByProgId<INode>("Seamcfg.clsNode");
    InAnotherApartment<INode>(root.get(), [](INode* node) {
        com::NodeProxy proxy{ComPtr<INode>(node)};
        const auto setting = proxy.AddSetting("Host", 1, 4, "");
        setting->SetValue(true, true, Text("127.0.0.1"));
        EXPECT_EQ(proxy.Item("Host")->GetValue(), Text("127.0.0.1"));
        EXPECT_EQ(Get(node, L"Count"), Value(1));
    });
    EXPECT_EQ(com::NodeProxy(root).Item("Host")->GetValue(), Text("127.0.0.1"));
}

TEST(Marshalling, RefusesToGraftATreeOfAnotherApartment) {
    const auto root = com::CreateByProgId<INode>("Seamcfg.clsNode");
    InAnotherApartment<INode>(root.get(), [](INode* there) {
        const auto here = com::CreateByProgId<INode>("Seamcfg.clsNode");
        EXPECT_EQ(here->AddNode(there, VARIANT_TRUE, VARIANT_TRUE), static_cast<HRESULT>(0x800A000DU));
    });
}

TEST(Marshalling, CarriesAllInterfacesOfATransport) {
    const auto transport = com::CreateByProgId<ITextLink>("Conduit.clsEthernet");
    InAnotherApartment<ITextLink>(transport.get(), [](ITextLink* text) {
        com::TransportProxy proxy{ComPtr<ITextLink>(text)};
        proxy.SetTimeout(2.5F);
        EXPECT_EQ(proxy.Timeout(), 2.5F);
        proxy.SetName("TARN1");
        EXPECT_EQ(proxy.Settings()->Name(), "TCP/IP");
        EXPECT_FALSE(proxy.IsConnected());
    });
}
