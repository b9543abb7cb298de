#include "tests/com-host/Client.h"
#include "tests/com-host/Fake.h"

using com::Bstr;
using com::ComPtr;
using platform::Value;

namespace {

class Node : public testing::Test {
  protected:
    static ComPtr<INode> New() { return com::CreateByProgId<INode>("Seamcfg.clsNode"); }
    static ComPtr<INode> Add(INode* parent, const char* name, const char* valueList = "") {
        ComPtr<INode> setting;
        com::Check(parent->AddSetting(Bstr(name).get(), 1, 2, Bstr(valueList).get(), nullptr, setting.put()), parent);
        return setting;
    }
    static ComPtr<INode> Item(INode* parent, const Value& name) {
        ComPtr<INode> node;
        com::Check(parent->get_Item(Arg(name), node.put()), parent);
        return node;
    }
    static ComPtr<INode> Item(INode* parent, const char* name) { return Item(parent, Value(std::string(name))); }
    static std::string Name(INode* node) {
        Bstr name;
        com::Check(node->get_Name(name.put()), node);
        return name.Utf8();
    }
    static Value ValueOf(INode* node) {
        com::Variant value;
        com::Check(node->get_Value(&value), node);
        return com::FromVariant(value);
    }

    const ComPtr<INode> root = New();
};

}  // namespace

TEST_F(Node, ServesTheFunctionTable) {
    const auto list = "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm";
    com::Check(root->AddGroup(Bstr("General").get(), 4, 3, nullptr, nullptr), root.get());
    const auto setting = Add(root.get(), "Remote Control", list);
    com::Check(setting->SetValue(VARIANT_TRUE, VARIANT_TRUE, Arg("RS232")), setting.get());
    com::Check(setting->put_Fixed(VARIANT_TRUE), setting.get());
    long count = 0, kind = 0, style = 0;
    VARIANT_BOOL fixed = VARIANT_FALSE;
    Bstr display, valueList;
    for (const HRESULT result :
         {root->get_Count(&count), setting->get_Kind(&kind), setting->get_Style(&style), setting->get_Fixed(&fixed),
          setting->get_DisplayValue(display.put()), setting->get_ValueList(valueList.put())}) {
        EXPECT_EQ(result, S_OK);
    }
    EXPECT_EQ((std::vector{count, kind, style}), (std::vector{2L, 1L, 2L}));
    EXPECT_EQ(fixed, VARIANT_TRUE);
    EXPECT_EQ(display.Utf8(), "RS232");
    EXPECT_EQ(valueList.Utf8(), list);
    EXPECT_EQ(ValueOf(setting.get()), Text("Conduit.clsComm"));
}

TEST_F(Node, ServesScripts) {
    // Some libraries give only one flag, and not always the right one.
    Invoke(root.get(), L"AddSetting", DISPATCH_PROPERTYGET, {Text("Port"), 1, 4, Text(""), Text("")});
    const auto found = Invoke(root.get(), L"Item", DISPATCH_METHOD, {Text("Port")});
    ASSERT_EQ(V_VT(&found), VT_DISPATCH);
    Put(V_DISPATCH(&found), L"Value", 5025);
    EXPECT_EQ(Get(V_DISPATCH(&found), L"value"), Value(5025));
    EXPECT_EQ(Raised([&] { Get(root.get(), L"Item", {Text("Hast")}); }),
              "9|Seamcfg.clsNode|There is no setting \"Hast\" below the root, which has \"Port\"");
    EXPECT_EQ(Raised([&] { Get(root.get(), L"Item", {2}); }),
              "9|Seamcfg.clsNode|There is no setting number 2, there are 1");
}

TEST_F(Node, IsFoundByNamePathAndNumberAndHasOneIdentity) {
    const auto group = Add(root.get(), "RS232");
    const auto setting = Add(group.get(), "Baud Rate");
    for (const auto& name : {Text("RS232"), Value(1), Value(1.0)}) {
        EXPECT_EQ(Item(root.get(), name).get(), group.get());
        EXPECT_EQ(Item(root.get(), name).As<IUnknown>().get(), group.As<IUnknown>().get());
    }
    EXPECT_EQ(Item(root.get(), "RS232.Baud Rate").get(), setting.get());
    EXPECT_NE(group.As<IUnknown>().get(), root.As<IUnknown>().get());
}

