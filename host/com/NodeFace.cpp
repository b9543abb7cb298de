#include "host/com/NodeFace.h"

#include <Seamcfg_h.h>

#include <algorithm>
#include <map>
#include <mutex>

#include "host/SettingsTree.h"
#include "host/com/Members.h"
#include "platform/com/DualFace.h"

namespace com {
namespace {

constexpr char Source[] = "Seamcfg.clsNode";

// Known only in here: an object that answers to it directly is a face of this module, in its own apartment.
constexpr IID IID_NodeFace = {0x15C6A3B0, 0x9D8E, 0x4C1B, {0x8F, 0x27, 0x6B, 0x3E, 0x90, 0x5D, 0x41, 0xAC}};

using Node = std::shared_ptr<host::SettingsNode>;

class NodeFace;

// The faces that clients hold, by their nodes: a node has one identity. Each face is used in its own apartment only,
// the lock keeps the apartments apart.
class FacesInUse {
  public:
    ComPtr<INode> Of(const Node& node);
    void Forget(host::SettingsNode* node);

  private:
    std::mutex mutex_;
    std::map<host::SettingsNode*, NodeFace*> faces_;
};

FacesInUse& TheFaces() {
    // Never destroyed: a client may let go of its last nodes while the process ends.
    static FacesInUse& faces = *new FacesInUse;
    return faces;
}

std::vector<Node> ChildrenOf(const Node& node) {
    std::vector<Node> children;
    for (const auto& child : node->Children()) children.push_back(std::static_pointer_cast<host::SettingsNode>(child));
    return children;
}

bool Contains(const Node& tree, const Node& node) {
    return tree == node ||
           std::ranges::any_of(ChildrenOf(tree), [&](const Node& child) { return Contains(child, node); });
}

/// Enumerates the nodes that were there when it was made.
class NodeEnumerator : public Object<IEnumVARIANT> {
  public:
    explicit NodeEnumerator(std::vector<Node> nodes, std::size_t next = 0) : nodes_(std::move(nodes)), next_(next) {}

    STDMETHODIMP Next(ULONG count, VARIANT* values, ULONG* fetched) override {
        if (fetched) *fetched = 0;
        if (!values || (count != 1 && !fetched)) return E_POINTER;
        return Border(IID_IEnumVARIANT, [&] {
            ULONG done = 0;
            for (; done < count && next_ < nodes_.size(); ++done, ++next_) {
                V_DISPATCH(&values[done]) = TheFaces().Of(nodes_[next_]).detach();
                V_VT(&values[done]) = VT_DISPATCH;
            }
            if (fetched) *fetched = done;
            return done == count ? S_OK : S_FALSE;
        });
    }
    STDMETHODIMP Skip(ULONG count) override {
        const auto left = nodes_.size() - next_;
        next_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        next_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(IEnumVARIANT** clone) override {
        if (!clone) return E_POINTER;
        *clone = nullptr;
        return Border(IID_IEnumVARIANT,
                      [&] { *clone = ComPtr<IEnumVARIANT>(new NodeEnumerator(nodes_, next_)).detach(); });
    }

  private:
    const std::vector<Node> nodes_;
    std::size_t next_;
};

class NodeFace : public DualFace<&CLSID_clsNode, INode> {
  public:
    explicit NodeFace(Node node) : node_(std::move(node)) {}
    ~NodeFace() override { TheFaces().Forget(node_.get()); }

