#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>

#include "host/FailureWatch.h"
#include "host/Framework.h"
#include "tests/host/Raised.h"

namespace {

using testing::HasSubstr;

struct StoppingApplication : host::Application {
    int Waits = 0;
    int StopAfter = 0;

    void Wait(std::chrono::milliseconds) override { SetAbortRequested(++Waits == StopAfter); }
};

TEST(Application, EndsADelayWhenTheUserStops) {
    StoppingApplication application;
    application.StopAfter = 3;
    application.Delay(1e30F);
    EXPECT_EQ(application.Waits, 3);
    application.Delay(1e30F);  // still stopped
    EXPECT_EQ(application.Waits, 3);
}

TEST(Application, ScalesDelays) {
    StoppingApplication application;
    application.SetDelayScale(0.0);
    application.Delay(1e30F);
    EXPECT_EQ(application.Waits, 0);
    EXPECT_EQ(application.DelayScale(), 0.0);
    for (const double bad : {-1.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(Raised([&] { application.SetDelayScale(bad); }).Number, 5);
        EXPECT_EQ(Raised([&] { application.Delay(static_cast<float>(bad)); }).Number, 5);
    }
}

TEST(Application, SuspendsOnlyTheRunningState) {
    host::Application application;
    for (const std::int32_t state : {0, 3, 8}) {
        application.SetAppState(state);
        application.SuspendState();
        EXPECT_EQ(application.AppState() == state, state != 8);
        application.ResumeState();
        EXPECT_EQ(application.AppState(), state);
    }
}

TEST(MessageLog, KeepsTheNewestEntries) {
    host::MessageLog log;
    for (int i = 0; i < 10'002; ++i) log.Log(6, "TARN", "text " + std::to_string(i), "");
    EXPECT_EQ(log.Count(), 10'000);
    EXPECT_EQ(log.Entry(1), "6\tTARN\ttext 2\t");
    EXPECT_EQ(log.Entry(10'000), "6\tTARN\ttext 10001\t");
    for (const std::int32_t index : {0, -1, 10'001}) EXPECT_EQ(Raised([&] { log.Entry(index); }).Number, 9);
    log.Clear();
    EXPECT_EQ(log.Count(), 0);
}

TEST(MessageLog, WritesOneLineAnEntry) {
    const auto unique = std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto path =
        std::filesystem::temp_directory_path() / (u8"log \u00B5 " + std::u8string(unique.begin(), unique.end()));
    const auto utf8 = path.u8string();
    host::MessageLog log(130);  // the third line passes the limit
    log.SetFileName({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
    log.Log(6, "TARN", "*IDN?", "");
    const auto error = Raised([&] { log.SetFileName("no/such/folder/at all"); });
    EXPECT_EQ(error.Number, 75);
    EXPECT_THAT(error.Description, HasSubstr("no/such/folder/at all"));
    // The refused name changed nothing, and the other thread has sent no command.
    std::thread([&] { log.Log(5, "TARN", "a\tb", "1\r\n\\\x01\xC2\xB5"); }).join();
    log.Log(5, "TARN", "*IDN?", "VANTERRA");
    log.Log(1, "clsTarn4x.RF", "Get RF failed", "");
    log.SetFileName("");
    log.Log(6, "TARN", "unseen", "");

    std::string lines;
    auto older = path;
    older += ".1";
    for (const auto& part : {older, path}) {
        std::ifstream file(part, std::ios::binary);
        for (std::string line; std::getline(file, line); lines += line.substr(line.find('\t')) + '\n') {
            EXPECT_EQ(line.find('\t'), 24U) << line;  // "2025-01-31T12:34:56.789Z"
        }
        lines += "--\n";
        file.close();
        std::filesystem::remove(part);
    }
    const auto duration = lines.find("\t5\tTARN\t*IDN?");
    ASSERT_NE(duration, std::string::npos) << lines;
    const auto start = lines.rfind('\t', duration - 1) + 1;
    EXPECT_EQ(lines.find('.', start), duration - 4) << "milliseconds with three decimals";
    EXPECT_EQ(lines.erase(start, duration - start),
              "\t\t6\tTARN\t*IDN?\t\n"
              "\t\t5\tTARN\ta\\tb\t1\\r\\n\\\\\\x01\xC2\xB5\n"
              "\t\t5\tTARN\t*IDN?\tVANTERRA\n"
              "--\n"
              "\t\t1\tclsTarn4x.RF\tGet RF failed\t\n"
              "--\n");
}

TEST(ErrorService, RaisesAndReports) {
    host::Framework framework;
    auto& errors = framework.TheErrorService();
    const platform::AutomationError wanted(2002, "clsTarn4x.OnLine", "Driver already on-line");
    for (const bool reporting : {true, false}) {
        errors.SetErrorReporting(reporting);
        framework.TheMessageLog().Clear();
        const auto error = Raised([&] { errors.RaiseDriverError(wanted); });
        EXPECT_EQ(error.Number, 2002);
        EXPECT_EQ(error.Source, wanted.Source);
        EXPECT_EQ(error.Description, wanted.Description);
        EXPECT_EQ(framework.TheMessageLog().Count(), reporting ? 1 : 0);
    }
    std::thread([&] {
        EXPECT_TRUE(errors.ErrorReporting());
        errors.SetErrorReporting(false);
        errors.SetErrorReporting(true);
    }).join();
    EXPECT_FALSE(errors.ErrorReporting());
    errors.SetErrorReporting(true);
    EXPECT_THROW(errors.RaiseDriverError(wanted), platform::AutomationError);
    EXPECT_EQ(framework.TheMessageLog().Entry(1), "1\tclsTarn4x.OnLine\tDriver already on-line\t2002");
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
            log.Log(1, "TARN", "No connection to COM2: no such port", "COM2: sent nothing");
            EXPECT_EQ(failures.Reason(), "127.0.0.1:5025: Receive timed out");
        }
        EXPECT_EQ(framework.TheErrorService().ErrorReporting(), reporting);
        EXPECT_EQ(log.Count(), reporting ? 4 : 2);
        const host::FailureWatch failures(framework.TheErrorService());
        log.Log(1, "TARN", "No connection to COM2: no such port", "COM2: sent nothing");
        EXPECT_EQ(failures.Reason(), "No connection to COM2: no such port");
    }
}

TEST(Framework, CreatesTheTransportsWithTheirSettings) {
    const struct {
        const char* ProgId;
        const char* Settings;
    } cases[] = {
        {"Conduit.clsEthernet", "TCP/IP: Host=127.0.0.1 Port=5025 Connect Timeout=5 "},
        {"Conduit.clsComm", "RS232: Comm Port= Baud Rate=19200 Data Bits=8 Parity=N Stop Bits=1 Handshaking=0 "},
        {"Conduit.clsGPIB", "GPIB: Board=0 Primary Address= Secondary Address= "},
        {"Conduit.clsGUI", "GUI: Port=5026 "},
    };
    host::Framework framework;
    for (const auto& row : cases) {
        const auto settings = framework.CreateTransport(row.ProgId)->Settings();
        auto text = settings->Name() + ": ";
        for (const auto& setting : settings->Children()) {
            text += setting->Name() + '=' + platform::ToText(setting->GetValue()) + ' ';
        }
        EXPECT_EQ(text, row.Settings);
    }
    const auto error = Raised([&] { framework.CreateTransport("Conduit.clsTelepathy"); });
    EXPECT_EQ(error.Number, 429);
    EXPECT_THAT(error.Description, HasSubstr("Conduit.clsTelepathy"));
}

}  // namespace
