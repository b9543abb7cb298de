#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "simulator/Text.h"
#include "tests/support/Program.h"

namespace {

using support::Program;

TEST(Program, TellsWhereItIsAndWhatItCannotUse) {
    const std::string file = testing::TempDir() + "tarn4x-sim-" + std::to_string(::getpid()), line = file + "-line";
    std::ofstream{file} << "signal cn\n";
    std::filesystem::create_symlink("/nowhere", line);  // an old link
    Program program{SIMULATOR, {"--serial", line, "--front-panel", "0", "--port", "0", "--listen", "127.0.0.2"}};
    const std::string taken = std::to_string(program.Port());
    EXPECT_EQ(program.Line().substr(0, 25), "front panel on 127.0.0.2:");
    EXPECT_EQ(program.Line(), "serial line " + line);
    const std::tuple<std::string, std::string, int> cases[] = {
        {"--help", "a simulated DVB-T test receiver", 0},
        {"--bogus", "unknown argument '--bogus'", 2},
        {"--port 65536", "--port cannot be '65536'", 2},
        {"--listen ::1", "not an IPv4 address: '::1'", 2},
        {"--options TARN-B3,TARN-X", "unknown option TARN-X", 2},
        {"--script " + file, file + ", line 1: not a number", 2},
        {"--replay " + file, file + ", line 1: fields", 2},
        {"--replay /dev/null", "nothing to replay in /dev/null", 2},
        {"--replay-timing --port", "--port needs a value", 2},
        {"--listen 127.0.0.2 --port " + taken, "port " + taken, 1},
        {"--serial " + file, file, 1},
    };
    for (const auto& [arguments, message, exitCode] : cases) {
        const auto words = sim::Split(arguments, ' ');
        Program refused{SIMULATOR, {words.begin(), words.end()}};
        EXPECT_THAT(refused.Line(), testing::HasSubstr("tarn4x-sim: " + message));
        EXPECT_EQ(refused.End(0), exitCode) << arguments;
    }
    EXPECT_TRUE(std::filesystem::remove(file));  // it was nobody's to replace
    EXPECT_EQ(program.End(SIGINT), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(line));
}

}  // namespace