    STDMETHODIMP AddGroup(BSTR name, long kind, long style, BSTR, BSTR) override {
        return Call<INode>([&] { node_->AddGroup(Utf8(name), kind, style); });
    }
    STDMETHODIMP AddSetting(BSTR name, long kind, long style, BSTR valueList, BSTR, INode** setting) override {
        return Get<INode>(setting, [&] { return FaceOf(node_->AddSetting(Utf8(name), kind, style, Utf8(valueList))); });
    }
    STDMETHODIMP SetValue(VARIANT_BOOL notify, VARIANT_BOOL store, VARIANT value) override {
        return Call<INode>(
            [&] { node_->SetValue(notify != VARIANT_FALSE, store != VARIANT_FALSE, FromVariant(value)); });
    }
    STDMETHODIMP put_Fixed(VARIANT_BOOL fixed) override {
        return Call<INode>([&] { node_->SetFixed(fixed != VARIANT_FALSE); });
    }
    STDMETHODIMP get_Fixed(VARIANT_BOOL* fixed) override {
        return Get<INode>(fixed, [&] { return node_->Fixed(); });
    }
    STDMETHODIMP get_Item(VARIANT name, INode** node) override {
        return Get<INode>(node, [&] { return FaceOf(Find(FromVariant(name))); });
    }
    STDMETHODIMP put_ValueList(BSTR valueList) override {
        return Call<INode>([&] { node_->SetValueList(Utf8(valueList)); });
    }
    STDMETHODIMP get_ValueList(BSTR* valueList) override {
        return Get<INode>(valueList, [&] { return node_->ValueList(); });
    }
    STDMETHODIMP AddNode(INode* node, VARIANT_BOOL notify, VARIANT_BOOL store) override {
        return Call<INode>([&] {
            const Node added = NodeOf(node);
            if (added && Contains(added, node_)) {
                throw platform::AutomationError(platform::InvalidProcedureCall, Source,
                                                "A tree cannot be added below a part of itself");
            }
            node_->AddNode(added, notify != VARIANT_FALSE, store != VARIANT_FALSE);
        });
    }
    STDMETHODIMP put_Value(VARIANT value) override { return SetValue(VARIANT_TRUE, VARIANT_TRUE, value); }
    STDMETHODIMP get_Value(VARIANT* value) override {
        return Get<INode>(value, [&] { return node_->GetValue(); });
    }
    STDMETHODIMP get_DisplayValue(BSTR* text) override {
        return Get<INode>(text, [&] { return node_->DisplayValue(); });
    }
    STDMETHODIMP get_Name(BSTR* name) override {
        return Get<INode>(name, [&] { return node_->Name(); });
    }
    STDMETHODIMP get_Kind(long* kind) override {
        return Get<INode>(kind, [&] { return node_->Kind(); });
    }
    STDMETHODIMP get_Style(long* style) override {
        return Get<INode>(style, [&] { return node_->Style(); });
    }
    STDMETHODIMP get_Count(long* count) override {
        return Get<INode>(count, [&] { return static_cast<std::int32_t>(node_->Children().size()); });
    }
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override {
        return Get<INode>(enumerator, [&] { return ComPtr<IUnknown>(new NodeEnumerator(ChildrenOf(node_))); });
    }

  private:
    static ComPtr<INode> FaceOf(const std::shared_ptr<platform::SettingsNode>& node) {
        return TheFaces().Of(std::static_pointer_cast<host::SettingsNode>(node));
    }

    // The node behind a face; none for Nothing.
    static Node NodeOf(INode* face) {
        if (!face) return nullptr;
        void* found = nullptr;
        if (FAILED(face->QueryInterface(IID_NodeFace, &found))) {
            throw platform::AutomationError(platform::TypeMismatch, Source,
                                            "Only nodes of the settings component in the same thread can be added");
        }
        return ComPtr<NodeFace>::Attach(static_cast<NodeFace*>(found))->node_;
    }

    void* Find(REFIID iid) override { return iid == IID_NodeFace ? this : DualFace::Find(iid); }

    std::shared_ptr<platform::SettingsNode> Find(const platform::Value& name) const {
        if (const auto text = std::get_if<std::string>(&name)) return node_->Item(*text);
        const auto index = OptionalNumber(Variant(ToVariant(name))).value_or(0);
        const auto children = node_->Children();
        if (index >= 1 && static_cast<std::size_t>(index) <= children.size()) {
            return children[static_cast<std::size_t>(index) - 1];
        }
        throw platform::AutomationError(
            platform::SubscriptOutOfRange, Source,
            "There is no setting number " + std::to_string(index) + ", there are " + std::to_string(children.size()));
    }

    const Node node_;
};

ComPtr<INode> FacesInUse::Of(const Node& node) {
    const std::lock_guard lock(mutex_);
    auto& face = faces_[node.get()];
    if (!face) face = new NodeFace(node);
    return ComPtr<INode>(face);
}

void FacesInUse::Forget(host::SettingsNode* node) {
    const std::lock_guard lock(mutex_);
    faces_.erase(node);
}

}  // namespace

HRESULT CreateNode(REFIID iid, void** object) {
    return TheFaces().Of(std::make_shared<host::SettingsNode>())->QueryInterface(iid, object);
}

}  // namespace com
