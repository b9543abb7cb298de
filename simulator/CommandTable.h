#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Parser.h"

namespace sim {

class Receiver;

using Setter = std::function<void(Receiver&, const Arguments&)>;
using Query = std::function<std::string(Receiver&, const Arguments&)>;

/// One command in the manual's spelling: capitals are the short form, as in "SENSe:FREQuency:CENTer".
struct Command {
    std::string_view pattern;
    Setter set;   // empty: there is only the query
    Query query;  // empty: there is only the command
};

/// Finds commands by header: short or long form, any letter case, the numeric suffix 1 allowed on every level.
class CommandTable {
  public:
    explicit CommandTable(std::vector<Command> commands);

    struct Match {
        const Command* command;
        std::string path;  // what a header behind ";" continues: all levels but the last
    };

    /// A header continues at path, unless it starts with ":"; one that is unknown there is tried from the root.
    /// Throws ScpiError -113 for an unknown header, -114 for a wrong suffix, -101 for a wrong character.
    Match Find(std::string_view header, const std::string& path) const;

  private:
    struct Level {
        std::string shortForm, longForm;
    };
    struct Row {
        std::vector<Level> levels;
        Command command;
    };

    const Command* FindFromRoot(const std::string& header) const;

    std::vector<Row> rows_;
};

}  // namespace sim
