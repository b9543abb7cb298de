#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

extern char** environ;

namespace support {

/// A program of the build, run beside the test. What it prints, standard error included, comes through a pipe.
class Program {
  public:
    explicit Program(const char* path, std::vector<std::string> arguments) {
        int ends[2];
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        output_ = ends[0];
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
        arguments.insert(arguments.begin(), path);
        std::vector<char*> texts;
        for (std::string& argument : arguments) texts.push_back(argument.data());
        texts.push_back(nullptr);
        EXPECT_EQ(::posix_spawn(&process_, path, &actions, nullptr, texts.data(), environ), 0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
    }
    ~Program() {
        if (process_ > 0) End(SIGKILL);
        ::close(output_);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string Line() {
        std::string line;
        for (char c; ::read(output_, &c, 1) == 1 && c != '\n';) line += c;
        return line;
    }
    /// The number behind the last colon of the next line.
    std::uint16_t Port() {
        const std::string line = Line();
        return static_cast<std::uint16_t>(std::stoi(line.substr(line.rfind(':') + 1)));
    }
    /// The exit code; -1 when a signal ended it. Sends no signal when that is 0.
    int End(int signal) {
        if (signal != 0) ::kill(process_, signal);
        int status = 0;
        ::waitpid(std::exchange(process_, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    int output_ = -1;
    pid_t process_ = 0;
};

}  // namespace support
