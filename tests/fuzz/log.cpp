// An entry is one line of six fields whatever it holds, and the simulated receiver reads the same dialogue out of it.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "host/MessageLog.h"
#include "simulator/Replay.h"
#include "simulator/Text.h"
#include "tests/fuzz/Fuzz.h"

namespace {

/// A log whose file is in memory.
struct MemoryLog {
    MemoryLog() { log.SetFileName("/proc/self/fd/" + std::to_string(file)); }
    std::string Take() {
        std::string content(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
        REQUIRE(pread(file, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()));
        REQUIRE(ftruncate(file, 0) == 0);
        return content;
    }

    const int file = memfd_create("log", 0);
    host::MessageLog log;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static MemoryLog memory;
    FuzzedDataProvider input(data, size);
    const auto query = input.ConsumeRandomLengthString();
    const auto answer = input.ConsumeRandomLengthString();
    const auto kind = input.ConsumeIntegral<std::int16_t>();
    const auto other = input.ConsumeRemainingBytesAsString();

    auto& log = memory.log;
    log.Clear();
    log.Log(host::CommandEntry, "TARN", fuzz::Utf8(query), "");
    log.Log(host::AnswerEntry, "TARN", fuzz::Utf8(query), fuzz::Utf8(answer));
    log.Log(kind, other + "x", other, other);
    REQUIRE(log.Count() == 3);
    REQUIRE(log.Entry(3) == std::to_string(kind) + '\t' + other + "x\t" + other + '\t' + other);

    const auto file = memory.Take();
    REQUIRE(std::ranges::count(file, '\n') == 3 && file.ends_with('\n'));
    REQUIRE(std::ranges::count(file, '\t') == 15);
    REQUIRE(std::ranges::none_of(
        file, [](char c) { return (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') || c == '\x7F'; }));

    sim::Replay replay;
    replay.Add(file);
    if (sim::Normalise(query).empty() || answer.ends_with(" bytes")) return 0;
    sim::Treatment treatment;
    replay.Apply(query, false, treatment);
    REQUIRE(treatment.answer == answer);
    return 0;
}
