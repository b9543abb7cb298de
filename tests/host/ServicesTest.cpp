#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

#include "host/FailureWatch.h"
#include "tests/host/Link.h"

namespace {

struct StoppingApplication : host::Application {
    std::vector<std::chrono::milliseconds> Waits;
    void Wait(std::chrono::milliseconds time) override {
        Waits.push_back(time);
        SetAbortRequested(Waits.size() == 3);
    }
};

TEST(Application, DelaysUntilTheUserStops) {
    StoppingApplication application;
    application.SetDelayScale(0.0);
    application.Delay(1e30F);
    EXPECT_THAT(application.Waits, testing::IsEmpty());
    application.SetDelayScale(2.0);
    for (int i = 0; i < 2; ++i) application.Delay(1e30F);  // the second time, the stop still holds
    EXPECT_THAT(application.Waits, testing::ElementsAre(50ms, 50ms, 50ms));
    application.SetAbortRequested(false);
    application.Waits.clear();
    application.SetDelayScale(4.5e-9);
    application.Delay(1e7F);
    EXPECT_THAT(application.Waits, testing::Each(testing::Le(45ms)));
    for (const double bad : {-1.0, std::nan("")}) {
        EXPECT_EQ(Raised([&] { application.SetDelayScale(bad); }),
                  "5 Seamlib.clsApplication: The factor on delays may not be negative");
        EXPECT_EQ(Raised([&] { application.Delay(static_cast<float>(bad)); }),
                  "5 Seamlib.clsApplication: The time of a delay may not be negative");
    }
    EXPECT_EQ(application.DelayScale(), 4.5e-9);
}

TEST(Application, SuspendsOnlyTheRunningState) {
    host::Application application;
    for (const auto& [state, suspended] : {std::pair{0, 0}, {3, 3}, {8, 4}}) {
        application.SetAppState(state);
        application.SuspendState();
        EXPECT_EQ(application.AppState(), suspended);
        application.ResumeState();
        EXPECT_EQ(application.AppState(), state);
    }
}

TEST(MessageLog, KeepsTheNewestEntries) {
    host::MessageLog log;
    for (int i = 0; i < 10'002; ++i) log.Log(6, "TARN", "text " + std::to_string(i), "");
    EXPECT_EQ(log.Entry(1), "6\tTARN\ttext 2\t");
    EXPECT_EQ(log.Entry(10'000), "6\tTARN\ttext 10001\t");
    const std::string missing = "9 Seamlib.clsMessageLog: There is no entry ",
                      count = " in the message log, it has 10000";
    EXPECT_EQ(Outcome([&] { return log.Entry(0); }), missing + '0' + count);
    EXPECT_EQ(Outcome([&] { return log.Entry(10'001); }), missing + "10001" + count);
    log.Clear();
    EXPECT_EQ(log.Count(), 0);
}

TEST(MessageLog, WritesOneLineAnEntry) {
    const auto unique = std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto name = (std::filesystem::temp_directory_path() / "log ").string() + "\xC2\xB5" + unique;
    host::MessageLog log(101);  // the bytes of two lines
    log.SetFileName(name);
    log.Log(6, "TARN", "*IDN?", "");
    EXPECT_EQ(Raised([&] { log.SetFileName("no/such/folder"); }),
              "75 Seamlib.clsMessageLog: The log file no/such/folder cannot be opened for writing");
    EXPECT_EQ(log.FileName(), name);
    std::thread([&] { log.Log(5, "TARN", "a\tb", "1\r\n\\\x01\x1F \x7F\xC2\xB5"); }).join();  // has sent no command
    log.Log(5, "TARN", "*IDN?", "VANTERRA");
    log.SetFileName("");
    log.Log(6, "TARN", "unseen", "");
    const std::pair<const char*, const char*> files[] = {
        {".1",
         "DATE\t\t6\tTARN\t*IDN?\t\n"
         "DATE\t\t5\tTARN\ta\\tb\t1\\r\\n\\\\\\x01\\x1F \\x7F\xC2\xB5\n"},
        {"", "DATE\tTIME\t5\tTARN\t*IDN?\tVANTERRA\n"}};
    for (const auto& [ending, lines] : files) {
        const auto text = name + ending;
        const std::filesystem::path path(std::u8string(text.begin(), text.end()));
        std::stringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        const std::regex date(R"(20\d\d-[01]\d-[0-3]\dT[0-2]\d:[0-5]\d:[0-5]\d\.\d{3}Z)"), time(R"(\t\d+\.\d{3}\t)");
        EXPECT_EQ(std::regex_replace(std::regex_replace(content.str(), date, "DATE"), time, "\tTIME\t"), lines);
        std::filesystem::remove(path);
    }
}

TEST(ErrorService, ReportsUnlessItsThreadOnlyTries) {
    host::Framework framework;
    auto& errors = framework.TheErrorService();
    const auto raise = [&] { errors.RaiseDriverError({2002, "clsTarn4x.OnLine", "Driver already on-line"}); };
    errors.SetErrorReporting(false);
    EXPECT_EQ(Raised(raise), "2002 clsTarn4x.OnLine: Driver already on-line");
    EXPECT_EQ(framework.TheMessageLog().Count(), 0);
    std::thread([&] { Raised(raise); }).join();
    EXPECT_EQ(framework.TheMessageLog().Entry(1), "1\tclsTarn4x.OnLine\tDriver already on-line\t2002");
    errors.SetErrorReporting(true);
    EXPECT_TRUE(errors.ErrorReporting());
}

TEST(FailureWatch, TellsTheFirstFailureOfItsThread) {
    host::Framework framework;
    auto& log = framework.TheMessageLog();
    for (const bool reporting : {true, false}) {
        framework.TheErrorService().SetErrorReporting(reporting);
        log.Clear();
        {
            const host::FailureWatch failures(framework.TheErrorService());
            EXPECT_TRUE(framework.TheErrorService().ErrorReporting());
            std::thread([&] { log.Log(1, "TARN", "Elsewhere", "COM1: sent nothing"); }).join();
            log.Log(6, "TARN", "*CLS", "");
            EXPECT_EQ(failures.Reason(), "");
            log.Log(1, "TARN", "Receive timed out", "127.0.0.1:5025: sent \"*CLS\"");
            const host::FailureWatch inner(framework.TheErrorService());
            log.Log(1, "TARN", "No connection to COM2: no such port", "COM2: sent nothing");
            EXPECT_EQ(inner.Reason(), "No connection to COM2: no such port");
            EXPECT_EQ(failures.Reason(), "127.0.0.1:5025: Receive timed out");
        }
        EXPECT_EQ(framework.TheErrorService().ErrorReporting(), reporting);
        log.Log(1, "TARN", "Nobody watches", "");
        EXPECT_EQ(log.Count(), reporting ? 5 : 4);
    }
}

}  // namespace
