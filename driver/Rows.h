#pragma once

#include <cstdint>
#include <string_view>

#include "driver/MemberTable.h"

namespace tarn4x {

/// A value and the word that stands for it on the wire.
struct Token {
    std::int32_t Value;
    std::string_view Text;
};

/// What differs between members that read. The measure modes in which a member exists are told in driver/Members.def.
struct Read {
    Members Member;
    std::string_view Query;
    std::string_view Expected = {};    ///< accepted answers; empty: any without "---"
    std::string_view Delimiter = ",";  ///< of the accepted answers
    std::string_view ModeSource = {};  ///< member that the mode error names, when another
    std::string_view FailsAs = {};     ///< member that a failure names, when another
    bool NeedsManualCodeRate = false;
    bool AsItCame = false;              ///< the answer is not parsed
    double Scale = 1.0;                 ///< of the number that came
    std::int32_t Otherwise = 0;         ///< result for an unknown answer and for a stop request
    std::string_view Unknown = {};      ///< text in front of an unknown answer that is raised; empty: not raised
    std::string_view UnknownEnd = ")";  ///< text behind it
    std::int32_t UnknownCode = xtarnInvalidPropertyValue;
};

/// What differs between members that write.
struct Write {
    Members Member;
    std::string_view Command;
    bool Refuses = false;  ///< a value without a word is refused; otherwise the bare command is sent
    std::string_view Refusal =
        {};  ///< text in front of a refused value, when not "Invalid property value (<member> = "
    std::string_view FailsAs = {};  ///< member that a failure names, when another
    bool NeedsManualCodeRate = false;
};

}  // namespace tarn4x
