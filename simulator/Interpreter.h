#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/CommandTable.h"
#include "simulator/Receiver.h"

namespace sim {

/// Where a message came from. Behind the front panel there is no error queue and no block transfer.
enum class Face { Remote, FrontPanel };

/// Executes messages on the receiver.
class Interpreter {
  public:
    explicit Interpreter(Receiver& receiver);

    /// Executes a line (without its end) and gives the answers of its queries, joined by ";" (IEEE 488.2, 8.4), or
    /// nothing when there were none. What fails goes to the error queue and the rest of the line is executed.
    std::optional<std::string> Execute(std::string_view line, Face face);

  private:
    std::optional<std::string> ExecuteUnit(const Unit& unit, std::string& path, Face face);

    Receiver& receiver_;
    CommandTable table_;
};

}  // namespace sim
