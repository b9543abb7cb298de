#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Value.h"

namespace platform {

/// A node of a settings tree: the root, a group, or a setting with a value. Text is UTF-8.
class SettingsNode {
  public:
    virtual ~SettingsNode() = default;

    /// Adds a group below this node. Raises 457 when a sibling has that name.
    virtual void AddGroup(std::string_view name, std::int32_t kind, std::int32_t style) = 0;

    /// Adds a setting below this node. An empty value list means free entry. Raises 457 when a sibling has that name.
    virtual std::shared_ptr<SettingsNode> AddSetting(std::string_view name, std::int32_t kind, std::int32_t style,
                                                     std::string_view valueList) = 0;

    /// Grafts another tree under this node; it stays the same tree. Raises 457 when a sibling has its name.
    virtual void AddNode(const std::shared_ptr<SettingsNode>& node, bool notify, bool store) = 0;

    /// The node of that name; a dotted path ("RS232.Baud Rate") goes through the levels. Raises 9 when there is none.
    virtual std::shared_ptr<SettingsNode> Item(std::string_view path) = 0;

    /// The children in the order in which they were added.
    virtual std::vector<std::shared_ptr<SettingsNode>> Children() = 0;

    virtual std::string Name() = 0;

    /// With a value list, the stored value; text in neither column of the list is kept as given.
    virtual Value GetValue() = 0;
    virtual void SetValue(bool notify, bool store, const Value& value) = 0;

    /// "display=value,display=value"; empty means free entry.
    virtual std::string ValueList() = 0;
    virtual void SetValueList(std::string_view valueList) = 0;

    /// True: the driver has fixed the value.
    virtual void SetFixed(bool fixed) = 0;
};

}  // namespace platform
