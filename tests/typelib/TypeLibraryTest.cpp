#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/com/ComPtr.h"
#include "platform/com/Server.h"
#include "platform/com/Text.h"
#include "tests/typelib/Expected.h"

// Reads the library that is built into the driver back as a host's tools do.

namespace {

using com::ComPtr;

std::string Text(const com::Bstr& text) { return text.Utf8(); }

struct Documentation {
    std::string name;
    std::string help;
};

template <class Describing, class Index>
Documentation Describe(Describing* description, Index index) {
    com::Bstr name;
    com::Bstr help;
    EXPECT_HRESULT_SUCCEEDED(description->GetDocumentation(index, name.put(), help.put(), nullptr, nullptr));
    return {Text(name), Text(help)};
}

class TypeLibrary : public testing::Test {
  protected:
    TypeLibrary() {
        const std::wstring program = com::FileName(nullptr);
        const std::wstring driver = program.substr(0, program.rfind(L'\\') + 1) + L"XTarn4x.dll";
        EXPECT_HRESULT_SUCCEEDED(LoadTypeLibEx(driver.c_str(), REGKIND_NONE, library.put()));
    }

    ComPtr<ITypeInfo> Type(const std::string& name) {
        for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
            if (Describe(library.get(), static_cast<int>(index)).name != name) continue;
            ComPtr<ITypeInfo> description;
            EXPECT_HRESULT_SUCCEEDED(library->GetTypeInfo(index, description.put()));
            return description;
        }
        return {};
    }

    ComPtr<ITypeLib> library;
};

TYPEATTR AttributesOf(ITypeInfo* description) {
    TYPEATTR* attributes = nullptr;
    EXPECT_HRESULT_SUCCEEDED(description->GetTypeAttr(&attributes));
    const TYPEATTR copy = *attributes;
    description->ReleaseTypeAttr(attributes);
    return copy;
}

std::string TypeName(ITypeInfo* description, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_R8:
            return "Double";
        case VT_BOOL:
            return "Boolean";
        case VT_DATE:
            return "Date";
        case VT_I2:
            return "Integer";
        case VT_I4:
            return "Long";
        case VT_UI1:
            return "Byte";
        case VT_BSTR:
            return "String";
        case VT_VARIANT:
            return "Variant";
        case VT_PTR:
            return TypeName(description, *type.lptdesc) + "&";
        case VT_SAFEARRAY:
            return TypeName(description, *type.lptdesc) + "()";
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> referred;
            EXPECT_HRESULT_SUCCEEDED(description->GetRefTypeInfo(type.hreftype, referred.put()));
            return Describe(referred.get(), MEMBERID_NIL).name;
        }
        default:
            return "type " + std::to_string(type.vt);
    }
}

std::string Slot(unsigned identifier, const std::string& kind, const std::string& name, const std::string& arguments,
                 const std::string& result) {
    char number[16];
    std::snprintf(number, sizeof number, "%08X ", identifier);
    return number + kind + ' ' + name + '(' + arguments + ')' + (result.empty() ? "" : " As " + result);
}

// One function table slot as text.
std::string Slot(ITypeInfo* description, const FUNCDESC& function) {
    std::vector<com::Bstr> names(static_cast<std::size_t>(function.cParams) + 1);
    std::vector<BSTR> raw(names.size());
    UINT known = 0;
    EXPECT_HRESULT_SUCCEEDED(description->GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &known));
    for (std::size_t index = 0; index < names.size(); ++index) *names[index].put() = raw[index];

    std::string arguments;
    std::string result;
    for (SHORT index = 0; index < function.cParams; ++index) {
        const ELEMDESC& parameter = function.lprgelemdescParam[index];
        const std::string type = TypeName(description, parameter.tdesc);
        if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
            EXPECT_EQ(index, function.cParams - 1);
            EXPECT_EQ(type.back(), '&');
            result = type.substr(0, type.size() - 1);
            continue;
        }
        const bool written = function.invkind == INVOKE_PROPERTYPUT && index == function.cParams - 1;
        if (!arguments.empty()) arguments += ", ";
        if (!written) arguments += Text(names[static_cast<std::size_t>(index) + 1]) + " As ";
        arguments += type;
    }
    const std::string kind = function.invkind == INVOKE_PROPERTYGET   ? "get"
                             : function.invkind == INVOKE_PROPERTYPUT ? "put"
                                                                      : "call";
    EXPECT_EQ(function.elemdescFunc.tdesc.vt, VT_HRESULT);
    return Slot(static_cast<unsigned>(function.memid), kind, Text(names[0]), arguments, result);
}

