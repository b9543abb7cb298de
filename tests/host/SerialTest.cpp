#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <thread>

#include "host/Framework.h"
#include "host/Transports.h"
#include "tests/host/Raised.h"

namespace {

using testing::HasSubstr;

/// A pseudo-terminal linked as com3 in a folder of its own, with an instrument at the other end.
class SerialTest : public testing::Test {
  protected:
    void SetUp() override {
        char name[] = "/tmp/serial-test-XXXXXX";
        folder_ = mkdtemp(name);
        setenv("CONDUIT_PORTS", folder_.c_str(), 1);
        master_ = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_GE(master_, 0);
        ASSERT_EQ(grantpt(master_), 0);
        ASSERT_EQ(unlockpt(master_), 0);
        line_ = open(ptsname(master_), O_RDWR | O_NOCTTY);  // keeps the line alive between openings
        std::filesystem::create_symlink(ptsname(master_), folder_ / "com3");
        link_->SetTimeout(20.0F);
        Set("Comm Port", 3);
    }
    void TearDown() override {
        ending_ = true;
        if (instrument_.joinable()) instrument_.join();
        close(line_);
        if (master_ >= 0) close(master_);
        std::filesystem::remove_all(folder_);
    }

    void Set(const char* name, const platform::Value& value) {
        link_->Settings()->Item(name)->SetValue(true, true, value);
    }
    void Put(std::string_view bytes) const {
        EXPECT_EQ(write(master_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void Instrument(std::function<std::string(const std::string&)> answer) {
        instrument_ = std::thread([this, answer = std::move(answer)] {
            std::string line;
            while (!ending_) {
                pollfd entry{master_, POLLIN, 0};
                char c = 0;
                if (poll(&entry, 1, 20) <= 0 || read(master_, &c, 1) != 1) continue;
                if (c != '\n') {
                    line += c;
                    continue;
                }
                Put(answer(line));
                line.clear();
            }
        });
    }

    std::filesystem::path folder_;
    int master_ = -1;
    int line_ = -1;
    std::atomic<bool> ending_ = false;
    std::thread instrument_;
    host::Framework framework_;
    std::shared_ptr<platform::Transport> link_ = framework_.CreateTransport("Conduit.clsComm");
};

TEST_F(SerialTest, PutsTheSettingsIntoEffect) {
    const struct {
        const char* Setting;
        platform::Value Value;
        std::function<bool(const termios&)> InEffect;
    } cases[] = {
        {"Baud Rate", 1200, [](const termios& mode) { return cfgetospeed(&mode) == B1200; }},
        {"Baud Rate", "9600", [](const termios& mode) { return cfgetispeed(&mode) == B9600; }},
        {"Stop Bits", 2, [](const termios& mode) { return (mode.c_cflag & CSTOPB) != 0; }},
        {"Stop Bits", 1, [](const termios& mode) { return (mode.c_cflag & CSTOPB) == 0; }},
        {"Parity", "ODD", [](const termios& mode) { return (mode.c_cflag & PARODD) && (mode.c_iflag & INPCK); }},
        {"Parity", "E", [](const termios& mode) { return !(mode.c_cflag & PARODD) && (mode.c_iflag & INPCK); }},
        {"Parity", "NO", [](const termios& mode) { return !(mode.c_iflag & INPCK); }},
        {"Handshaking", "XON/XOFF",
         [](const termios& mode) {
             return (mode.c_iflag & IXON) && (mode.c_iflag & IXOFF) && !(mode.c_cflag & CRTSCTS);
         }},
        {"Handshaking", "HARDWARE",
         [](const termios& mode) { return !(mode.c_iflag & (IXON | IXOFF)) && (mode.c_cflag & CRTSCTS); }},
        {"Handshaking", 0, [](const termios& mode) { return !(mode.c_iflag & IXON) && !(mode.c_cflag & CRTSCTS); }},
    };
    for (const auto& row : cases) {
        Set(row.Setting, row.Value);
        link_->Connect(true);
        termios mode{};
        ASSERT_EQ(tcgetattr(line_, &mode), 0);
        EXPECT_TRUE(row.InEffect(mode)) << row.Setting << " " << platform::ToText(row.Value);
        EXPECT_EQ(mode.c_lflag & (ECHO | ICANON), 0U);
    }
}

TEST_F(SerialTest, DrainsAnAnswerThatCameTooLate) {
    Instrument([](auto& command) { return command == "LATE?" ? std::string() : "A" + command.substr(1) + "\n"; });
    link_->Connect(true);
    link_->SetTimeout(0.05F);
    EXPECT_EQ(Raised([&] { link_->ReadString("LATE?"); }).Number, platform::ObjectError(2014));
    Put("late answer\nand a rest");
    link_->SetTimeout(20.0F);
    EXPECT_EQ(link_->ReadString("Q 1"), "A 1");
    Put("unasked\n");
    EXPECT_EQ(link_->ReadString("Q 2"), "A 2");
}

TEST_F(SerialTest, NobodyAnswersOnAPortNamedNone) {
    std::filesystem::create_symlink("none", folder_ / "com9");
    Set("Comm Port", 9);
    link_->Connect(true);
    link_->SetTimeout(0.05F);
    link_->WriteString("SET");
    EXPECT_EQ(Raised([&] { link_->ReadString("Q?"); }).Number, platform::ObjectError(2014));
}

TEST_F(SerialTest, WaitsForItsTurnAtAPort) {
    link_->Connect(true);
    int questions = 0;
    const auto other = host::CreateTransport("Conduit.clsComm", *framework_.CreateNode(), {.AbortRequested = [&] {
                                                 if (++questions == 2) link_->Connect(false);
                                                 return false;
                                             }});
    other->Settings()->Item("Comm Port")->SetValue(true, true, 3);
    other->Connect(true);
    EXPECT_TRUE(other->IsConnected());
    EXPECT_EQ(questions, 2);
}

TEST_F(SerialTest, TellsWhyAPortCannotBeOpened) {
    link_->Connect(true);
    std::filesystem::create_symlink("/dev/null", folder_ / "com4");
    std::filesystem::create_symlink(folder_ / "com3", folder_ / "com6");
    std::filesystem::create_symlink("tcp://", folder_ / "com7");
    std::filesystem::create_symlink("udp://127.0.0.1:1", folder_ / "com8");
    std::filesystem::create_symlink("tcp://[::1]:1", folder_ / "lab");
    const struct {
        const char* Setting;
        platform::Value Value;
        const char* Text;
    } cases[] = {
        {"Comm Port", 3, "No connection to COM3: port in use by this program"},
        {"Comm Port", 6, "COM6: port in use by another program"},
        {"Comm Port", "COM5", "COM5: no such port"},
        {"Comm Port", 4, "COM4: it is no serial line"},
        {"Comm Port", 7, "No connection to COM7=tcp://: it must be tcp://host:port"},
        {"Comm Port", 8, "COM8=udp://127.0.0.1:1: it must be a device, tcp://host:port or none"},
        {"Comm Port", "LAB", "LAB=tcp://[::1]:1: connection refused"},
        {"Comm Port", "", "no serial port is chosen"},
        {"Comm Port", "-", "no such port"},
        {"Baud Rate", 12345, "there is no baud rate of 12345"},
        {"Data Bits", 9, "from 7 to 8"},
        {"Parity", "MARK", "must be E, N or O"},
        {"Handshaking", 3, "from 0 to 2"},
    };
    for (const auto& row : cases) {
        const auto other = framework_.CreateTransport("Conduit.clsComm");
        const auto settings = other->Settings();
        if (std::string_view(row.Setting) != "Comm Port") link_->Connect(false);
        settings->Item("Comm Port")->SetValue(true, true, 3);
        settings->Item(row.Setting)->SetValue(true, true, row.Value);
        const auto error = Raised([&] { other->Connect(true); });
        EXPECT_EQ(error.Number, platform::ObjectError(2017)) << row.Text;
        EXPECT_THAT(error.Description, HasSubstr(row.Text));
        EXPECT_FALSE(other->IsConnected());
    }
}

}  // namespace
