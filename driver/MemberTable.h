#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "driver/Enumerations.h"

namespace tarn4x {

/// The members of the driver, by name.
enum class Members : std::uint8_t {
#define READ(identifier, name, ...) name,
#define CONTROL(identifier, name, ...) name,
#define METHOD(identifier, name, ...) name,
#define FUNCTION(identifier, name, ...) name,
#include "driver/Members.def"
};

/// Measure modes in which a member exists; every mode, when there is no restriction.
class AllowedModes {
  public:
    constexpr AllowedModes() = default;
    template <class... Modes>
    constexpr AllowedModes(int comparisons, std::string_view names, Modes... modes)
        : Comparisons(comparisons), Names(names), set((... | (1U << static_cast<unsigned>(modes)))) {}

    constexpr bool Restricted() const { return set != 0; }
    constexpr bool Contain(TarnMeasureModes mode) const { return mode >= 0 && (set >> mode & 1U) != 0; }

    int Comparisons = 0;          ///< how often a check reads MeasureMode
    std::string_view Names = {};  ///< "SP_1, SP_2 or SP_3"

  private:
    std::uint32_t set = 0;
};

enum class Access : std::uint8_t { Read, ReadAndWrite, Method, Function };

/// What the list of members tells of one.
struct MemberRow {
    std::int32_t Identifier;  ///< of automation calls (DISPID)
    std::string_view Name;
    Access Allows;
    std::string_view Arguments;  ///< "udtPriority As TarnStatusHierarchicalModes", separated by commas
    std::string_view Type;       ///< as Basic names it, or an enumeration; empty for methods
    std::string_view Unit;       ///< "dB"; empty for what has none
    AllowedModes Modes;
    std::string_view Text, TextBehindUnit;

    /// The help text of the type library.
    std::string Help() const;
};

const MemberRow& RowOf(Members member);
inline std::string_view NameOf(Members member) { return RowOf(member).Name; }
/// All members in the order of the function table.
std::span<const MemberRow> AllMembers();
/// The member of that name in any letter case; null when there is none.
const MemberRow* FindMember(std::string_view name);

}  // namespace tarn4x