std::vector<std::string> Slots(const std::vector<ExpectedMember>& members) {
    std::vector<std::string> slots;
    for (const auto& member : members) {
        const std::string arguments = member.arguments;
        const std::string type = member.type;
        if (member.access == Control) {
            const std::string written = arguments.empty() ? type : arguments + ", " + type;
            slots.push_back(Slot(member.identifier, "put", member.name, written, ""));
        }
        const bool object = type.starts_with('_');
        slots.push_back(Slot(member.identifier, member.access == Method ? "call" : "get", member.name, arguments,
                             object ? type + '&' : type));
    }
    return slots;
}

struct Interface {
    const char* name;
    const std::vector<ExpectedMember>& members;
    std::size_t slots;
};

class Interfaces : public TypeLibrary, public testing::WithParamInterface<Interface> {};

TEST_P(Interfaces, HaveTheirMembersInTableOrder) {
    const auto dispatch = Type(GetParam().name);
    ASSERT_TRUE(dispatch);
    const TYPEATTR dual = AttributesOf(dispatch.get());
    constexpr WORD flags = TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FNONEXTENSIBLE;
    EXPECT_EQ(dual.wTypeFlags & flags, flags);
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> table;
    ASSERT_HRESULT_SUCCEEDED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    ASSERT_HRESULT_SUCCEEDED(dispatch->GetRefTypeInfo(reference, table.put()));

    const auto expected = Slots(GetParam().members);
    ASSERT_EQ(expected.size(), GetParam().slots);
    ASSERT_EQ(AttributesOf(table.get()).cFuncs, expected.size());
    for (UINT index = 0; index < expected.size(); ++index) {
        FUNCDESC* function = nullptr;
        ASSERT_HRESULT_SUCCEEDED(table->GetFuncDesc(index, &function));
        EXPECT_EQ(Slot(table.get(), *function), expected[index]);
        // Seven slots of IUnknown and IDispatch come first.
        EXPECT_EQ(static_cast<std::size_t>(function->oVft), (7 + index) * sizeof(void*)) << expected[index];
        EXPECT_NE(Describe(table.get(), function->memid).help, "") << expected[index];
        table->ReleaseFuncDesc(function);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Interfaces,
                         testing::Values(Interface{"_clsTarn4x", DriverMembers, 136},
                                         Interface{"_clsStatistics", StatisticsMembers, 13},
                                         Interface{"_clsRegister", RegisterMembers, 2}),
                         [](const auto& info) { return std::string(info.param.name).substr(1); });

class EnumerationTypes : public TypeLibrary, public testing::WithParamInterface<ExpectedEnumeration> {};

TEST_P(EnumerationTypes, HaveTheirValuesInDeclarationOrder) {
    const auto enumeration = Type(GetParam().name);
    ASSERT_TRUE(enumeration);
    EXPECT_NE(Describe(enumeration.get(), MEMBERID_NIL).help, "");
    const TYPEATTR attributes = AttributesOf(enumeration.get());
    EXPECT_EQ(attributes.typekind, TKIND_ENUM);
    std::string values;
    for (UINT index = 0; index < attributes.cVars; ++index) {
        VARDESC* value = nullptr;
        ASSERT_HRESULT_SUCCEEDED(enumeration->GetVarDesc(index, &value));
        const auto documentation = Describe(enumeration.get(), value->memid);
        EXPECT_NE(documentation.help, "") << documentation.name;
        ASSERT_EQ(value->varkind, VAR_CONST);
        EXPECT_EQ(value->lpvarValue->vt, VT_I4);
        if (!values.empty()) values += ", ";
        values += documentation.name + ' ' + std::to_string(value->lpvarValue->lVal);
        enumeration->ReleaseVarDesc(value);
    }
    EXPECT_EQ(values, GetParam().values);
}

INSTANTIATE_TEST_SUITE_P(All, EnumerationTypes, testing::ValuesIn(Enumerations),
                         [](const auto& info) { return info.param.name; });

TEST_F(TypeLibrary, DefinesNothingElse) {
    std::map<TYPEKIND, std::size_t> counts;
    for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
        TYPEKIND kind{};
        ASSERT_HRESULT_SUCCEEDED(library->GetTypeInfoType(index, &kind));
        ++counts[kind];
    }
    // The framework's interfaces are the framework's: a copy here would take their registration away.
    const std::map<TYPEKIND, std::size_t> expected = {{TKIND_ENUM, 26}, {TKIND_DISPATCH, 3}, {TKIND_COCLASS, 3}};
    EXPECT_EQ(counts, expected);
    EXPECT_EQ(Enumerations.size(), 26U);
}