TEST_F(Node, StaysTheSameTreeWhenGrafted) {
    const auto other = New();
    const auto group = Add(other.get(), "GPIB");
    const auto address = Add(group.get(), "Primary Address");
    com::Check(root->AddNode(group.get(), VARIANT_TRUE, VARIANT_TRUE), root.get());
    address->put_Value(Arg(Value(std::int16_t{6})));
    EXPECT_EQ(Item(root.get(), "GPIB").get(), group.get());
    EXPECT_EQ(ValueOf(Item(root.get(), "GPIB.Primary Address").get()), Value(std::int16_t{6}));
}

TEST_F(Node, RefusesWhatCannotBelongToItsTree) {
    const auto child = Add(root.get(), "Host");
    const auto twin = Add(New().get(), "host");
    Fake<IDispatch> foreign;  // asked for nothing but its interfaces
    const auto added = [&](INode* parent, INode* node) {
        return Raised(parent->AddNode(node, VARIANT_TRUE, VARIANT_TRUE), parent);
    };
    EXPECT_EQ(added(root.get(), reinterpret_cast<INode*>(&foreign)),
              "13|Seamcfg.clsNode|Only nodes of the settings component in the same thread can be added");
    EXPECT_EQ(foreign.References, 0);
    EXPECT_EQ(added(root.get(), nullptr), "91|Seamcfg.clsNode|There is no node to add");
    EXPECT_EQ(added(child.get(), root.get()), "5|Seamcfg.clsNode|A tree cannot be added below a part of itself");
    EXPECT_EQ(added(root.get(), root.get()), "5|Seamcfg.clsNode|A tree cannot be added below a part of itself");
    EXPECT_EQ(added(root.get(), twin.get()), "457|Seamcfg.clsNode|There is already a setting \"host\" below the root");
}

TEST_F(Node, LeavesOutputsEmptyOnFailure) {
    auto* poison = reinterpret_cast<INode*>(std::intptr_t{1});
    EXPECT_EQ(root->get_Item(Arg("none"), &poison), static_cast<HRESULT>(0x800A0009U));
    EXPECT_EQ(poison, nullptr);
    EXPECT_EQ(root->get_Item(Arg("none"), nullptr), E_POINTER);
    EXPECT_EQ(root->get_Value(nullptr), E_POINTER);
}

TEST_F(Node, EnumeratesItsChildren) {
    for (const auto name : {"a", "b", "c"}) Add(root.get(), name);
    ComPtr<IUnknown> unknown;
    com::Check(root->get__NewEnum(unknown.put()), root.get());
    const auto children = unknown.As<IEnumVARIANT>();
    Add(root.get(), "later");  // not in an enumeration that is under way

    const auto next = [&] {
        com::Variant child;
        if (children->Next(1, &child, nullptr) != S_OK) return std::string("end");
        return Name(ComPtr<IDispatch>(V_DISPATCH(&child)).As<INode>().get());
    };
    EXPECT_EQ(next(), "a");
    ComPtr<IEnumVARIANT> clone;
    ASSERT_EQ(children->Clone(clone.put()), S_OK);
    EXPECT_EQ(children->Skip(1), S_OK);
    EXPECT_EQ(next(), "c");
    EXPECT_EQ(next(), "end");
    EXPECT_EQ(children->Skip(1), S_FALSE);
    EXPECT_EQ(children->Reset(), S_OK);
    EXPECT_EQ(next(), "a");

    VARIANT rest[4];
    ULONG fetched = 99;
    EXPECT_EQ(clone->Next(4, rest, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2U);
    for (ULONG index = 0; index < fetched; ++index) VariantClear(&rest[index]);
    EXPECT_EQ(clone->Next(2, rest, nullptr), E_POINTER);
}
