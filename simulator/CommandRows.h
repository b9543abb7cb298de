#pragma once

#include "simulator/CommandTable.h"
#include "simulator/Settings.h"

// Makers of the usual kinds of rows.
namespace sim {

enum class Effect { None, Restart };  // whether a new value makes the results settle again

/// A setting whose value is one of the tokens; it is kept as the token's index. A token may hold commas.
Command Choice(std::string_view pattern, int Settings::*setting, const std::vector<std::string_view>& tokens,
               Effect effect = Effect::None);
/// The same for a member of the transmission parameters. In the automatic modes the query answers automatic, unless
/// that is empty.
Command OfdmChoice(std::string_view pattern, int Ofdm::*parameter, const std::vector<std::string_view>& tokens,
                   std::string_view automatic = {});
Command Switch(std::string_view pattern, bool Settings::*setting, std::string_view off, std::string_view on,
               Effect effect = Effect::None);
Command Number(std::string_view pattern, double Settings::*setting, double lowest, double highest,
               Effect effect = Effect::None);
Command Whole(std::string_view pattern, int Settings::*setting, int lowest, int highest);

/// A setting that a further rule can refuse: when check throws ScpiError the settings stay as they were.
Command Checked(Command row, std::function<void(const Receiver&)> check);

/// A query without a command; without parameters.
Command Answer(std::string_view pattern, std::function<std::string(Receiver&)> answer);
/// A command without a query; without parameters.
Command Action(std::string_view pattern, std::function<void(Receiver&)> action);

/// The index of a token in any letter case; -224 when it is none of them.
int TokenIndex(const std::vector<std::string_view>& tokens, const Arguments& arguments);

}  // namespace sim