TEST_F(TypeLibrary, IsNamedAndInUsEnglish) {
    const auto documentation = Describe(library.get(), MEMBERID_NIL);
    EXPECT_EQ(documentation.name, "XTarn4x");
    EXPECT_NE(documentation.help, "");
    TLIBATTR* attributes = nullptr;
    ASSERT_HRESULT_SUCCEEDED(library->GetLibAttr(&attributes));
    EXPECT_EQ(attributes->lcid, 0x409U);
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    library->ReleaseTLibAttr(attributes);
}

struct Class {
    const char* name;
    bool creatable;
    std::vector<std::string> interfaces;  // the default one first
};

class Classes : public TypeLibrary, public testing::WithParamInterface<Class> {};

TEST_P(Classes, NameTheirInterfaces) {
    const auto coclass = Type(GetParam().name);
    ASSERT_TRUE(coclass);
    const TYPEATTR attributes = AttributesOf(coclass.get());
    EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
    EXPECT_EQ((attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0, GetParam().creatable);
    std::vector<std::string> interfaces;
    for (UINT index = 0; index < attributes.cImplTypes; ++index) {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> implemented;
        ASSERT_HRESULT_SUCCEEDED(coclass->GetRefTypeOfImplType(index, &reference));
        ASSERT_HRESULT_SUCCEEDED(coclass->GetRefTypeInfo(reference, implemented.put()));
        interfaces.push_back(Describe(implemented.get(), MEMBERID_NIL).name);
        INT flags = 0;
        ASSERT_HRESULT_SUCCEEDED(coclass->GetImplTypeFlags(index, &flags));
        EXPECT_EQ((flags & IMPLTYPEFLAG_FDEFAULT) != 0, index == 0) << interfaces.back();
    }
    EXPECT_EQ(interfaces, GetParam().interfaces);
}

INSTANTIATE_TEST_SUITE_P(All, Classes,
                         testing::Values(Class{"clsTarn4x", true, {"_clsTarn4x", "IDriverIdentify", "IDriverSetup"}},
                                         Class{"clsStatistics", false, {"_clsStatistics"}},
                                         Class{"clsRegister", true, {"_clsRegister", "IRegister"}}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(TypeLibrary, DescribesTheStatisticsClass) {
    const auto coclass = Type("clsStatistics");
    ASSERT_TRUE(coclass);
    EXPECT_EQ(Describe(coclass.get(), MEMBERID_NIL).help, "Decodes model 2x statistics report");
}

}  // namespace
