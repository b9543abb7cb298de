#include "tests/host/Bench.h"

namespace {

using testing::HasSubstr;

TEST(GpibLink, TellsWhyItCannotConnect) {
#ifdef _WIN32
    constexpr const char* other = "kernel32.dll";
#else
    constexpr const char* other = "libc.so.6";
#endif
    const struct {
        const char* Runtime;
        const char* Setting;
        platform::Value Value;
        std::string Text;
    } cases[] = {
        {"no-such-runtime", "Board", 0, "GPIB needs a VISA runtime, and no-such-runtime cannot be loaded: "},
        {"no-such-runtime", "Board", 0, ". Install the " + std::to_string(8 * sizeof(void*)) + "-bit VISA runtime"},
        {other, "Board", 0, std::string(other) + " is no VISA runtime, it has no viOpenDefaultRM. Install"},
        {TEST_VISA, "Board", "x", "\"Board\" is \"x\", it must be a number from 0 to 255"},
        {TEST_VISA, "Primary Address", {}, "\"Primary Address\" is \"\", it must be a number from 0 to 30"},
        {TEST_VISA, "Primary Address", 31, "from 0 to 30"},
        {TEST_VISA, "Secondary Address", 31, "from 0 to 30"},
        {TEST_VISA, "Board", 1, "No connection to GPIB1::30: No listeners (VISA error 0xBFFF005F)"},
        {TEST_VISA, "Secondary Address", 0, "No connection to GPIB0::30::0: No listeners"},
    };
    for (const auto& row : cases) {
        host::Framework framework;
        const auto link = framework.CreateTransport(Gpib);
        link->SetName("My receiver");
        SetEnvironment("CONDUIT_VISA", row.Runtime);
        link->Settings()->Item("Primary Address")->SetValue(true, true, 30);
        link->Settings()->Item(row.Setting)->SetValue(true, true, row.Value);
        const auto error = Raised([&] { link->Connect(true); });
        EXPECT_EQ(error.Number, platform::ObjectError(2017));
        EXPECT_THAT(error.Description, HasSubstr(row.Text));
        EXPECT_FALSE(link->IsConnected());
        ASSERT_EQ(framework.TheMessageLog().Count(), 1);
        EXPECT_THAT(framework.TheMessageLog().Entry(1), HasSubstr("1\tMy receiver\t" + error.Description + "\tGPIB"));
        framework.TheErrorService().SetErrorReporting(false);  // someone only tries
        EXPECT_THROW(link->Connect(true), platform::AutomationError);
        EXPECT_EQ(framework.TheMessageLog().Count(), 1);
    }
}

TEST(GpibLink, TakesEndForTheEndOfAnAnswer) {
    Bench bench(Gpib, {Answering([](auto& command) {
                    return command.starts_with("Q") ? "A" + command.substr(1) + "<END>"
                                                    : std::string(command == "B" ? "#15\n\n\n##<END>" : "");
                })});
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
    bench.link->WriteString("SET");
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
    EXPECT_EQ(bench.Block(8, "B"), "#15\n\n\n##");
    EXPECT_EQ(bench.Query("Q 3"), "A 3");
    EXPECT_EQ(bench.peer.Connections, 1);
    EXPECT_EQ(bench.framework.TheMessageLog().Count(), 0) << bench.Log();
}

}  // namespace
