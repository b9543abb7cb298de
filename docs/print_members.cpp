// Prints the reference docs/members.md from a type library:
//
//   print-members.exe XTarn4x.tlb
#include <windows.h>

#include <cstdio>
#include <cwctype>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

void Check(HRESULT result, const char* what) {
    if (FAILED(result)) throw std::runtime_error(what);
}

std::string Utf8(BSTR text) {
    std::string utf8(std::size_t{3} * SysStringLen(text), '\0');
    const int count = WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(SysStringLen(text)), utf8.data(),
                                          static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(count));
    SysFreeString(text);
    return utf8;
}

struct Documentation {
    std::string Name;
    std::string Help;
};

template <class Info>
Documentation DocumentationOf(Info* info, LONG member) {
    BSTR name = nullptr;
    BSTR help = nullptr;
    Check(info->GetDocumentation(member, &name, &help, nullptr, nullptr), "reading names");
    return {Utf8(name), Utf8(help)};
}

/// Name of a type as a script or Basic programmer knows it.
std::string TypeName(ITypeInfo* info, const TYPEDESC& type) {
    static const std::map<VARTYPE, const char*> names = {
        {VT_I2, "Integer"},  {VT_I4, "Long"},   {VT_R8, "Double"},       {VT_BOOL, "Boolean"},
        {VT_BSTR, "String"}, {VT_DATE, "Date"}, {VT_VARIANT, "Variant"}, {VT_UI1, "Byte"},
        {VT_VOID, ""},       {VT_HRESULT, ""},  {VT_DISPATCH, "Object"}};
    if (type.vt == VT_PTR) return TypeName(info, *type.lptdesc);
    if (type.vt == VT_SAFEARRAY) return TypeName(info, *type.lptdesc) + " array";
    if (type.vt == VT_USERDEFINED) {
        ITypeInfo* referred = nullptr;
        Check(info->GetRefTypeInfo(type.hreftype, &referred), "following a type");
        const auto name = DocumentationOf(referred, MEMBERID_NIL).Name;
        referred->Release();
        return name.starts_with('_') ? name.substr(1) : name;
    }
    return names.at(type.vt);
}

/// Units of the quantities, by member.
const std::map<std::string, std::string> Units = {
#define UNIT(unit) unit
#define READ(identifier, name, type, unit, ...) {#name, "" unit},
#define CONTROL(identifier, name, type, unit, ...) {#name, "" unit},
#include "driver/StatisticsMembers.def"
#define UNIT(unit) unit
#define READ(identifier, name, type, unit, ...) {#name, "" unit},
#define CONTROL(identifier, name, type, unit, ...) {#name, "" unit},
#define METHOD(...)
#define FUNCTION(...)
#include "driver/Members.def"
};

std::string UnitOf(const std::string& member) {
    const auto unit = Units.find(member);
    return unit == Units.end() ? std::string() : unit->second;
}

struct Row {
    std::string Name;
    std::string Arguments;
    std::string Type;
    std::string Access;
    std::string Help;
};

std::vector<Row> RowsOf(ITypeInfo* info, UINT count) {
    std::vector<Row> rows;
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        Check(info->GetFuncDesc(i, &function), "reading a member");
        if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0) {
            const auto documentation = DocumentationOf(info, function->memid);
            Row row{documentation.Name, "", "", "", documentation.Help};
            BSTR names[16] = {};
            UINT named = 0;
            Check(info->GetNames(function->memid, names, 16, &named), "reading arguments");
            for (UINT n = 0; n < named; ++n) {
                const auto name = Utf8(names[n]);
                if (n == 0 || static_cast<SHORT>(n) > function->cParams) continue;
                if (function->invkind == INVOKE_PROPERTYPUT && static_cast<SHORT>(n) == function->cParams) continue;
                row.Arguments += (row.Arguments.empty() ? "" : ", ") + name;
            }
            const bool write = function->invkind == INVOKE_PROPERTYPUT;
            row.Type = TypeName(
                info, write ? function->lprgelemdescParam[function->cParams - 1].tdesc : function->elemdescFunc.tdesc);
            row.Access = function->invkind == INVOKE_FUNC ? "method" : write ? "write" : "read";
            if (!rows.empty() && rows.back().Name == row.Name) {
                rows.back().Access = "read, write";
            } else {
                rows.push_back(std::move(row));
            }
        }
        info->ReleaseFuncDesc(function);
    }
    return rows;
}

void PrintMembers(ITypeInfo* info, UINT count) {
    std::puts("\n| member | access | type | unit | |\n|---|---|---|---|---|");
    for (const auto& row : RowsOf(info, count)) {
        const auto arguments = row.Arguments.empty() ? "" : "(" + row.Arguments + ")";
        std::printf("| `%s%s` | %s | %s | %s | %s |\n", row.Name.c_str(), arguments.c_str(), row.Access.c_str(),
                    row.Type.c_str(), UnitOf(row.Name).c_str(), row.Help.c_str());
    }
}

void PrintValues(ITypeInfo* info, UINT count) {
    std::puts("\n| name | value | |\n|---|---|---|");
    for (UINT i = 0; i < count; ++i) {
        VARDESC* variable = nullptr;
        Check(info->GetVarDesc(i, &variable), "reading a value");
        const auto documentation = DocumentationOf(info, variable->memid);
        std::printf("| `%s` | %ld | %s |\n", documentation.Name.c_str(), variable->lpvarValue->lVal,
                    documentation.Help.c_str());
        info->ReleaseVarDesc(variable);
    }
}

void PrintType(ITypeLib* library, UINT index, TYPEKIND wanted) {
    TYPEKIND kind{};
    Check(library->GetTypeInfoType(index, &kind), "reading a type");
    if (kind != wanted) return;
    const auto documentation = DocumentationOf(library, static_cast<LONG>(index));
    if (kind == TKIND_DISPATCH && !documentation.Name.starts_with('_')) return;  // the framework's interfaces
    ITypeInfo* info = nullptr;
    TYPEATTR* attributes = nullptr;
    Check(library->GetTypeInfo(index, &info), "reading a type");
    Check(info->GetTypeAttr(&attributes), "reading a type");
    const auto title = kind == TKIND_DISPATCH ? documentation.Name.substr(1) : documentation.Name;
    std::printf("\n## %s\n\n%s\n", title.c_str(), documentation.Help.c_str());
    if (kind == TKIND_DISPATCH) {
        PrintMembers(info, attributes->cFuncs);
    } else {
        PrintValues(info, attributes->cVars);
    }
    info->ReleaseTypeAttr(attributes);
    info->Release();
}

void Print(const wchar_t* path) {
    ITypeLib* library = nullptr;
    Check(LoadTypeLibEx(path, REGKIND_NONE, &library), "loading the type library");
    std::puts(
        "# Members\n\n"
        "Everything that a program finds in the type library `XTarn4x`. This page is made from the library itself; "
        "`./test`\n"
        "tells when it is out of date.");
    for (const TYPEKIND kind : {TKIND_DISPATCH, TKIND_ENUM}) {
        for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) PrintType(library, i, kind);
    }
    library->Release();
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: print-members.exe XTarn4x.tlb\n", stderr);
        return 2;
    }
    try {
        Print(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "print-members: %s\n", error.what());
        return 1;
    }
}
