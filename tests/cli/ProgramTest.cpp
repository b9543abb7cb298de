// The program beside a receiver that goes away, and a user who stops it.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/support/Program.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

struct Program : support::Program {
    Program(const char* name, std::vector<std::string> arguments)
        : support::Program((PROGRAMS "/" + std::string(name)).c_str(), std::move(arguments)) {}

    /// The next line with that text; empty when the program ends before.
    std::string LineWith(std::string_view text) {
        auto line = Line();
        while (!line.empty() && line.find(text) == line.npos) line = Line();
        return line;
    }
};

struct Tarn4x : Program {
    explicit Tarn4x(std::vector<std::string> arguments) : Program("tarn4x", std::move(arguments)) {}
};

struct Simulator : Program {
    explicit Simulator(std::vector<std::string> arguments)
        : Program("tarn4x-sim", std::move(arguments)), Where("127.0.0.1:" + std::to_string(Port())) {}

    const std::string Where;
};

std::vector<std::string> Watching(const Simulator& receiver) {
    return {"--host",   receiver.Where, "--no-waits", "watch", "MeasureRfLevel", "MeasureOfdmAverage",
            "--switch", "--every",      "0"};
}

TEST(Tarn4x, WritesTracesThatTheSimulatedReceiverReplays) {
    const auto trace = std::filesystem::temp_directory_path() / ("trace-" + std::to_string(::getpid()));
    const std::vector<std::string> reading{"get", "RF", "MeasureRfLevel", "MeasureOfdmMerRmsDb", "--switch"};
    const auto read = [&](std::vector<std::string> where) {
        where.insert(where.end(), reading.begin(), reading.end());
        Tarn4x program(where);
        return std::vector{program.Line(), program.Line(), program.Line()};
    };
    const auto recorded = read({"--simulated=7", "--trace", trace.string()});
    const Simulator replaying({"--port", "0", "--seed", "1", "--replay", trace.string()});
    EXPECT_EQ(read({"--host", replaying.Where, "--no-waits"}), recorded);
    EXPECT_NE(read({"--simulated=1"}), recorded);
    std::filesystem::remove(trace);
}

TEST(Tarn4x, GivesTheReceiverBackOnCtrlC) {
    Simulator receiver({"--port", "0", "--verbose"});
    Tarn4x program(Watching(receiver));
    program.LineWith("-47");
    EXPECT_EQ(program.End(SIGINT), 0);
    EXPECT_THAT(receiver.LineWith("MEAS NORM"), HasSubstr("<-"));
    EXPECT_THAT(receiver.LineWith("SYST:LOC"), HasSubstr("<-"));
}

TEST(Tarn4x, WatchesOnAfterAnOutage) {
    auto receiver = std::make_unique<Simulator>(std::vector<std::string>{"--port", "0"});
    const auto where = receiver->Where;
    Tarn4x program(Watching(*receiver));
    EXPECT_THAT(program.LineWith("-47"), EndsWith(","));
    receiver->End(SIGTERM);
    EXPECT_THAT(program.LineWith("Z,,"), HasSubstr("No connection to " + where + ": connection refused"));
    receiver =
        std::make_unique<Simulator>(std::vector<std::string>{"--port", where.substr(where.find(':') + 1), "--verbose"});
    EXPECT_THAT(program.LineWith("Z,-47"), HasSubstr("The connection is back after "));
    EXPECT_EQ(program.End(SIGINT), 0);
}

}  // namespace
