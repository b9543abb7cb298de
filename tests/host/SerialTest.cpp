#include <fcntl.h>
#include <termios.h>

#include <filesystem>
#include <fstream>

#include "host/CommLink.h"
#include "tests/host/Link.h"

namespace {

struct Port : Link<host::CommLink> {
    Port() : Link("Conduit.clsComm") { Set("Comm Port", 3); }
};

/// A pseudo-terminal linked as com3 in a folder of its own; the instrument is at the other end.
struct Serial : testing::Test {
    Serial() {
        SetEnvironment("CONDUIT_PORTS", Folder);
        EXPECT_EQ(grantpt(Instrument), 0);
        EXPECT_EQ(unlockpt(Instrument), 0);
        Line = open(ptsname(Instrument), O_RDWR | O_NOCTTY);  // keeps the line alive between openings
        std::filesystem::create_symlink(ptsname(Instrument), Folder + "/com3");
    }
    ~Serial() override {
        close(Line);
        close(Instrument);
        std::filesystem::remove_all(Folder);
    }
    void Put(std::string_view bytes) const {
        EXPECT_EQ(write(Instrument, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    std::string Name = "/tmp/serial-XXXXXX", Folder = mkdtemp(Name.data());
    int Instrument = posix_openpt(O_RDWR | O_NOCTTY), Line = -1;
    Port One, Other;
};

TEST_F(Serial, PutsTheSettingsIntoEffect) {
    const struct {
        const char *BaudRate, *StopBits, *Parity, *Handshaking;
        speed_t Speed;
        tcflag_t Control, Input;  // a pseudo-terminal has always 8 bits, and no parity bit
    } cases[] = {
        {"1200", "2", "ODD", "XON/XOFF", B1200, CSTOPB | PARODD, INPCK | IXON | IXOFF},
        {"9600", "1", "EVEN", "HARDWARE", B9600, CRTSCTS, INPCK},
        {"19200", "1", "NO", "NO", B19200, 0, 0},
    };
    for (const auto& row : cases) {
        One.Set("Baud Rate", row.BaudRate);
        One.Set("Stop Bits", row.StopBits);
        One.Set("Parity", row.Parity);
        One.Set("Handshaking", row.Handshaking);
        EXPECT_EQ(One.Open(), "");
        termios mode{};
        EXPECT_EQ(tcgetattr(Line, &mode), 0);
        EXPECT_EQ(cfgetospeed(&mode), row.Speed);
        EXPECT_EQ(mode.c_cflag & (CSTOPB | PARODD | CRTSCTS), row.Control) << row.Parity;
        EXPECT_EQ(mode.c_iflag & (INPCK | IXON | IXOFF), row.Input) << row.Parity;
        EXPECT_EQ(mode.c_lflag & (ECHO | ICANON), 0U);
        One.Bytes.Close();
    }
    One.Set("Baud Rate", 12345);
    EXPECT_EQ(One.Open(), "there is no baud rate of 12345");
}

TEST_F(Serial, MovesBytesAndDrainsWhatComesLate) {
    EXPECT_EQ(One.Open(), "");
    EXPECT_EQ(One.Read(0ms), "");
    EXPECT_EQ(One.Write("Q 1\n"), "4");
    char line[4];
    EXPECT_EQ(read(Instrument, line, 4), 4);
    EXPECT_EQ(std::string(line, 4), "Q 1\n");
    EXPECT_TRUE(One.Bytes.Flush(1ms));
    Put("late answer\nand a rest");
    EXPECT_EQ(One.Resynchronise(), "");
    EXPECT_EQ(One.Read(0ms), "");
    Put("A 1\n");
    EXPECT_EQ(One.Read(), "A 1\n");
    Put("x");
    EXPECT_EQ(One.Resynchronise(0.0), "2012 The instrument does not stop sending");
    EXPECT_EQ(One.Resynchronise(0.0), "");
    close(std::exchange(Instrument, -1));
    EXPECT_EQ(One.Read(), "2015 The serial line was disconnected");
}

TEST_F(Serial, WaitsForItsTurnAtAPort) {
    EXPECT_EQ(One.Open(), "");
    EXPECT_EQ(Other.Open(0.0), "port in use by this program");
    std::filesystem::create_symlink("com3", Folder + "/com6");
    Other.Set("Comm Port", "com6");
    EXPECT_EQ(Other.Open(0.0), "port in use by another program");  // a line has one name in a program
    Other.Set("Comm Port", 3);
    int pauses = 0;
    Other.Services.Wait = [&](auto) {
        if (++pauses == 2) One.Bytes.Close();
    };
    EXPECT_EQ(Other.Open(), "");
    EXPECT_EQ(pauses, 2);
}

TEST_F(Serial, HasPortsThatTheUserNames) {
    std::filesystem::create_symlink("tcp://[::1]:x", Folder + "/lab");
    One.Set("Comm Port", "LAB");
    EXPECT_THAT(One.Open(), testing::StartsWith("the setting \"Port\" is \"x\""));
    EXPECT_EQ(One.Bytes.Address(), "LAB=tcp://[::1]:x");
    const std::string file = Folder + "/ports";
    std::ofstream(file) << "# ours\nCom3 = none\nCOM4=" << ptsname(Instrument) << '\n';
    SetEnvironment("CONDUIT_PORTS", file);
    One.Set("Comm Port", 3);
    EXPECT_EQ(One.Open(), "");
    EXPECT_EQ(One.Write("Q 1\n"), "4");
    EXPECT_EQ(One.Read(0ms), "");
    One.Bytes.Close();
    EXPECT_FALSE(One.Bytes.IsOpen());
    Other.Set("Comm Port", 4);
    EXPECT_EQ(Other.Open(), "");
    EXPECT_EQ(Other.Write("Q 2\n"), "4");
    char line[4];
    EXPECT_EQ(read(Instrument, line, 4), 4);
    EXPECT_EQ(std::string(line, 4), "Q 2\n");
}

}  // namespace
