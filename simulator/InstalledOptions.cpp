#include "simulator/InstalledOptions.h"

#include <algorithm>
#include <stdexcept>

#include "simulator/Text.h"

namespace sim {

namespace {

struct OptionBit {
    std::string_view code;
    int bit;
};

constexpr OptionBit kBits[] = {
    {"TARN-B3", 0},   {"EAMOD", 1},    {"RB", 2},        {"AD", 3},        {"TARN-B2", 4},
    {"TARN-B1", 5},   {"TARN-B4", 6},  {"TARN-B6", 7},   {"TARN-B8", 8},   {"TARN-B5", 9},
    {"TARN-B10", 10}, {"TARN-B7", 11}, {"TARN-B20", 12}, {"TARN-K21", 13}, {"TARN-K22", 14},
    {"TARN-K23", 15}, {"EXTMEM", 16},  {"TARN-K25", 24}, {"EXTREF", 25},
};

constexpr std::string_view kSawCodes[] = {"TARN-B11", "TARN-B12", "TARN-B13"};  // 6, 7, 8 MHz

}  // namespace

InstalledOptions::InstalledOptions(std::string_view list) {
    for (const std::string_view piece : Split(list, ',')) {
        const std::string code = Upper(Trim(piece));
        if (code.empty()) continue;
        const bool known = std::any_of(std::begin(kBits), std::end(kBits),
                                       [&](const OptionBit& option) { return option.code == code; });
        if (!known && std::find(std::begin(kSawCodes), std::end(kSawCodes), code) == std::end(kSawCodes)) {
            throw std::invalid_argument("unknown option " + code);
        }
        codes_.insert(code);
    }
}

unsigned long InstalledOptions::Mask() const {
    unsigned long mask = 0;
    for (const OptionBit& option : kBits) {
        if (Has(option.code)) mask |= 1ul << option.bit;
    }
    return mask;
}

std::string InstalledOptions::Boards() const {
    std::string boards = "0x01 CPU 5.1;0x40 TUNER 3.2";
    std::string filters;
    for (const int bandwidth : {6, 7, 8}) {
        if (HasSaw(bandwidth)) filters += Print(" %d.0", bandwidth);
    }
    if (!filters.empty()) boards += ";0x83 SAW" + filters;
    return '"' + boards + '"';
}

bool InstalledOptions::HasSaw(int bandwidth) const { return Has(kSawCodes[bandwidth - 6]); }

std::string InstalledOptions::List() const {
    std::string list;
    for (const std::string& code : codes_) list += (list.empty() ? "" : ",") + code;
    return list;
}

}  // namespace sim
