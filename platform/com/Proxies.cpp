#include "platform/com/Proxies.h"

#include <limits>

#include "platform/com/Errors.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"

namespace com {
namespace {

constexpr std::int32_t CannotCreateObject = 429;

VARIANT_BOOL Truth(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

std::shared_ptr<platform::SettingsNode> ProxyOf(ComPtr<INode> node) {
    if (!node) Raise(platform::ObjectVariableNotSet, "Object variable not set");
    return std::make_shared<NodeProxy>(std::move(node));
}

/// A number or a truth value of the object.
template <class Interface, class Out>
Out Read(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(Out*)) {
    Out value{};
    Check((object.get()->*get)(&value), object.get());
    return value;
}

/// An optional argument.
Variant Argument(std::optional<std::string_view> text) {
    return Variant(text ? ToVariant(platform::Value(std::string(*text))) : MissingArgument());
}

class ApplicationProxy : public platform::Application {
  public:
    bool AbortRequested() override { return Read(object_, &IApplication::get_AbortRequested) != VARIANT_FALSE; }
    void Delay(float seconds) override { Check(object_->Delay(seconds), object_.get()); }
    std::int32_t AppState() override { return Read(object_, &IApplication::get_AppState); }
    void SuspendState() override { Check(object_->SuspendState(), object_.get()); }
    void ResumeState() override { Check(object_->ResumeState(), object_.get()); }

  private:
    ComPtr<IApplication> object_ = CreateByProgId<IApplication>("Seamlib.clsApplication");
};

class MessageLogProxy : public platform::MessageLog {
  public:
    void Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) override {
        Check(object_->Log(kind, Bstr(source).get(), Bstr(text).get(), Argument(data)), object_.get());
    }

  private:
    ComPtr<IMessageLog> object_ = CreateByProgId<IMessageLog>("Seamlib.clsMessageLog");
};

class ErrorServiceProxy : public platform::ErrorService {
  public:
    void RaiseDriverError(const platform::AutomationError& error) override {
        const bool hasFile = !error.HelpFile.empty();
        const Variant helpFile = Argument(hasFile ? std::optional<std::string_view>(error.HelpFile) : std::nullopt);
        const Variant helpContext(error.HelpContext ? ToVariant(platform::Value(*error.HelpContext))
                                                    : MissingArgument());
        Check(object_->RaiseDriverError(error.Number, Bstr(error.Source).get(), Bstr(error.Description).get(), helpFile,
                                        helpContext),
              object_.get());
    }
    bool ErrorReporting() override { return Read(object_, &IErrorService::get_ErrorReporting) != VARIANT_FALSE; }
    void SetErrorReporting(bool reporting) override {
        Check(object_->put_ErrorReporting(Truth(reporting)), object_.get());
    }

  private:
    ComPtr<IErrorService> object_ = CreateByProgId<IErrorService>("Seamlib.clsErrorService");
};

class FrameworkProxy : public platform::Framework {
  public:
    platform::Application& TheApplication() override { return Service(application_); }
    platform::MessageLog& TheMessageLog() override { return Service(log_); }
    platform::ErrorService& TheErrorService() override { return Service(errors_); }
    std::shared_ptr<platform::SettingsNode> CreateNode() override {
        return ProxyOf(CreateByProgId<INode>("Seamcfg.clsNode"));
    }
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override {
        return std::make_shared<TransportProxy>(CreateByProgId<ITextLink>(progId));
    }
    std::optional<double> NumberFromText(std::string_view text) override {
        double number = 0.0;
        const HRESULT read = VarR8FromStr(Wide(text).data(), LOCALE_USER_DEFAULT, 0, &number);
        if (read == DISP_E_OVERFLOW) return std::numeric_limits<double>::infinity();
        if (FAILED(read)) return std::nullopt;
        return number;
    }

  private:
    template <class Proxy>
    static Proxy& Service(std::unique_ptr<Proxy>& service) {
        if (!service) service = std::make_unique<Proxy>();
        return *service;
    }

