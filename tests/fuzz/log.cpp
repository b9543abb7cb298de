// An entry is one line of six fields whatever it holds, and the simulated receiver reads the same dialogue out of it.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>

#include "host/MessageLog.h"
#include "simulator/Replay.h"
#include "simulator/Text.h"
#include "tests/fuzz/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto query = input.Text(), answer = input.Text();
    const std::int16_t kind = input.Byte();
    const std::string other{input.rest};

    static const int memory = memfd_create("log", 0);
    assert(ftruncate(memory, 0) == 0);
    const auto path = "/proc/self/fd/" + std::to_string(memory);
    host::MessageLog log;
    log.SetFileName(path);
    log.Log(host::CommandEntry, "TARN", fuzz::Utf8(query), "");
    log.Log(host::AnswerEntry, "TARN", fuzz::Utf8(query), fuzz::Utf8(answer));
    log.Log(kind, other + "x", other, other);
    assert(log.Entry(3) == std::to_string(kind) + '\t' + other + "x\t" + other + '\t' + other);

    std::ifstream stream(path, std::ios::binary);
    const std::string file{std::istreambuf_iterator<char>(stream), {}};
    assert(std::ranges::count(file, '\n') == 3 && file.ends_with('\n'));
    assert(std::ranges::count(file, '\t') == 15);
    assert(std::ranges::count_if(file, [](unsigned char c) { return std::iscntrl(c); }) == 18);

    sim::Replay replay;
    replay.Add(file);
    if (sim::Normalise(query).empty() || answer.ends_with(" bytes")) return 0;
    sim::Treatment treatment;
    replay.Apply(query, false, treatment);
    assert(treatment.answer == answer);
    return 0;
}
