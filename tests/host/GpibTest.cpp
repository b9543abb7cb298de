#include "host/GpibLink.h"
#include "tests/host/Link.h"

namespace {

TEST(GpibLink, TakesEndForTheEndOfAnAnswer) {
    support::Peer peer;
    Link<host::GpibLink> link("Conduit.clsGPIB");
    PutOnGpib(peer.Port, *link.Settings);
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
