#pragma once

#include <string>

#include "simulator/Text.h"

/// A trace from short notation: "A?|A?=1" is the query A? and its answer 1, which came after 12.345 ms.
inline std::string Trace(std::string_view entries, const std::string& source = "TARN") {
    std::string trace;
    for (const std::string_view entry : sim::Split(entries, '|')) {
        const size_t sign = entry.find('=');
        trace += "2025-01-31T12:34:56.789Z\t" + std::string{sign == entry.npos ? "\t6\t" : "12.345\t5\t"} + source;
        trace += '\t' + std::string{entry.substr(0, sign)} + '\t';
        if (sign != entry.npos) trace += entry.substr(sign + 1);
        trace += '\n';
    }
    return trace;
}
