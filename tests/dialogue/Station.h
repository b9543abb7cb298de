#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "driver/clsTarn4x.h"
#include "host/Framework.h"
#include "host/Transports.h"
#include "tests/host/TestVisa.h"
#include "tests/support/Program.h"

/// Links as the setting "Remote Control" names them, and as a test's name can. "DeviceServer" is RS232 behind one.
inline constexpr const char* EveryLink[] = {"TCP/IP", "RS232", "DeviceServer", "GPIB", "GUI"};
inline std::string LinkName(const testing::TestParamInfo<const char*>& link) {
    return link.param == std::string_view("TCP/IP") ? "Tcp" : link.param;
}

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

/// Entries of the log with that text.
inline int Occurrences(const std::string& part, host::MessageLog& log) {
    int count = 0;
    for (int i = 1; i <= log.Count(); ++i) count += log.Entry(i).find(part) != std::string::npos ? 1 : 0;
    return count;
}

/// A simulated receiver on every kind of link, and an off-line driver for it. Delays of the driver take no time.
class Station {
  public:
    explicit Station(const char* link, const std::string& script = {}, std::vector<std::string> arguments = {},
                     std::shared_ptr<OpenFramework> with = std::make_shared<OpenFramework>())
        : framework(std::move(with)), arguments_(std::move(arguments)) {
        SetEnvironment("CONDUIT_PORTS", Folder.string());
        if (!script.empty()) {
            std::ofstream(Folder / "script") << script;
            arguments_.insert(arguments_.end(), {"--script", (Folder / "script").string()});
        }
        SwitchOn();
        framework->TheApplication().SetDelayScale(0.0);
        driver.emplace(framework);
        driver->put_IDriverSetup_Name("Receiver");
        const bool isServer = link == std::string_view("DeviceServer");
        Set("Remote Control", isServer ? "RS232" : link);
        if (isServer) Set("RS232.Comm Port", "2");
        std::filesystem::create_symlink("tcp://127.0.0.1:" + std::to_string(port_), Folder / "com2");
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

    const std::filesystem::path Folder = NewFolder();
    std::shared_ptr<OpenFramework> framework;
    std::optional<tarn4x::clsTarn4x> driver;

  private:
    static std::filesystem::path NewFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "dialogue-XXXXXX").string();
        return ::mkdtemp(name.data());
    }

    std::vector<std::string> arguments_;
    std::uint16_t port_ = 0, panel_ = 0;
    std::optional<support::Program> receiver_;
};
