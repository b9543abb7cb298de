// Feeds the files of a corpus to a target: each as it is, cut at up to 100 places, and with the byte there changed.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int, char** arguments) {
    for (const auto& file : std::filesystem::directory_iterator(arguments[1])) {
        std::fprintf(stderr, "%s\n", file.path().c_str());
        std::ifstream stream(file.path(), std::ios::binary);
        const std::vector<std::uint8_t> input{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(input.data(), input.size());
        for (std::size_t i = 0; i < input.size(); i += 1 + input.size() / 100) {
            LLVMFuzzerTestOneInput(std::vector(input.begin(), input.begin() + i).data(), i);
            auto changed = input;
            changed[i] ^= static_cast<std::uint8_t>(1U << i % 8);
            LLVMFuzzerTestOneInput(changed.data(), changed.size());
        }
    }
    return std::filesystem::is_empty(arguments[1]) ? 1 : 0;
}
