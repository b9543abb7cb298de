// Prints the reference pages from built type libraries:
//
//   print-members.exe XTarn4x.tlb                            docs/members.md
//   print-members.exe Seamlib.tlb Seamcfg.tlb Conduit.tlb    docs/framework.md
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
        {VT_I2, "Integer"},   {VT_I4, "Long"},     {VT_R4, "Single"}, {VT_R8, "Double"},
        {VT_BOOL, "Boolean"}, {VT_BSTR, "String"}, {VT_DATE, "Date"}, {VT_VARIANT, "Variant"},
        {VT_UI1, "Byte"},     {VT_VOID, ""},       {VT_HRESULT, ""},  {VT_DISPATCH, "Object"}};
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

void PrintMembers(ITypeInfo* info, UINT count, bool withUnits) {
    std::puts(withUnits ? "\n| member | access | type | unit | |\n|---|---|---|---|---|"
                        : "\n| member | access | type | |\n|---|---|---|---|");
    for (const auto& row : RowsOf(info, count)) {
        const auto arguments = row.Arguments.empty() ? "" : "(" + row.Arguments + ")";
        const auto unit = withUnits ? UnitOf(row.Name) + " | " : "";
        std::printf("| `%s%s` | %s | %s | %s%s |\n", row.Name.c_str(), arguments.c_str(), row.Access.c_str(),
                    row.Type.c_str(), unit.c_str(), row.Help.c_str());
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

/// Calls print(description, attributes, documentation) for each type of a kind in a library.
template <class Print>
void ForEach(ITypeLib* library, TYPEKIND wanted, Print&& print) {
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        Check(library->GetTypeInfoType(i, &kind), "reading a type");
        if (kind != wanted) continue;
        ITypeInfo* info = nullptr;
        TYPEATTR* attributes = nullptr;
        Check(library->GetTypeInfo(i, &info), "reading a type");
        Check(info->GetTypeAttr(&attributes), "reading a type");
        print(info, *attributes, DocumentationOf(library, static_cast<LONG>(i)));
        info->ReleaseTypeAttr(attributes);
        info->Release();
    }
}

void PrintTitle(const std::string& name, const std::string& help) {
    std::printf("\n## %s\n\n%s\n", name.c_str(), help.c_str());
}

ITypeLib* Load(const wchar_t* path) {
    ITypeLib* library = nullptr;
    Check(LoadTypeLibEx(path, REGKIND_NONE, &library), "loading the type library");
    return library;
}

/// docs/members.md: the driver's own interfaces and its enumerations.
void PrintDriver(const wchar_t* path) {
    ITypeLib* library = Load(path);
    std::puts(
        "# Members\n\n"
        "Everything that a program finds in the type library `XTarn4x`. This page is made from the library itself; "
        "`./test`\n"
        "tells when it is out of date.");
    ForEach(library, TKIND_DISPATCH, [](ITypeInfo* info, const TYPEATTR& attributes, const Documentation& type) {
        if (!type.Name.starts_with('_')) return;  // the framework's
        PrintTitle(type.Name.substr(1), type.Help);
        PrintMembers(info, attributes.cFuncs, true);
    });
    ForEach(library, TKIND_ENUM, [](ITypeInfo* info, const TYPEATTR& attributes, const Documentation& type) {
        PrintTitle(type.Name, type.Help);
        PrintValues(info, attributes.cVars);
    });
    library->Release();
}

/// The interfaces of a class, the default one first.
std::string InterfacesOf(ITypeInfo* coclass, UINT count) {
    std::string names;
    for (UINT i = 0; i < count; ++i) {
        HREFTYPE reference = 0;
        ITypeInfo* implemented = nullptr;
        Check(coclass->GetRefTypeOfImplType(i, &reference), "reading a class");
        Check(coclass->GetRefTypeInfo(reference, &implemented), "reading a class");
        names += (names.empty() ? "`" : ", `") + DocumentationOf(implemented, MEMBERID_NIL).Name + '`';
        implemented->Release();
    }
    return names;
}

/// docs/framework.md: the classes and interfaces of the stand-alone framework.
void PrintFramework(wchar_t** paths, int count) {
    std::puts(
        "# The stand-alone framework\n\n"
        "What a program finds in the type libraries `Seamlib`, `Seamcfg` and `Conduit`. This page is made from the "
        "libraries\n"
        "themselves; `./test` tells when it is out of date.\n\n"
        "| class | | interfaces |\n|---|---|---|");
    for (int i = 0; i < count; ++i) {
        ITypeLib* library = Load(paths[i]);
        const auto name = DocumentationOf(library, MEMBERID_NIL).Name;
        ForEach(library, TKIND_COCLASS, [&](ITypeInfo* info, const TYPEATTR& attributes, const Documentation& type) {
            std::printf("| `%s.%s` | %s | %s |\n", name.c_str(), type.Name.c_str(), type.Help.c_str(),
                        InterfacesOf(info, attributes.cImplTypes).c_str());
        });
        library->Release();
    }
    for (int i = 0; i < count; ++i) {
        ITypeLib* library = Load(paths[i]);
        ForEach(library, TKIND_DISPATCH, [](ITypeInfo* info, const TYPEATTR& attributes, const Documentation& type) {
            PrintTitle(type.Name, type.Help);
            PrintMembers(info, attributes.cFuncs, false);
        });
        library->Release();
    }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2 && count != 4) {
        std::fputs(
            "usage: print-members.exe XTarn4x.tlb\n       print-members.exe Seamlib.tlb Seamcfg.tlb Conduit.tlb\n",
            stderr);
        return 2;
    }
    try {
        if (count == 2) {
            PrintDriver(arguments[1]);
        } else {
            PrintFramework(arguments + 1, count - 1);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "print-members: %s\n", error.what());
        return 1;
    }
}
