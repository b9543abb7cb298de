#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "core/Enumerations.h"

namespace tarn4x {

/// Measure modes in which a member exists: any of a list, or a range when the list is empty. Each comparison reads
/// MeasureMode once.
struct AllowedModes {
    std::initializer_list<TarnMeasureModes> AnyOf = {};
    TarnMeasureModes From = tarnUndefined;
    TarnMeasureModes To = tarnUndefined;

    bool Restricted() const { return AnyOf.size() != 0 || From != tarnUndefined; }
};

/// A value and the word that stands for it on the wire.
struct Token {
    std::int32_t Value;
    std::string_view Text;
};

/// What differs between members that read.
struct Read {
    std::string_view Member;
    std::string_view Query;
    std::string_view Expected = {};    ///< accepted answers; empty: any without "---"
    std::string_view Delimiter = ",";  ///< of the accepted answers
    AllowedModes Modes = {};
    std::string_view ModeSource = {};  ///< member that the mode error names, when another
    std::string_view FailsAs = {};     ///< member that a failure names, when another
    bool NeedsManualCodeRate = false;
    std::int32_t Otherwise = 0;         ///< result for an unknown answer and for a stop request
    std::string_view Unknown = {};      ///< text in front of an unknown answer that is raised; empty: not raised
    std::string_view UnknownEnd = ")";  ///< text behind it
    std::int32_t UnknownCode = xtarnInvalidPropertyValue;
};

/// What differs between members that write.
struct Write {
    std::string_view Member;
    std::string_view Command;
    std::string_view Invalid = {};  ///< text in front of a refused value; empty: sent without a word behind the command
    std::string_view FailsAs = {};  ///< member that a failure names, when another
};

}  // namespace tarn4x
