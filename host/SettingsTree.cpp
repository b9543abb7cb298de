#include "host/SettingsTree.h"

#include <algorithm>

#include "platform/AutomationError.h"

namespace host {

namespace {

constexpr char Source[] = "Seamcfg.clsNode";

bool SameText(std::string_view a, std::string_view b) { return a == b; }

bool SameName(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

struct Choice {
    std::string_view Display;
    std::string_view Stored;
};

/// The entries of "display=value,display=value", blanks around both parts removed. An entry without "=" is both.
std::vector<Choice> Choices(std::string_view valueList) {
    std::vector<Choice> choices;
    while (!valueList.empty()) {
        const auto comma = valueList.find(',');
        const auto entry = valueList.substr(0, comma);
        valueList = comma == std::string_view::npos ? std::string_view{} : valueList.substr(comma + 1);
        const auto equals = entry.find('=');
        const auto display = Trimmed(entry.substr(0, equals));
        choices.push_back({display, equals == std::string_view::npos ? display : Trimmed(entry.substr(equals + 1))});
    }
    return choices;
}

/// Text under which a value stands in a value list, where True is -1.
std::string ListText(const platform::Value& value) {
    if (const bool* boolean = std::get_if<bool>(&value)) return *boolean ? "-1" : "0";
    return std::string(Trimmed(platform::ToText(value)));
}

/// The value as it is stored under a value list, found in any letter case. Stored values go before display texts, so
/// that what was read from one setting means the same when it is written to another with the same list.
platform::Value Stored(std::string_view valueList, const platform::Value& value) {
    if (std::holds_alternative<std::monostate>(value)) return value;
    const auto text = ListText(value);
    const auto choices = Choices(valueList);
    for (const auto same : {SameText, SameName}) {
        for (const auto column : {&Choice::Stored, &Choice::Display}) {
            const auto choice = std::ranges::find_if(
                choices, [&](auto entry) { return same(entry, text); }, column);
            if (choice != choices.end()) return std::string(choice->Stored);
        }
    }
    return value;
}

}  // namespace

void SettingsNode::AddGroup(std::string_view name, std::int32_t kind, std::int32_t style) {
    AddSetting(name, kind, style, {});
}

std::shared_ptr<platform::SettingsNode> SettingsNode::AddSetting(std::string_view name, std::int32_t kind,
                                                                 std::int32_t style, std::string_view valueList) {
    RefuseTakenName(name);
    return children_.emplace_back(std::make_shared<SettingsNode>(name, kind, style, valueList));
}

void SettingsNode::AddNode(const std::shared_ptr<platform::SettingsNode>& node, bool, bool) {
    if (!node) throw platform::AutomationError(platform::ObjectVariableNotSet, Source, "There is no node to add");
    RefuseTakenName(node->Name());
    children_.push_back(node);
}

std::shared_ptr<platform::SettingsNode> SettingsNode::Item(std::string_view path) {
    if (auto child = Child(path)) return child;
    if (const auto dot = path.find('.'); dot != std::string_view::npos) {
        if (const auto child = Child(path.substr(0, dot))) return child->Item(path.substr(dot + 1));
    }
    std::string names;
    for (const auto& child : children_) names += (names.empty() ? "\"" : ", \"") + child->Name() + '"';
    throw platform::AutomationError(platform::SubscriptOutOfRange, Source,
                                    "There is no setting \"" + std::string(path) + "\" below " +
                                        (name_.empty() ? "the root" : '"' + name_ + '"') + ", which has " +
                                        (names.empty() ? "none" : names));
}

void SettingsNode::SetValue(bool, bool, const platform::Value& value) { value_ = Stored(valueList_, value); }

std::string SettingsNode::DisplayValue() const {
    const auto choices = Choices(valueList_);
    const auto choice = std::ranges::find(choices, ListText(value_), &Choice::Stored);
    if (choice == choices.end() || std::holds_alternative<std::monostate>(value_)) return platform::ToText(value_);
    return std::string(choice->Display);
}

void SettingsNode::SetValueList(std::string_view valueList) {
    valueList_ = valueList;
    value_ = Stored(valueList_, value_);
}

std::shared_ptr<platform::SettingsNode> SettingsNode::Child(std::string_view name) const {
    const auto child = std::ranges::find_if(children_, [&](const auto& node) { return SameName(node->Name(), name); });
    return child == children_.end() ? nullptr : *child;
}

void SettingsNode::RefuseTakenName(std::string_view name) const {
    if (!Child(name)) return;
    throw platform::AutomationError(platform::KeyAlreadyUsed, Source,
                                    "There is already a setting \"" + std::string(name) + "\" below " +
                                        (name_.empty() ? "the root" : '"' + name_ + '"'));
}

}  // namespace host
