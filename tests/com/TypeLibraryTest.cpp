#include "platform/com/TypeLibrary.h"
#include "tests/com/Client.h"
#include "tests/support/DriverMembers.h"

// What is built into the components, read back as a host's tools do. Compiled hosts rely on all of it.

namespace {

// Every type of each component, in its order. An enumeration has its values; an interface its function table with the
// identifiers, ":=" where a property is written; a class its interfaces, the default one first.
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
        "_clsStatistics: Statistics:=68030015 Statistics=68030015 MonitoringTime=68030014 Level=68030013 Synchronisation=68030012 BerBeforeVit=68030011 BerBeforeRs=68030010 BerAfterRs=6803000F MpegDataErrorTime=6803000E CorrCntBeforeVit=6803000D CorrCntBeforeRs=6803000C MpegDataErrorCntAfterRs=6803000B ModErrorRatio=68030016",
        "_clsTarn4x",  // as the table of members tells
        "_clsRegister: IRegister_GetClassDescription=60030000 IRegister_GetClassName=60030001",
        "clsTarn4x: _clsTarn4x IDriverIdentify IDriverSetup",
        "clsStatistics: _clsStatistics, not creatable",
        "clsRegister: _clsRegister IRegister",}},
    {L"Seamcfg", {
        "INode: AddGroup=1 AddSetting=2 SetValue=3 Fixed:=4 Fixed=4 Item=0 ValueList:=5 ValueList=5 AddNode=6 Value:=7 Value=7 DisplayValue=8 Name=9 Kind=A Style=B Count=C _NewEnum=FFFFFFFC",
        "clsNode: INode"}},
    {L"Seamlib", {
        "IRegister: GetClassDescription=1 GetClassName=2",
        "IDriverSetup: Name:=1 Name=1 Settings=2 OnLine:=3 OnLine=3",
        "IDriverIdentify: Manufacturer=1 ModelNumber=2 SerialNumber=3 FirmwareVersion=4 InstalledHardware=5",
        "IApplication: AbortRequested:=1 AbortRequested=1 Delay=2 AppState:=3 AppState=3 SuspendState=4 ResumeState=5 DelayScale:=6 DelayScale=6",
        "IMessageLog: Log=1 Count=2 Entry=3 Clear=4 FileName:=5 FileName=5",
        "IErrorService: RaiseDriverError=1 ErrorReporting:=2 ErrorReporting=2",
        "ISetup: Name:=1 Name=1 Settings=2 OnLine:=3 OnLine=3 WhyOffLine=4",
        "IIdentify: Manufacturer=1 ModelNumber=2 SerialNumber=3 FirmwareVersion=4 InstalledHardware=5",
        "IHost: Drivers=1 Describe=2 CreateDriver=3 Setup=4 Identify=5 SaveBytes=6",
        "clsApplication: IApplication", "clsMessageLog: IMessageLog", "clsErrorService: IErrorService", "clsHost: IHost"}},
    {L"Conduit", {
        "ITextLink: Timeout=1 Timeout:=1 SendReceive=2 WriteString=3 ReadString=4",
        "IBlockLink: ReadBlock=1 WriteBlock=2",
        "IConnection: Name:=1 Name=1 Settings=2 Connect:=3 IsConnected=4",
        "clsGPIB: ITextLink IBlockLink IConnection", "clsComm: ITextLink IBlockLink IConnection", "clsEthernet: ITextLink IBlockLink IConnection", "clsGUI: ITextLink IBlockLink IConnection"}},
};
// clang-format on

std::string NameOf(ITypeInfo* type) {
    Bstr name;
    com::Check(type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
    return name.Utf8();
}

ComPtr<ITypeInfo> Implemented(ITypeInfo* type, UINT index) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> implemented;
    com::Check(type->GetRefTypeOfImplType(index, &reference));
    com::Check(type->GetRefTypeInfo(reference, implemented.put()));
    return implemented;
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
        Bstr name;
        char identifier[16];
        com::Check(table->GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr));
        std::snprintf(identifier, sizeof identifier, "%lX", function->memid);
        text += ' ' + name.Utf8() + (function->invkind == INVOKE_PROPERTYPUT ? ":=" : "=") + identifier;
        // Seven of IUnknown and IDispatch come first.
        EXPECT_EQ(static_cast<std::size_t>(function->oVft), (7 + index) * sizeof(void*)) << text;
        table->ReleaseFuncDesc(function);
    }
    return text;
}

/// What the list has for the driver's interface, from the table of members.
std::string DriverInterface() {
    std::string text = "_clsTarn4x:";
    for (const auto& member : support::DriverMembers) {
        char identifier[16];
        std::snprintf(identifier, sizeof identifier, "=%X", member.Id);
        const auto entry = std::string(" ") + member.Name;
        text += (member.Kind == support::Control ? entry + ':' + identifier : "") + entry + identifier;
    }
    return text;
}

TEST(TypeLibraries, DefineWhatHostsWereCompiledWith) {
    for (const auto& [component, types] : Components) {
        ComPtr<ITypeLib> library;
        com::Check(LoadTypeLibEx(Component::File(component).c_str(), REGKIND_NONE, library.put()));
        ASSERT_EQ(library->GetTypeInfoCount(), types.size());
        for (UINT index = 0; index < types.size(); ++index) {
            ComPtr<ITypeInfo> type;
            com::Check(library->GetTypeInfo(index, type.put()));
            EXPECT_EQ(Described(type.get()), types[index] == "_clsTarn4x" ? DriverInterface() : types[index]);
        }
    }
}

}  // namespace