    std::unique_ptr<ApplicationProxy> application_;
    std::unique_ptr<MessageLogProxy> log_;
    std::unique_ptr<ErrorServiceProxy> errors_;
};

}  // namespace

void NodeProxy::AddGroup(std::string_view name, std::int32_t kind, std::int32_t style) {
    Check(node_->AddGroup(Bstr(name).get(), kind, style, Bstr("").get(), Bstr("").get()), node_.get());
}

std::shared_ptr<platform::SettingsNode> NodeProxy::AddSetting(std::string_view name, std::int32_t kind,
                                                              std::int32_t style, std::string_view valueList) {
    ComPtr<INode> setting;
    Check(node_->AddSetting(Bstr(name).get(), kind, style, Bstr(valueList).get(), Bstr("").get(), setting.put()),
          node_.get());
    return ProxyOf(std::move(setting));
}

void NodeProxy::AddNode(const std::shared_ptr<platform::SettingsNode>& node, bool notify, bool store) {
    Check(node_->AddNode(node ? ComOf(*node) : nullptr, Truth(notify), Truth(store)), node_.get());
}

std::shared_ptr<platform::SettingsNode> NodeProxy::Item(std::string_view path) {
    ComPtr<INode> node;
    Check(node_->get_Item(Argument(path), node.put()), node_.get());
    return ProxyOf(std::move(node));
}

std::vector<std::shared_ptr<platform::SettingsNode>> NodeProxy::Children() {
    const long count = Read(node_, &INode::get_Count);
    std::vector<std::shared_ptr<platform::SettingsNode>> children;
    for (long index = 1; index <= count; ++index) {
        ComPtr<INode> child;
        Check(node_->get_Item(Variant(ToVariant(platform::Value(std::int32_t{index}))), child.put()), node_.get());
        children.push_back(ProxyOf(std::move(child)));
    }
    return children;
}

std::string NodeProxy::Name() {
    Bstr name;
    Check(node_->get_Name(name.put()), node_.get());
    return name.Utf8();
}

platform::Value NodeProxy::GetValue() {
    Variant value;
    Check(node_->get_Value(&value), node_.get());
    return FromVariant(value);
}

void NodeProxy::SetValue(bool notify, bool store, const platform::Value& value) {
    Check(node_->SetValue(Truth(notify), Truth(store), Variant(ToVariant(value))), node_.get());
}

std::string NodeProxy::ValueList() {
    Bstr valueList;
    Check(node_->get_ValueList(valueList.put()), node_.get());
    return valueList.Utf8();
}

void NodeProxy::SetValueList(std::string_view valueList) {
    Check(node_->put_ValueList(Bstr(valueList).get()), node_.get());
}

void NodeProxy::SetFixed(bool fixed) { Check(node_->put_Fixed(Truth(fixed)), node_.get()); }

INode* ComOf(platform::SettingsNode& node) {
    if (const auto proxy = dynamic_cast<NodeProxy*>(&node)) return proxy->get();
    Raise(platform::TypeMismatch, "Type mismatch");
}

float TransportProxy::Timeout() { return Read(text_, &ITextLink::get_Timeout); }

void TransportProxy::SetTimeout(float seconds) { Check(text_->put_Timeout(seconds), text_.get()); }

void TransportProxy::SendReceive(std::string_view command, std::string* response) {
    Variant answer(response ? ToVariant(*response) : MissingArgument());
    Check(text_->SendReceive(Bstr(command).get(), &answer), text_.get());
    if (response) *response = TextOf(answer);
}

void TransportProxy::WriteString(std::string_view command) {
    Check(text_->WriteString(Bstr(command).get()), text_.get());
}

std::string TransportProxy::ReadString(std::optional<std::string_view> command) {
    Bstr answer;
    Check(text_->ReadString(Argument(command), answer.put()), text_.get());
    return answer.Utf8();
}

std::vector<std::uint8_t> TransportProxy::ReadBlock(std::int16_t count, std::optional<std::string_view> command) {
    Variant data;
    Check(Blocks()->ReadBlock(count, Argument(command), &data), Blocks().get());
    return BytesOf(data);
}

void TransportProxy::WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                                std::optional<std::string_view> command) {
    Check(Blocks()->WriteBlock(count, Variant(ToVariant(data)), Bstr(command.value_or("")).get()), Blocks().get());
}

void TransportProxy::SetName(std::string_view name) {
    Check(Connection()->put_Name(Bstr(name).get()), Connection().get());
}

std::shared_ptr<platform::SettingsNode> TransportProxy::Settings() {
    ComPtr<INode> settings;
    Check(Connection()->get_Settings(settings.put()), Connection().get());
    return ProxyOf(std::move(settings));
}

void TransportProxy::Connect(bool connect) { Check(Connection()->put_Connect(Truth(connect)), Connection().get()); }

bool TransportProxy::IsConnected() { return Read(Connection(), &IConnection::get_IsConnected) != VARIANT_FALSE; }

const ComPtr<IBlockLink>& TransportProxy::Blocks() {
    if (!blocks_) Check(text_->QueryInterface(IID_IBlockLink, blocks_.putVoid()));
    return blocks_;
}

const ComPtr<IConnection>& TransportProxy::Connection() {
    if (!connection_) Check(text_->QueryInterface(IID_IConnection, connection_.putVoid()));
    return connection_;
}

ComPtr<IUnknown> CreateByProgId(std::string_view progId, REFIID iid) {
    CLSID clsid;
    const bool cut = progId.find('\0') != progId.npos;  // the system would not see what is behind
    if (cut || FAILED(CLSIDFromProgID(Wide(progId).c_str(), &clsid))) {
        Raise(CannotCreateObject, "Component can't create object: \"" + std::string(progId) + '"');
    }
    ComPtr<IClassFactory> factory;
    Check(CoGetClassObject(clsid, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, nullptr, IID_IClassFactory,
                           factory.putVoid()));
    ComPtr<IUnknown> object;
    Check(factory->CreateInstance(nullptr, iid, object.putVoid()), factory.get());
    return object;
}

std::shared_ptr<platform::Framework> ComFramework() { return std::make_shared<FrameworkProxy>(); }

}  // namespace com
