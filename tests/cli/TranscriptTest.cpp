// The documents show what the program prints: every block of commands in them is run as a user would run it, with the
// receiver inside the program, and again with tarn4x-sim over TCP/IP.
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>

#include "driver/Conversions.h"
#include "tests/support/Program.h"

namespace {

namespace fs = std::filesystem;

struct Command {
    std::string Text;
    std::string Expected;  ///< "..." stands for anything
};

/// The commands of one block; they share a folder.
struct Block {
    std::string Where;
    std::vector<Command> Commands;

    friend void PrintTo(const Block& block, std::ostream* out) { *out << block.Where; }
};

std::vector<Block> ReadBlocks() {
    std::vector<Block> blocks;
    for (const auto path : tarn4x::Split(TRANSCRIPTS)) {
        std::ifstream file{std::string(path)};
        bool inside = false;
        int number = 0;
        for (std::string line; std::getline(file, line);) {
            ++number;
            if (line.starts_with("```")) {
                inside = line == "```console";
                if (inside) blocks.push_back({fs::path(path).stem().string() + "_line_" + std::to_string(number), {}});
            } else if (inside && line.starts_with("$ ")) {
                blocks.back().Commands.push_back({line.substr(2), {}});
            } else if (inside) {
                blocks.back().Commands.back().Expected += line + '\n';
            }
        }
    }
    return blocks;
}

/// Times differ.
std::string WithoutTimes(const std::string& text) {
    static const std::regex time(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
    return std::regex_replace(text, time, "TIME");
}

bool Fits(std::string_view output, std::string_view expected) {
    const auto pieces = tarn4x::Split(expected, "...");
    if (pieces.size() < 2) return output == expected;
    if (!output.starts_with(pieces.front()) || !output.ends_with(pieces.back())) return false;
    for (const auto piece : pieces) {
        const auto at = output.find(piece);
        if (at == output.npos) return false;
        output.remove_prefix(at + piece.size());
    }
    return true;
}

class Transcripts : public testing::TestWithParam<std::tuple<bool, Block>> {
  protected:
    void SetUp() override {
        setenv("PATH", (PROGRAMS ":" + std::string(std::getenv("PATH"))).c_str(), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        fs::create_directory(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    /// What a terminal would show, and how the command ended unless that was well.
    std::string Run(const std::string& command) {
        std::ofstream(folder_ / ".command") << command << '\n';
        auto* pipe = ::popen(("cd '" + folder_.string() + "' && bash .command 2>&1").c_str(), "r");
        std::string output;
        for (int c; (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
        const int code = WEXITSTATUS(::pclose(pipe));
        return code == 0 ? output : output + "[exit code " + std::to_string(code) + "]\n";
    }

  private:
    fs::path folder_ = fs::temp_directory_path() / ("tarn4x-" + std::to_string(::getpid()));
};

TEST_P(Transcripts, Hold) {
    const auto& [overTcp, block] = GetParam();
    for (const auto& [command, expected] : block.Commands) {
        std::optional<support::Program> receiver;
        std::string where = "--simulated";
        if (overTcp) {
            receiver.emplace(PROGRAMS "/tarn4x-sim", std::vector<std::string>{"--port", "0"});
            where = "--no-waits --host 127.0.0.1:" + std::to_string(receiver->Port());
        }
        setenv("TARN4X_RECEIVER", where.c_str(), 1);
        const auto output = Run(command);
        EXPECT_TRUE(Fits(WithoutTimes(output), WithoutTimes(expected))) << "$ " << command << '\n'
                                                                        << output << "instead of\n"
                                                                        << expected;
    }
}

std::string NameOf(const testing::TestParamInfo<std::tuple<bool, Block>>& test) {
    const auto& [overTcp, block] = test.param;
    return block.Where + (overTcp ? "_tcp" : "_simulated");
}

INSTANTIATE_TEST_SUITE_P(Documents, Transcripts, testing::Combine(testing::Bool(), testing::ValuesIn(ReadBlocks())),
                         NameOf);

}  // namespace
