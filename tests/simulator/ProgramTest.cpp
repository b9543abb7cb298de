#include <arpa/inet.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <vector>

#include "simulator/FileDescriptor.h"
#include "tests/simulator/Trace.h"
#include "tests/support/Program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Program : support::Program {
    explicit Program(std::vector<std::string> arguments) : support::Program(SIMULATOR, std::move(arguments)) {}
};

// The other end of a dialogue.
class Client {
  public:
    explicit Client(uint16_t port) : link_(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(link_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    explicit Client(const std::string& path) : link_(::open(path.c_str(), O_RDWR | O_NOCTTY)) {}

    void Send(const std::string& bytes) {
        EXPECT_EQ(::write(link_.Get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    /// What comes up to the end of a line, or until the link ends, which adds "(end)" or "(reset)". Silence of some
    /// seconds is a failure.
    std::string Receive() {
        std::string text;
        while (!text.ends_with('\n')) {
            pollfd readable{link_.Get(), POLLIN, 0};
            if (::poll(&readable, 1, 10'000) != 1) return text + "(silence)";
            char c = 0;
            const ssize_t count = ::read(link_.Get(), &c, 1);
            if (count <= 0) return text + (count == 0 ? "(end)" : "(reset)");
            text += c;
        }
        return text;
    }
    /// Exactly so many bytes.
    std::string Receive(size_t count) {
        std::string text(count, '\0');
        for (size_t got = 0; got < count;) {
            const ssize_t more = ::read(link_.Get(), &text[got], count - got);
            if (more <= 0) return "(end)";
            got += static_cast<size_t>(more);
        }
        return text;
    }
    std::string Ask(const std::string& line) {
        Send(line + "\n");
        return Receive();
    }

  private:
    sim::FileDescriptor link_;
};

std::string Temporary(const std::string& name) {
    return testing::TempDir() + "tarn4x-sim-" + std::to_string(::getpid()) + "-" + name;
}

class TextFile {
  public:
    explicit TextFile(const std::string& text, const std::string& name = "script") : path(Temporary(name)) {
        std::ofstream{path} << text;
    }
    ~TextFile() { std::filesystem::remove(path); }
    const std::string path;
};

TEST(Program, TalksOverTcpToSeveralAtATime) {
    Program program{{"--port", "0", "--options", "TARN-B3"}};
    const uint16_t port = program.Port();
    Client one{port}, two{port};
    one.Send("SENS:FREQ:CENT 482E6\r\nSENS:");
    EXPECT_EQ(one.Ask("FREQ:CENT?"), "482000000\n");
    EXPECT_EQ(two.Ask("SENS:FREQ:CENT?;:*OPT?"), "482000000;TARN-B3\n");
    two.Send("*OPC?\n*OPC?\n");
    EXPECT_EQ(two.Receive(4), "1\n1\n");
    two.Send(std::string(70'000, 'x') + "\n");
    EXPECT_EQ(two.Ask("SYST:ERR?"), "-363,\"Input buffer overrun\"\n");
    EXPECT_EQ(program.End(SIGTERM), 0);
    EXPECT_EQ(one.Receive(), "(end)");
}

TEST(Program, TalksOverASerialLineAndTakesTheLinkAway) {
    const std::string path = Temporary("line");
    std::filesystem::create_symlink("/nowhere", path);  // an old link
    Program program{{"--serial", path}};
    EXPECT_EQ(program.Line(), "serial line " + path);
    for (int user = 0; user < 2; ++user) {
        Client client{path};
        EXPECT_EQ(client.Ask("*IDN?"), "VANTERRA,TARN,100042,5.10\n");
        EXPECT_EQ(client.Ask("READ:SCREEN:BUFFER?\r"), "0\n");
        client.Send("READ:BUFFER:PCX?\n");
        ASSERT_EQ(client.Receive(2), "#4");  // the line is raw: no echo, no changed bytes
        const size_t length = std::stoul(client.Receive(4));
        EXPECT_EQ(client.Receive(length + 1).substr(length), "\n");
    }
    EXPECT_EQ(program.End(SIGINT), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(path));
}

TEST(Program, ShowsTheFrontPanelsFace) {
    Program program{{"--front-panel", "0", "--port", "0"}};
    const uint16_t port = program.Port(), panel = program.Port();
    Client remote{port}, front{panel};
    EXPECT_EQ(front.Ask("SYST:ERR?;BOGUS;*OPC?"), "1\n");
    EXPECT_EQ(remote.Ask("SYST:ERR?"), "0,\"No error\"\n");
}

TEST(Program, PlaysFaults) {
    const TextFile script{
        "on 1? | answer late | delay 50\n"
        "on 2? | answer pieces | split 1 | gap 1 | terminator crlf\n"
        "on 3? | answer one\\ntwo\n"
        "on 4? | bytes 00 ff 0a\n"
        "on *OPC? | busy 0.05 | error -310\n"
        "on 5? | answer middle | close in\n"
        "on 6? | answer never | close before\n"
        "on 7? | answer all | close after\n"
        "on 8? | answer xyz | reset after\n"
        "on SENS:FREQ:CENT? | silence\n"
        "on READ:SIGN:RF? | signal present off\n"};
    Program program{{"--port", "0", "--script", script.path}};
    const uint16_t port = program.Port();
    Client client{port};
    client.Send("1?\n*IDN?\n");  // the late answer is not overtaken
    EXPECT_EQ(client.Receive(), "late\n");
    EXPECT_THAT(client.Receive(), StartsWith("VANTERRA"));
    EXPECT_EQ(client.Ask("2?"), "pieces\r\n");
    EXPECT_EQ(client.Ask("3?"), "one\n");
    EXPECT_EQ(client.Receive(), "two\n");
    EXPECT_EQ(client.Ask("4?"), std::string("\0\xFF\n", 3));
    EXPECT_EQ(client.Ask("*CLS;*OPC?"), "1\n");  // another line: the rule stays
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
    EXPECT_EQ(client.Ask("SYST:ERR?"), "-310,\"System error\"\n");
    EXPECT_EQ(client.Ask("SENS:FREQ:CENT?\nREAD:SIGN:RF?"), "NORF\n");
    EXPECT_EQ(client.Ask("5?"), "mid(end)");
    EXPECT_EQ(Client{port}.Ask("6?"), "(end)");
    Client last{port};
    EXPECT_EQ(last.Ask("7?"), "all\n");
    EXPECT_EQ(last.Receive(), "(end)");
    Client cut{port};
    std::string rest = cut.Ask("8?");  // the reset may overtake the answer
    if (rest == "xyz\n") rest = cut.Receive();
    EXPECT_EQ(rest, "(reset)");
}

TEST(Program, TurnsPartnersAwayAndGoesDeaf) {
    const TextFile refusing{"refuse connections\n"};
    Program closed{{"--port", "0", "--script", refusing.path}};
    EXPECT_THAT(Client{closed.Port()}.Receive(), testing::AnyOf("(end)", "(reset)"));
    closed.End(SIGTERM);
    const TextFile deaf{"on *IDN? | deaf\n"};
    Program program{{"--port", "0", "--script", deaf.path}};
    const uint16_t port = program.Port();
    Client first{port}, second{port};
    first.Send("*IDN?\nSENS:FREQ:CENT 5E8\n");
    EXPECT_EQ(second.Ask("*OPC?"), "1\n");
    EXPECT_EQ(second.Ask("SENS:FREQ:CENT?"), "474000000\n");
    EXPECT_EQ(program.End(SIGTERM), 0);
    EXPECT_EQ(first.Receive(), "(end)");
}

// A partner who asks and never reads neither stops the others nor fills the memory.
TEST(Program, SurvivesAPartnerWhoDoesNotRead) {
    Program program{{"--port", "0"}};
    const uint16_t port = program.Port();
    Client greedy{port}, other{port};
    greedy.Send("SENS:DVBT:MEAS CDI;:READ:SCREEN:BUFFER?\n");
    for (int i = 0; i < 2000; ++i) greedy.Send("READ:BUFFER:PCX?\n");
    EXPECT_EQ(other.Ask("*OPC?"), "1\n");
    EXPECT_EQ(program.End(SIGTERM), 0);
}

TEST(Program, ReplaysTracesOverBothLinks) {
    const TextFile older{Trace("SENS:FREQ:CENT  482E6|READ:RF:LEVEL?"), "trace.1"};
    const TextFile newer{Trace("READ:RF:LEVEL?=-41.5 \xC2\xB5|*IDN?|*IDN?=FIELD,TARN,7,4.10|*OPC?"
                               "|SYST:ERR?|SYST:ERR?=-310,\"System error\"|READ:BUFFER:PCX?|READ:BUFFER:PCX?=1 bytes"
                               "|READ:RF:LEVEL?|READ:RF:LEVEL?=-99") +
                             "2025-01-31T12:34:57.000Z\t\t6\tTA",
                         "trace"};
    const std::string line = Temporary("replay");
    Program program{{"--port", "0", "--serial", line, "--replay", older.path, "--replay", newer.path}};
    Client tcp{program.Port()};
    EXPECT_EQ(program.Line(), "serial line " + line);
    Client serial{line};
    tcp.Send("SENS:FREQ:CENT  482E6\n");
    EXPECT_EQ(tcp.Ask("READ:RF:LEVEL?"), "-41.5 \xB5\n");
    EXPECT_EQ(serial.Ask("READ:RF:LEVEL?"), "-99\n");
    EXPECT_EQ(tcp.Ask("*OPC?\n*IDN?"), "FIELD,TARN,7,4.10\n");  // the first query stays without an answer
    EXPECT_EQ(serial.Ask("SYST:ERR?"), "-310,\"System error\"\n");
    EXPECT_EQ(tcp.Ask("SYST:ERR?"), "0,\"No error\"\n");
    EXPECT_EQ(tcp.Ask("SENS:FREQ:CENT?"), "482000000\n");  // not in the trace, but the command before was executed
    EXPECT_EQ(serial.Ask("READ:SCREEN:BUFFER?"), "0\n");
    serial.Send("READ:BUFFER:PCX?\n");
    EXPECT_EQ(serial.Receive(2), "#4");
}

TEST(Program, RefusesBadArguments) {
    const TextFile broken{"signal cn\n"}, empty{"", "empty"};
    struct Case {
        std::vector<std::string> arguments;
        std::string message;
        int exitCode;
    };
    for (const Case& c :
         {Case{{"--bogus"}, "unknown argument '--bogus'", 2}, Case{{"--port"}, "--port needs a value", 2},
          Case{{"--port", "65536"}, "--port cannot be '65536'", 2}, Case{{"--seed", "-1"}, "--seed cannot be '-1'", 2},
          Case{{"--settle", "nan"}, "--settle cannot be 'nan'", 2},
          Case{{"--options", "TARN-X"}, "unknown option TARN-X", 2},
          Case{{"--script", "/nowhere"}, "cannot read /nowhere", 2}, Case{{"--script", broken.path}, "line 1: ", 2},
          Case{{"--replay", broken.path}, broken.path + ", line 1: fields", 2},
          Case{{"--replay", empty.path}, "nothing to replay in " + empty.path, 2},
          Case{{"--replay-timing"}, "--replay-timing needs --replay", 2},
          Case{{"--serial", "/nowhere/line"}, "/nowhere/line: No such file", 1}}) {
        Program program{c.arguments};
        EXPECT_THAT(program.Line(), HasSubstr(c.message));
        EXPECT_EQ(program.End(0), c.exitCode) << c.message;
    }
    Program help{{"--help"}};
    EXPECT_THAT(help.Line(), StartsWith("tarn4x-sim: "));
    EXPECT_EQ(help.End(0), 0);
    const std::string path = Temporary("file");
    std::ofstream{path} << "not a link";
    Program occupied{{"--serial", path}};
    EXPECT_EQ(occupied.End(0), 1);  // a file that is in the way is not deleted
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
    std::filesystem::remove(path);
}

}  // namespace
