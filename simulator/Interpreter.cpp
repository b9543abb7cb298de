#include "simulator/Interpreter.h"

#include "simulator/Commands.h"

namespace sim {

namespace {

std::vector<Command> AllCommands() {
    std::vector<Command> all;
    for (std::vector<Command> family : {SystemCommands(), InputCommands(), DvbtSettings(), DvbtResults()}) {
        for (Command& command : family) all.push_back(std::move(command));
    }
    return all;
}

bool OnFrontPanel(std::string_view pattern) {
    return !pattern.starts_with("SYSTem:ERRor") && pattern != "READ:BUFFer:PCX";
}

}  // namespace

Interpreter::Interpreter(Receiver& receiver) : receiver_(receiver), table_(AllCommands()) {}

std::optional<std::string> Interpreter::Execute(std::string_view line, Face face) {
    receiver_.PassTime();
    std::optional<std::string> answers;
    std::string path;
    for (const Unit& unit : ParseMessage(line)) {
        try {
            if (const std::optional<std::string> answer = ExecuteUnit(unit, path, face)) {
                answers = answers ? *answers + ";" + *answer : *answer;
            }
        } catch (const ScpiError& error) {
            if (face == Face::Remote) receiver_.errors.Push(error.number);
        }
    }
    return answers;
}

std::optional<std::string> Interpreter::ExecuteUnit(const Unit& unit, std::string& path, Face face) {
    CommandTable::Match match = table_.Find(unit.header, path);
    const Command& command = *match.command;
    const bool known = unit.query ? static_cast<bool>(command.query) : static_cast<bool>(command.set);
    if (!known || (face == Face::FrontPanel && !OnFrontPanel(command.pattern))) throw ScpiError{-113};
    path = std::move(match.path);
    if (unit.query) return command.query(receiver_, unit.arguments);
    command.set(receiver_, unit.arguments);
    return std::nullopt;
}

}  // namespace sim
