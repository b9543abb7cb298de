#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "driver/clsTarn4x.h"
#include "host/Framework.h"
#include "host/Transports.h"
#include "tests/host/TestVisa.h"
#include "tests/support/Program.h"

using namespace std::string_literals;

/// A way to the receiver.
struct Link {
    const char *Name, *RemoteControl;  // as tests and as that setting call it
    const char* SerialPort = "";       // "%" stands for the receiver's TCP port
    float Brief = 0.1F;                // seconds; a time-out long enough to get into step
    bool Tells = true;                 // that the receiver has gone
    bool Blocks = true;                // can be read
    bool TellsLate = true;             // an answer that comes long after its time from the next one
};
inline void PrintTo(const Link& link, std::ostream* stream) { *stream << link.Name; }
inline constexpr Link EveryLink[] = {
    {"Tcp", "TCP/IP"},
    {"Serial", "RS232", "1", 0.5F, false, true, false},
    {"DeviceServer", "RS232", "tcp://127.0.0.1:%", 0.5F, true, true, false},
    {"Gpib", "GPIB", "", 0.1F, false},
    {"FrontPanel", "GUI", "", 0.1F, true, false},
};
inline std::string LinkName(const testing::TestParamInfo<Link>& link) { return link.param.Name; }

/// A framework that lets tests at the driver's transport, whose pauses take no time.
struct OpenFramework : host::Framework {
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override {
        return Latest =
                   host::CreateTransport(progId, *CreateNode(),
                                         {.AbortRequested = [this] { return TheApplication().AbortRequested(); },
                                          .Log = [this](auto... entry) { TheMessageLog().Log(entry...); },
                                          .Wait = [this](auto) { OnPause(); },
                                          .ErrorReporting = [this] { return TheErrorService().ErrorReporting(); }});
    }
    std::shared_ptr<platform::Transport> Latest;
    std::function<void()> OnPause = [] {};
};

/// A simulated receiver on every kind of link, and an off-line driver for it. Delays of the driver take no time.
class Station {
  public:
    explicit Station(const Link& link, const std::string& script = {}, std::vector<std::string> arguments = {},
                     std::shared_ptr<OpenFramework> with = std::make_shared<OpenFramework>())
        : framework(std::move(with)), arguments_(std::move(arguments)) {
        SetEnvironment("CONDUIT_PORTS", Folder.string());
        if (!script.empty()) {
            arguments_.insert(arguments_.end(), {"--script", (Folder / "script").string()});
            std::ofstream(arguments_.back()) << script;
        }
        SwitchOn();
        framework->TheApplication().SetDelayScale(0.0);
        driver.emplace(framework);
        driver->put_IDriverSetup_Name("Receiver");
        Set("Remote Control", link.RemoteControl);
        Set("RS232.Comm Port", std::regex_replace(link.SerialPort, std::regex("%"), std::to_string(port_)));
        Set("TCP/IP.Port", std::to_string(port_));
        Set("GUI.Port", std::to_string(panel_));
        PutOnGpib(port_, *driver->get_IDriverSetup_Settings()->Item("GPIB"));
    }
    ~Station() {
        driver.reset();
        SwitchOff();
        std::filesystem::remove_all(Folder);
    }
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    void SwitchOff() {
        if (receiver_) receiver_->End(SIGTERM);
        receiver_.reset();
    }
    /// On the ports that it had before.
    void SwitchOn() {
        auto arguments = arguments_;
        arguments.insert(arguments.end(), {"--port", std::to_string(port_), "--front-panel", std::to_string(panel_),
                                           "--serial", (Folder / "com1").string()});
        receiver_.emplace(SIMULATOR, arguments);
        port_ = receiver_->Port();
        panel_ = receiver_->Port();
        receiver_->Line();
    }
    void Set(const char* path, const std::string& value) {
        driver->get_IDriverSetup_Settings()->Item(path)->SetValue(true, true, value);
    }
    /// Goes on-line; from then on the transport waits that many seconds.
    void GoOnLine(float timeout = 20.0F) {
        driver->put_IDriverSetup_OnLine(true);
        ASSERT_TRUE(driver->get_IDriverSetup_OnLine());
        framework->Latest->SetTimeout(timeout);
    }
    /// Entries of the log in which that stands.
    int Logged(std::string_view part) {
        int count = 0;
        auto& log = framework->TheMessageLog();
        for (int i = 1; i <= log.Count(); ++i) count += log.Entry(i).find(part) != std::string::npos ? 1 : 0;
        return count;
    }

    const std::filesystem::path Folder = ::mkdtemp(("/tmp/dialogue-XXXXXX"s).data());
    std::shared_ptr<OpenFramework> framework;
    std::optional<tarn4x::clsTarn4x> driver;

  private:
    std::vector<std::string> arguments_;
    std::uint16_t port_ = 0, panel_ = 0;
    std::optional<support::Program> receiver_;
};
