#include "host/GpibLink.h"
#include "tests/host/Link.h"

namespace {

/// An instrument on the bus of the tests' VISA runtime, or none.
struct Bus : Link<host::GpibLink> {
    explicit Bus(int port) : Link("Conduit.clsGPIB") { PutOnGpib(port, *Settings); }
};

TEST(GpibLink, TellsWhyItCannotConnect) {
#ifdef _WIN32
    const std::string other = "kernel32.dll";
#else
    const std::string other = "libc.so.6";
#endif
    const auto cure = ". Install the " + std::to_string(8 * sizeof(void*)) + "-bit VISA runtime";
    const struct {
        std::string Runtime;
        const char* Setting;
        platform::Value Value;
        std::string Reason;
    } cases[] = {
        {"no-such-runtime", "Board", 0, "GPIB needs a VISA runtime, and no-such-runtime cannot be loaded: "},
        {"no-such-runtime", "Board", 0, cure},
        {other, "Board", 0, other + " is no VISA runtime, it has no viOpenDefaultRM" + cure},
        {TEST_VISA, "Board", "x", "\"Board\" is \"x\", it must be a number from 0 to 255"},
        {TEST_VISA, "Primary Address", {}, "\"Primary Address\" is \"\", it must be a number from 0 to 30"},
        {TEST_VISA, "Secondary Address", 31, "from 0 to 30"},
        {TEST_VISA, "Secondary Address", {}, "No listeners (VISA error 0xBFFF005F)"},
    };
    for (const auto& row : cases) {
        Bus link(31);  // nobody listens there
        SetEnvironment("CONDUIT_VISA", row.Runtime);
        link.Set(row.Setting, row.Value);
        EXPECT_THAT(link.Open(), testing::HasSubstr(row.Reason));
        EXPECT_FALSE(link.Bytes.IsOpen());
    }
}

TEST(GpibLink, TakesEndForTheEndOfAnAnswer) {
    support::Peer peer;
    Bus link(peer.Port);
    EXPECT_EQ(link.Open(), "");
    auto other = peer.Accept();
    for (const char* answer : {"A 1<END>", "A 1\n"}) {
        EXPECT_EQ(link.Read(0ms), "");  // nobody is made to talk
        EXPECT_EQ(link.Write("Q 1\n"), "4");
        EXPECT_EQ(other.Line(), "Q 1");
        EXPECT_EQ(link.Read(2ms), "");
        other.Send(answer);
        EXPECT_EQ(link.Read(20s, 3), "A ");
        EXPECT_EQ(link.Read(0ms), "1\n");
    }
    EXPECT_EQ(link.Resynchronise(), "");
    EXPECT_EQ(other.Line(), "") << "a device clear ends what there was";
}

}  // namespace
