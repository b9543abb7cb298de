#pragma once

#include <utility>

#include "platform/SettingsNode.h"

namespace host {

/// A node of the settings tree. Names are compared without regard to the case of ASCII letters.
class SettingsNode : public platform::SettingsNode {
  public:
    SettingsNode() = default;
    SettingsNode(std::string_view name, std::int32_t kind, std::int32_t style, std::string_view valueList = {})
        : name_(name), kind_(kind), style_(style), valueList_(valueList) {}

    /// The group stays empty: settings added later stand beside it and are found by their plain names.
    void AddGroup(std::string_view name, std::int32_t kind, std::int32_t style) override;
    std::shared_ptr<platform::SettingsNode> AddSetting(std::string_view name, std::int32_t kind, std::int32_t style,
                                                       std::string_view valueList) override;
    void AddNode(const std::shared_ptr<platform::SettingsNode>& node, bool notify, bool store) override;
    std::shared_ptr<platform::SettingsNode> Item(std::string_view path) override;
    std::vector<std::shared_ptr<platform::SettingsNode>> Children() override { return children_; }

    std::string Name() override { return name_; }
    std::int32_t Kind() const { return kind_; }
    std::int32_t Style() const { return style_; }

    platform::Value GetValue() override { return value_; }
    void SetValue(bool notify, bool store, const platform::Value& value) override;
    /// Text that a settings dialogue shows: the display text of the value list, else the value itself.
    std::string DisplayValue() const;

    std::string ValueList() override { return valueList_; }
    void SetValueList(std::string_view valueList) override;

    bool Fixed() const { return fixed_; }
    void SetFixed(bool fixed) override { fixed_ = fixed; }

  private:
    std::shared_ptr<platform::SettingsNode> Child(std::string_view name) const;
    void RefuseTakenName(std::string_view name) const;

    std::string name_;
    std::int32_t kind_ = 0;
    std::int32_t style_ = 0;
    platform::Value value_;
    std::string valueList_;
    bool fixed_ = false;
    std::vector<std::shared_ptr<platform::SettingsNode>> children_;
};

}  // namespace host
