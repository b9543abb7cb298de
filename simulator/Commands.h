#pragma once

#include "simulator/CommandTable.h"

namespace sim {

// The commands by family.
std::vector<Command> SystemCommands();
std::vector<Command> InputCommands();
std::vector<Command> DvbtSettings();
std::vector<Command> DvbtResults();

}  // namespace sim
