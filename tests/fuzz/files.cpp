// The files that the simulated receiver reads: a trace or a script is taken, or refused with std::invalid_argument.
#include <stdexcept>

#include "simulator/Replay.h"
#include "simulator/Script.h"
#include "tests/fuzz/Fuzz.h"

namespace {

template <class Read>
void RefusedOrRead(Read read) {
    try {
        read();
    } catch (const std::invalid_argument& error) {
        REQUIRE(std::string_view(error.what()).find("line ") != std::string_view::npos);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::Text(data, size);
    RefusedOrRead([&] {
        sim::Replay replay;
        replay.Add(text);
        for (int i = 0; i < 3; ++i) {
            sim::Treatment treatment;
            replay.Apply("syst:err? ", true, treatment);
            REQUIRE(replay.Empty() || treatment.answer || treatment.silence || treatment.delay.count() >= 0);
            REQUIRE(treatment.delay.count() >= 0);
        }
    });
    RefusedOrRead([&] {
        sim::Script script(text);
        for (int i = 0; i < 3; ++i) {
            const auto treatment = script.Treat("*IDN?");
            REQUIRE(treatment.delay.count() >= 0 && treatment.gap.count() >= 0 && treatment.busy.count() >= 0);
            for (const auto piece : treatment.pieces) REQUIRE(piece > 0);  // else an answer never ends
        }
    });
    return 0;
}
