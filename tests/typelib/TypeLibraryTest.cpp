#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "platform/com/ComPtr.h"
#include "platform/com/Server.h"
#include "platform/com/Text.h"
#include "tests/typelib/Expected.h"

// Reads the library that is built into the driver back as a host's tools do.

namespace {

using com::ComPtr;

struct Documentation {
    std::string name, help;
};

template <class Describing, class Index>
Documentation Describe(Describing* description, Index index) {
    com::Bstr name, help;
    EXPECT_HRESULT_SUCCEEDED(description->GetDocumentation(index, name.put(), help.put(), nullptr, nullptr));
    return {name.Utf8(), help.Utf8()};
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
    static const std::map<VARTYPE, const char*> names = {{VT_R8, "Double"},   {VT_BOOL, "Boolean"},   {VT_DATE, "Date"},
                                                         {VT_I2, "Integer"},  {VT_I4, "Long"},        {VT_UI1, "Byte"},
                                                         {VT_BSTR, "String"}, {VT_VARIANT, "Variant"}};
    if (const auto name = names.find(type.vt); name != names.end()) return name->second;
    if (type.vt == VT_PTR) return TypeName(description, *type.lptdesc) + "&";
    if (type.vt == VT_SAFEARRAY) return TypeName(description, *type.lptdesc) + "()";
    if (type.vt != VT_USERDEFINED) return "type " + std::to_string(type.vt);
    ComPtr<ITypeInfo> referred;
    EXPECT_HRESULT_SUCCEEDED(description->GetRefTypeInfo(type.hreftype, referred.put()));
    return Describe(referred.get(), MEMBERID_NIL).name;
}

// One function table slot as text.
std::string Slot(ITypeInfo* description, const FUNCDESC& function) {
    std::vector<com::Bstr> names(static_cast<std::size_t>(function.cParams) + 1);
    std::vector<BSTR> raw(names.size());
    UINT known = 0;
    EXPECT_HRESULT_SUCCEEDED(description->GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &known));
    for (std::size_t index = 0; index < names.size(); ++index) *names[index].put() = raw[index];

    std::string arguments, result;
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
        if (!written) arguments += names[static_cast<std::size_t>(index) + 1].Utf8() + " As ";
        arguments += type;
    }
    const std::string kind = function.invkind == INVOKE_PROPERTYGET   ? "get"
                             : function.invkind == INVOKE_PROPERTYPUT ? "put"
                                                                      : "call";
    EXPECT_EQ(function.elemdescFunc.tdesc.vt, VT_HRESULT);
    char identifier[16];
    std::snprintf(identifier, sizeof identifier, "%08X ", static_cast<unsigned>(function.memid));
    return identifier + kind + ' ' + names[0].Utf8() + '(' + arguments + ')' + (result.empty() ? "" : " As " + result);
}

std::vector<std::string> Slots(const std::string& members) {
    std::vector<std::string> slots;
    std::smatch part;
    const std::regex control("(.*) control (.*)\\((.*)\\) As (.*)"), separator("; ");
    for (std::sregex_token_iterator member(members.begin(), members.end(), separator, -1), end; member != end;
         ++member) {
        const std::string text = *member;
        if (std::regex_match(text, part, control)) {
            const std::string id = part[1], name = part[2], arguments = part[3], type = part[4];
            slots.push_back(id + " put " + name + '(' + arguments + (arguments.empty() ? "" : ", ") + type + ')');
            slots.push_back(id + " get " + name + '(' + arguments + ") As " + type);
        } else {
            slots.push_back(text);
        }
    }
    return slots;
}

TEST_F(TypeLibrary, HasTheMembersInTableOrder) {
    const struct {
        const char* name;
        const std::string& members;
        std::size_t slots;
    } cases[] = {{"_clsTarn4x", DriverMembers, 136},
                 {"_clsStatistics", StatisticsMembers, 13},
                 {"_clsRegister", RegisterMembers, 2}};
    for (const auto& c : cases) {
        const auto dispatch = Type(c.name);
        ASSERT_TRUE(dispatch) << c.name;
        constexpr WORD flags = TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FNONEXTENSIBLE;
        EXPECT_EQ(AttributesOf(dispatch.get()).wTypeFlags & flags, flags);
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> table;
        ASSERT_HRESULT_SUCCEEDED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
        ASSERT_HRESULT_SUCCEEDED(dispatch->GetRefTypeInfo(reference, table.put()));
        const auto expected = Slots(c.members);
        EXPECT_EQ(expected.size(), c.slots);
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
}

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

TEST_F(TypeLibrary, HasClassesThatNameTheirInterfaces) {
    const struct {
        const char* name;
        bool creatable;
        const char* interfaces;  // the default one first
    } cases[] = {{"clsTarn4x", true, "_clsTarn4x IDriverIdentify IDriverSetup "},
                 {"clsStatistics", false, "_clsStatistics "},
                 {"clsRegister", true, "_clsRegister IRegister "}};
    for (const auto& c : cases) {
        const auto coclass = Type(c.name);
        ASSERT_TRUE(coclass) << c.name;
        const TYPEATTR attributes = AttributesOf(coclass.get());
        EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
        EXPECT_EQ((attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0, c.creatable) << c.name;
        std::string interfaces;
        for (UINT index = 0; index < attributes.cImplTypes; ++index) {
            HREFTYPE reference = 0;
            INT flags = 0;
            ComPtr<ITypeInfo> implemented;
            ASSERT_HRESULT_SUCCEEDED(coclass->GetRefTypeOfImplType(index, &reference));
            ASSERT_HRESULT_SUCCEEDED(coclass->GetRefTypeInfo(reference, implemented.put()));
            ASSERT_HRESULT_SUCCEEDED(coclass->GetImplTypeFlags(index, &flags));
            EXPECT_EQ((flags & IMPLTYPEFLAG_FDEFAULT) != 0, index == 0) << c.name;
            interfaces += Describe(implemented.get(), MEMBERID_NIL).name + ' ';
        }
        EXPECT_EQ(interfaces, c.interfaces);
    }
    EXPECT_EQ(Describe(Type("clsStatistics").get(), MEMBERID_NIL).help, "Decodes model 2x statistics report");
}

}  // namespace
