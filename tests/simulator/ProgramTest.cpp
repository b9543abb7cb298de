#include <fcntl.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "tests/support/Program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Program : support::Program {
    explicit Program(std::vector<std::string> arguments) : support::Program(SIMULATOR, std::move(arguments)) {}
};

/// The host's end of a serial line.
class Client {
  public:
    explicit Client(const std::string& path) : line_(::open(path.c_str(), O_RDWR | O_NOCTTY)) {}
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { ::close(line_); }

    void Send(const std::string& bytes) {
        EXPECT_EQ(::write(line_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    /// Exactly so many bytes.
    std::string Receive(size_t count) {
        std::string text(count, '\0');
        for (size_t got = 0; got < count;) {
            const ssize_t more = ::read(line_, &text[got], count - got);
            if (more <= 0) return "(end)";
            got += static_cast<size_t>(more);
        }
        return text;
    }
    std::string Ask(const std::string& line) {
        Send(line + "\n");
        std::string answer;
        do answer += Receive(1);
        while (!answer.ends_with('\n') && !answer.ends_with(')'));
        return answer;
    }

  private:
    const int line_;
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

TEST(Program, TellsItsPortsAndEndsWhenItIsTold) {
    Program program{{"--front-panel", "0", "--port", "0", "--listen", "127.0.0.2"}};
    EXPECT_THAT(program.Line(), StartsWith("listening on 127.0.0.2:"));
    EXPECT_THAT(program.Line(), StartsWith("front panel on 127.0.0.2:"));
    EXPECT_EQ(program.End(SIGTERM), 0);
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
          Case{{"--listen", "::1"}, "not an IPv4 address: '::1'", 2},
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
