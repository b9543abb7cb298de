#pragma once

#include <Conduit_h.h>
#include <Seamcfg_h.h>
#include <Seamlib_h.h>

#include <memory>

#include "platform/Framework.h"
#include "platform/com/ComPtr.h"

namespace com {

/// A node of the settings component as the driver sees it.
class NodeProxy : public platform::SettingsNode {
  public:
    explicit NodeProxy(ComPtr<INode> node) : node_(std::move(node)) {}

    void AddGroup(std::string_view name, std::int32_t kind, std::int32_t style) override;
    std::shared_ptr<platform::SettingsNode> AddSetting(std::string_view name, std::int32_t kind, std::int32_t style,
                                                       std::string_view valueList) override;
    /// Raises 13 for a node that is no COM object.
    void AddNode(const std::shared_ptr<platform::SettingsNode>& node, bool notify, bool store) override;
    std::shared_ptr<platform::SettingsNode> Item(std::string_view path) override;
    std::vector<std::shared_ptr<platform::SettingsNode>> Children() override;
    std::string Name() override;
    platform::Value GetValue() override;
    void SetValue(bool notify, bool store, const platform::Value& value) override;
    std::string ValueList() override;
    void SetValueList(std::string_view valueList) override;
    void SetFixed(bool fixed) override;

    INode* get() const { return node_.get(); }

  private:
    ComPtr<INode> node_;
};

/// The COM object behind a node, without a reference for the caller. Raises 13 when the node is no NodeProxy.
INode* ComOf(platform::SettingsNode& node);

/// A transport component as the driver sees it. Only the text interface is asked for at once.
class TransportProxy : public platform::Transport {
  public:
    explicit TransportProxy(ComPtr<ITextLink> text) : text_(std::move(text)) {}

    float Timeout() override;
    void SetTimeout(float seconds) override;
    void SendReceive(std::string_view command, std::string* response) override;
    void WriteString(std::string_view command) override;
    std::string ReadString(std::optional<std::string_view> command) override;
    std::vector<std::uint8_t> ReadBlock(std::int16_t count, std::optional<std::string_view> command) override;
    void WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                    std::optional<std::string_view> command) override;
    void SetName(std::string_view name) override;
    std::shared_ptr<platform::SettingsNode> Settings() override;
    void Connect(bool connect) override;
    bool IsConnected() override;

  private:
    const ComPtr<IBlockLink>& Blocks();
    const ComPtr<IConnection>& Connection();

    ComPtr<ITextLink> text_;
    ComPtr<IBlockLink> blocks_;
    ComPtr<IConnection> connection_;
};

/// Creates an object by its ProgID. Raises the creation error: 429 for a ProgID that is not registered.
ComPtr<IUnknown> CreateByProgId(std::string_view progId, REFIID iid);

template <class Interface>
ComPtr<Interface> CreateByProgId(std::string_view progId) {
    return CreateByProgId(progId, __uuidof(Interface)).template As<Interface>();
}

/// The framework that is registered on this machine: services, nodes and transports are created by their ProgIDs in
/// the caller's apartment, the services on first use.
std::shared_ptr<platform::Framework> ComFramework();

}  // namespace com
