#include "simulator/CommandTable.h"

#include <algorithm>

#include "simulator/ErrorQueue.h"
#include "simulator/Text.h"

namespace sim {

namespace {

bool IsHeaderCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ':' || c == '*';
}

}  // namespace

CommandTable::CommandTable(std::vector<Command> commands) {
    for (Command& command : commands) {
        Row row;
        for (const std::string_view level : Split(command.pattern, ':')) {
            std::string shortForm;
            for (const char c : level) {
                if (c < 'a' || c > 'z') shortForm += c;
            }
            row.levels.push_back({shortForm, Upper(level)});
        }
        row.command = std::move(command);
        rows_.push_back(std::move(row));
    }
}

CommandTable::Match CommandTable::Find(std::string_view header, const std::string& path) const {
    std::string full = Upper(header);
    if (!std::all_of(full.begin(), full.end(), IsHeaderCharacter)) throw ScpiError{-101};
    if (full.starts_with('*')) {
        if (const Command* command = FindFromRoot(full)) return {command, path};
        throw ScpiError{-113};
    }
    if (full.starts_with(':')) {
        full.erase(0, 1);
    } else if (!path.empty()) {
        if (const Command* command = FindFromRoot(path + full)) {
            full = path + full;
            return {command, full.substr(0, full.rfind(':') + 1)};
        }
    }
    const Command* command = FindFromRoot(full);
    if (command == nullptr) throw ScpiError{-113};
    return {command, full.substr(0, full.rfind(':') + 1)};  // one level only: npos + 1 leaves the root
}

const Command* CommandTable::FindFromRoot(const std::string& header) const {
    const std::vector<std::string_view> names = Split(header, ':');
    const auto plain = [](std::string_view name) {
        while (!name.empty() && name.back() >= '0' && name.back() <= '9') name.remove_suffix(1);
        return name;
    };
    const auto same = [&](const Level& level, std::string_view name) {
        return name == level.shortForm || name == level.longForm || plain(name) == level.shortForm ||
               plain(name) == level.longForm;
    };
    const auto row = std::find_if(rows_.begin(), rows_.end(), [&](const Row& candidate) {
        return std::equal(candidate.levels.begin(), candidate.levels.end(), names.begin(), names.end(), same);
    });
    if (row == rows_.end()) return nullptr;
    for (size_t i = 0; i < names.size(); ++i) {
        const std::string_view suffix = names[i].substr(plain(names[i]).size());
        const bool partOfName = names[i] == row->levels[i].shortForm || names[i] == row->levels[i].longForm;
        if (!partOfName && suffix != "1") throw ScpiError{-114};
    }
    return &row->command;
}

}  // namespace sim
