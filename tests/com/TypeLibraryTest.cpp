#include <map>
#include <regex>

#include "platform/com/TypeLibrary.h"
#include "tests/com/Client.h"
#include "tests/support/DriverMembers.h"

// What is built into the components, read back as a host's tools do. Compiled hosts rely on all of it.

namespace {

// Every type of each component, in its order. An enumeration has its values; an interface its function table, of which
// an entry is identifier, "call", "get" or "control" (a write followed by a read), name, type and arguments; a class
// its interfaces, the default one first.
// clang-format off
const std::pair<const wchar_t*, std::vector<std::string>> Components[] = {
    {L"XTarn4x", {
        "ErrorConstants: xtarnInvalidPropertyValue=380 xtarnArgumentNotOptional=449 xtarnQueryFailed=2004 xtarnCommandFailed=2005 xtarnBadMeasureMode=2016 xtarnBadInputPort=2018 xtarnFuntionNotAvailable=2019 xtarnBadRemoteControlPort=2024 xtarnBadCodeRateMode=2025",
        "TarnMeasureModes: tarnUndefined=-1 tarnNORM=0 tarnCDI=1 tarnMDB=2 tarnMPCT=3 tarnINT=4 tarnIQ=5 tarnAPH=6 tarnAGD=7 tarnPOL=8 tarnSP_1=9 tarnSP_2=10 tarnSP_3=11 tarnADIS=12 tarnCCDF=13 tarnIR_1=14 tarnIR_2=15 tarnIR_3=16 tarnHIST=17 tarnPAR=18 tarnCENV=19",
        "TarnModes: tarnNYQI=1 tarnNYQM=2 tarnNYQN=3 tarnQAM=4 tarnQAMA=5 tarnJ83A=6 tarnJ83B=7 tarnJ83C=8 tarnMPEG=9 tarnM83A=10 tarnM83B=11 tarnM83C=12 tarnDVBT=13 tarnATSC=14 tarnNTSC=15",
        "TarnInputPorts: tarnReceiver=2 tarnDemod=4 tarnIF=128 tarnReceiver50ohm=50 tarnReceiver75ohm=75",
        "TarnInputAttenuations: tarnAttenAuto=255 tarnAtten00=0 tarnAtten05=5 tarnAtten10=10 tarnAtten15=15 tarnAtten20=20 tarnAtten25=25 tarnAtten30=30 tarnAtten35=35 tarnAtten40=40 tarnAtten45=45 tarnAtten50=50 tarnAtten55=55",
        "TarnStatusOrderOfQams: tarnQamUnknown=-1 tarnQam4=4 tarnQam16=16 tarnQam64=64",
        "TarnDemodAttenuations: tarnDemodAttenAuto=1 tarnDemodManualLowAtten=2 tarnDemodManualLowPreamp=3 tarnDemodManualHigh=4",
        "TarnDemodAttenVals: tarnDAVManualLowPreamp=0 tarnDAVManualLowAtten=1 tarnDAVManualHigh=2 tarnDAVAutoLowPreamp=10 tarnDAVAutoLowAtten=11 tarnDAVAutoHigh=12",
        "TarnRxAttenModes: tarnRxAttenLoNoise=0 tarnRxAttenNormal=1 tarnRxAttenLoDistn=2 tarnRxAttenLowestDistn=3",
        "TarnSetupLevelUnits: tarnDBMV=0 tarnDBPW=1 tarnDBUW=2 tarnDBM=3 tarnDBUV=4 tarnMV=5",
        "TarnStatusSawFilterBWs: tarnSawOFF=0 tarnSaw6MHz=6 tarnSaw7MHz=7 tarnSaw8MHz=8",
        "TarnStatusChannelBWs: tarnCh6MHz=6 tarnCh7MHz=7 tarnCh8MHz=8",
        "TarnSpecFuncMinBerIntegrations: tarnBerEXT=0 tarnBer1=1 tarnBer10=10 tarnBer100=100 tarnBer1000=1000",
        "TarnSpecFuncEqualizers: tarnEqualizerOff=0 tarnEqualizerOn=1 tarnEqualizerFreeze=2",
        "TarnReferenceSources: tarnInternal=0 tarnExternal=1",
        "TarnStatusFftModes: tarnFftUnknown=-1 tarn2k=0 tarn8k=1",
        "TarnStatusOfdmCodeRateModes: tarnAuto=0 tarnMan=1 tarnTps=2",
        "TarnStatusHierarchicalModes: tarnLow=0 tarnHigh=1",
        "TarnStatusGuardIntervals: tarnGiUnknown=-1 tarn1_4=4 tarn1_8=8 tarn1_16=16 tarn1_32=32",
        "TarnStatusCodeRates: tarnCrUnknown=-1 tarn1_2=0 tarn2_3=1 tarn3_4=2 tarn5_6=3 tarn7_8=4",
        "TarnStatusAlphas: tarnAlphaUnknown=-1 tarn1NH=0 tarn1H=1 tarn2H=2 tarn4H=3",
        "TarnSpecFuncSystOptims: tarnMobile=0 tarnFastSfn=1 tarnSlowHighNoise=2 tarnSlowLab=3",
        "TarnSpecFuncLoopBandwidths: tarnLbsLo=0 tarnLbsMed=1 tarnLbsHi=2",
        "TarnSwitchStates: tarnOff=0 tarnOn=1",
        "TarnFdSpectrumDetectors: tarnMIN=0 tarnRMS=1 tarnMAX=2",
        "TarnScreenShotModes: tarnCapture=1 tarnTransfer=2 tarnIncludeHeader=4",
        "_clsStatistics: 68030015 control Statistics String | 68030014 get MonitoringTime Date | 68030013 get Level Date | 68030012 get Synchronisation Date | 68030011 get BerBeforeVit Date | 68030010 get BerBeforeRs Date | 6803000F get BerAfterRs Date | 6803000E get MpegDataErrorTime Date | 6803000D get CorrCntBeforeVit Double | 6803000C get CorrCntBeforeRs Double | 6803000B get MpegDataErrorCntAfterRs Double | 68030016 get ModErrorRatio Date",
        "_clsTarn4x",  // as the table of members tells
        "_clsRegister: 60030000 call IRegister_GetClassDescription String | 60030001 call IRegister_GetClassName String",
        "clsTarn4x: _clsTarn4x IDriverIdentify IDriverSetup",
        "clsStatistics: _clsStatistics, not creatable",
        "clsRegister: _clsRegister IRegister",}},
    {L"Seamcfg", {
        "INode: 1 call AddGroup (Name String, Kind Long, Style Long, Text1 String, Text2 String) | 2 call AddSetting INode&(Name String, Kind Long, Style Long, ValueList String, Text String) | 3 call SetValue (Notify Boolean, Store Boolean, Value Variant) | 4 control Fixed Boolean | 0 get Item INode&(Name Variant) | 5 control ValueList String | 6 call AddNode (Node INode&, Notify Boolean, Store Boolean) | 7 control Value Variant | 8 get DisplayValue String | 9 get Name String | A get Kind Long | B get Style Long | C get Count Long | FFFFFFFC get _NewEnum IUnknown&",
        "clsNode: INode"}},
    {L"Seamlib", {
        "IRegister: 1 call GetClassDescription String | 2 call GetClassName String",
        "IDriverSetup: 1 control Name String | 2 get Settings INode& | 3 control OnLine Boolean",
        "IDriverIdentify: 1 get Manufacturer String | 2 get ModelNumber String | 3 get SerialNumber String | 4 get FirmwareVersion String | 5 get InstalledHardware String",
        "IApplication: 1 control AbortRequested Boolean | 2 call Delay (Seconds Single) | 3 control AppState Long | 4 call SuspendState  | 5 call ResumeState  | 6 control DelayScale Double",
        "IMessageLog: 1 call Log (Kind Integer, Source String, Text String, Data Variant) | 2 get Count Long | 3 get Entry String(Index Long) | 4 call Clear  | 5 control FileName String",
        "IErrorService: 1 call RaiseDriverError (Number Long, Source String, Description String, HelpFile? Variant, HelpContext? Variant) | 2 control ErrorReporting Boolean",
        "ISetup: 1 control Name String | 2 get Settings INode& | 3 control OnLine Boolean | 4 get WhyOffLine String",
        "IIdentify: 1 get Manufacturer String | 2 get ModelNumber String | 3 get SerialNumber String | 4 get FirmwareVersion String | 5 get InstalledHardware String",
        "IHost: 1 get Drivers Variant | 2 call Describe String(Component String) | 3 call CreateDriver Object&(Component String) | 4 call Setup ISetup&(Driver Object&) | 5 call Identify IIdentify&(Driver Object&) | 6 call SaveBytes (FileName String, Bytes Variant)",
        "clsApplication: IApplication", "clsMessageLog: IMessageLog", "clsErrorService: IErrorService", "clsHost: IHost"}},
    {L"Conduit", {
        "ITextLink: 1 get Timeout Single | 1 put Timeout Single | 2 call SendReceive (Command String, Response? Variant&) | 3 call WriteString (Command String) | 4 call ReadString String(Command? Variant)",
        "IBlockLink: 1 call ReadBlock Variant(Count Integer, Command? Variant) | 2 call WriteBlock (Count Integer, Data Variant, Command? String)",
        "IConnection: 1 control Name String | 2 get Settings INode& | 3 put Connect Boolean | 4 get IsConnected Boolean",
        "clsGPIB: ITextLink IBlockLink IConnection", "clsComm: ITextLink IBlockLink IConnection", "clsEthernet: ITextLink IBlockLink IConnection", "clsGUI: ITextLink IBlockLink IConnection"}},
};
// clang-format on

std::string NameOf(ITypeInfo* type) {
    Bstr name;
    com::Check(type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
    return name.Utf8();
}

ComPtr<ITypeInfo> Referred(ITypeInfo* type, HREFTYPE reference) {
    ComPtr<ITypeInfo> referred;
    com::Check(type->GetRefTypeInfo(reference, referred.put()));
    return referred;
}

ComPtr<ITypeInfo> Implemented(ITypeInfo* type, UINT index) {
    HREFTYPE reference = 0;
    com::Check(type->GetRefTypeOfImplType(index, &reference));
    return Referred(type, reference);
}

std::string TypeName(ITypeInfo* type, const TYPEDESC& description) {
    static const std::map<VARTYPE, const char*> names = {
        {VT_R8, "Double"},       {VT_R4, "Single"},         {VT_BOOL, "Boolean"},    {VT_DATE, "Date"},
        {VT_I2, "Integer"},      {VT_I4, "Long"},           {VT_UI1, "Byte"},        {VT_BSTR, "String"},
        {VT_VARIANT, "Variant"}, {VT_UNKNOWN, "IUnknown&"}, {VT_DISPATCH, "Object&"}};
    if (const auto name = names.find(description.vt); name != names.end()) return name->second;
    if (description.vt == VT_PTR) return TypeName(type, *description.lptdesc) + '&';
    if (description.vt == VT_SAFEARRAY) return TypeName(type, *description.lptdesc) + "()";
    return NameOf(Referred(type, description.hreftype).get());
}

/// An entry of a function table.
std::string SlotText(ITypeInfo* table, const FUNCDESC& function) {
    const auto count = static_cast<UINT>(function.cParams);
    std::vector<BSTR> names(count + 1);
    UINT named = 0;
    com::Check(table->GetNames(function.memid, names.data(), count + 1, &named));
    const bool put = function.invkind == INVOKE_PROPERTYPUT;
    std::string arguments, result;
    for (UINT index = 0; index < count; ++index) {
        const auto& parameter = function.lprgelemdescParam[index];
        const auto type = TypeName(table, parameter.tdesc);
        if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
            result = type.substr(0, type.size() - 1);
        } else if (put && index + 1 == count) {
            result = type;
        } else {
            const bool optional = (parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
            arguments += (arguments.empty() ? "" : ", ") + com::Utf8(names[index + 1]) + (optional ? "? " : " ") + type;
        }
    }
    const char* const kind = put ? " put " : function.invkind == INVOKE_PROPERTYGET ? " get " : " call ";
    char identifier[16];
    std::snprintf(identifier, sizeof identifier, "%lX", function.memid);
    std::string text = identifier + (kind + com::Utf8(names[0])) + ' ' + result;
    for (const BSTR name : names) SysFreeString(name);
    return text + (arguments.empty() ? "" : '(' + arguments + ')');
}

std::string Described(ITypeInfo* type) {
    const auto attributes = com::AttributesOf(ComPtr<ITypeInfo>(type));
    std::string text = NameOf(type) + ':';
    if (attributes.typekind == TKIND_COCLASS) {
        for (UINT index = 0; index < attributes.cImplTypes; ++index) {
            INT flags = 0;
            com::Check(type->GetImplTypeFlags(index, &flags));
            EXPECT_EQ((flags & IMPLTYPEFLAG_FDEFAULT) != 0, index == 0) << text;
            text += ' ' + NameOf(Implemented(type, index).get());
        }
        return text + ((attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0 ? "" : ", not creatable");
    }
    for (UINT index = 0; index < attributes.cVars; ++index) {
        VARDESC* variable = nullptr;
        Bstr name;
        com::Check(type->GetVarDesc(index, &variable));
        com::Check(type->GetDocumentation(variable->memid, name.put(), nullptr, nullptr, nullptr));
        text += ' ' + name.Utf8() + '=' + Text(*variable->lpvarValue);
        type->ReleaseVarDesc(variable);
    }
    if (attributes.typekind != TKIND_DISPATCH) return text;
    constexpr WORD dual = TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FNONEXTENSIBLE;
    EXPECT_EQ(attributes.wTypeFlags & dual, dual) << text;
    const auto table = Implemented(type, static_cast<UINT>(-1));
    const UINT count = com::AttributesOf(table).cFuncs;
    for (UINT index = 0; index < count; ++index) {
        FUNCDESC* function = nullptr;
        com::Check(table->GetFuncDesc(index, &function));
        text += (index == 0 ? " " : " | ") + SlotText(table.get(), *function);
        // Seven of IUnknown and IDispatch come first.
        EXPECT_EQ(static_cast<std::size_t>(function->oVft), (7 + index) * sizeof(void*)) << text;
        table->ReleaseFuncDesc(function);
    }
    return text;
}

/// What the list has for the driver's interface, from the table of members.
std::string DriverInterface() {
    std::string text;
    for (const auto& member : support::DriverMembers) {
        const char* const kinds[] = {"get", "control", "call", "call", "get"};
        char identifier[16];
        std::snprintf(identifier, sizeof identifier, "%X ", member.Id);
        text +=
            (text.empty() ? "_clsTarn4x: " : " | ") +
            (identifier + std::string(kinds[static_cast<int>(member.Kind)]) + ' ' + member.Name + ' ' + member.Type);
    }
    return text;
}

TEST(TypeLibraries, DefineWhatHostsWereCompiledWith) {
    for (const auto& [component, types] : Components) {
        ComPtr<ITypeLib> library;
        com::Check(LoadTypeLibEx(Component::File(component).c_str(), REGKIND_NONE, library.put()));
        TLIBATTR* attributes = nullptr;
        com::Check(library->GetLibAttr(&attributes));
        EXPECT_EQ(attributes->lcid, 0x409U);
        EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
        library->ReleaseTLibAttr(attributes);
        ASSERT_EQ(library->GetTypeInfoCount(), types.size());
        for (UINT index = 0; index < types.size(); ++index) {
            ComPtr<ITypeInfo> type;
            com::Check(library->GetTypeInfo(index, type.put()));
            const std::regex control("(\\w+) control ([^|]*\\S|\\w+) *( \\||$)");
            const auto expected = index >= types.size()          ? ""
                                  : types[index] == "_clsTarn4x" ? DriverInterface()
                                                                 : types[index];
            EXPECT_EQ(Described(type.get()), std::regex_replace(expected, control, "$1 put $2 | $1 get $2$3"));
        }
    }
}

}  // namespace
