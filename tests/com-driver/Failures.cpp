#include "tests/com-driver/Failures.h"

#include <XTarn4x_h.h>

#include <algorithm>
#include <stdexcept>

#include "platform/com/Errors.h"
#include "platform/com/Text.h"
#include "platform/com/TypeLibrary.h"

using com::ComPtr;

namespace {

// ---- What the members need and what they raise ----

constexpr unsigned QueryFailed = 0x800407D4, CommandFailed = 0x800407D5, BadMeasureMode = 0x800407E0,
                   BadInputPort = 0x800407E2, BadCodeRateMode = 0x800407E9, AlreadyOnLine = 0x800A07D2,
                   AlreadyOffLine = 0x800A07D3;
constexpr LONG Manual = 1, Automatic = 0;
constexpr LONG UnsuitableMode = 15, UnsuitablePort = 128;  // IR_2, IF

/// What members have in common; read and write alike where no kind stands in front of the name.
template <class Value>
struct Common {
    Value value;
    const char* members;
};

const Common<bool> neverFail[] = {
    {true,
     "get ResponseString, get Prefix, get Postfix, FormatFftMode, FormatGuardInterval, FormatOrderOfQam, FormatAlpha, "
     "FormatCodeRate, ValueCodeRate, Name, Settings, get OnLine"}};

/// A measure mode in which they work.
const Common<int> modes[] = {
    {0, "MeasureFrequencyOffset"},
    {1, "MeasureOfdmStartCarrier, MeasureOfdmStopCarrier, MeasureOfdmCarrierRange"},
    {6, "MeasureFdPhaseResponse, MeasureFdAmplitudeResponse"},
    {7, "MeasureFdGroupDelayResponse"},
    {9,
     "MeasureFdSpectrumShoulderLower, MeasureFdSpectrumShoulderUpper, MeasureFdSpectrumStartFreq, "
     "MeasureFdSpectrumStopFreq, MeasureFdSpectrumDetector, MeasureFdSpectrumAverage, MeasureFdSpectrumAverageCount"},
    {12,
     "MeasureTdCcdfCrestFactorMargin, MeasureTdCcdfCrestFactorMax, MeasureTdCcdfCrestFactorCurrent, "
     "MeasureTdCrestFactorAqu"},
    {14, "MeasureTdImpulseResponse, ImpulseResponseAtten, ImpulseResponseDelay"},
    {17, "MeasureOfdmMerRmsDb, MeasureOfdmMerRmsPct"},
    {18,
     "MeasureOfdmCarrierSuppression, MeasureOfdmCarrierSuppressionPhase, MeasureOfdmMerPeakPct, "
     "MeasureOfdmPhaseJitter, "
     "MeasureOfdmIqPhaseError, MeasureOfdmIqAmplImbalance, MeasureOfdmSignalToNoiseRatio, MeasureOfdmAverage"}};
/// An input port with which they work. InputAttenuation_Receiver only asks for it.
const Common<int> ports[] = {
    {2, "InputAttenuationMode_Receiver, InputAttenuationValue, InputAttenuationValue_Receiver"},
    {4, "InputAttenuationValue_Demod, InputAttenuation_Demod"}};
/// These work in the manual code rate mode.
const Common<bool> manual[] = {
    {true, "StatusOfdmAlpha, StatusOfdmCodeRate, StatusOfdmFftMode, StatusOfdmGuardInterval, StatusOfdmOrderOfQam"}};

/// The member that they read first, whose failure they pass on, and the last line that the instrument gets before the
/// member's own.
struct First {
    const char *member, *line;
};
const Common<First> firsts[] = {
    {{"get MeasureFftMode", "SENSE:DVBT:CARRIER:START_STOP?"},
     "put MeasureOfdmStartCarrier, put MeasureOfdmStopCarrier"},
    {{"get MeasureFftMode", "READ:DVBT:FFT:MODE?"}, "MeasureOfdmCarrierRange"},
    {{"get MeasureFdSpectrumStopFreq", "SENS:DVBT:SPEC:FREQ:STOP?"}, "put MeasureFdSpectrumStartFreq"},
    {{"get MeasureFdSpectrumStartFreq", "SENS:DVBT:SPEC:FREQ:STAR?"}, "put MeasureFdSpectrumStopFreq"},
    {{"call MeasureTdImpulseResponse", ""}, "ImpulseResponseAtten, ImpulseResponseDelay"},
    {{"get StatusOfdmCodeRateMode", "SENSE:DVBT:CODE:RATE:MODE?"}, manual[0].members},
    {{"get FirmwareVersion", "ROUTE:ISELECT?"}, "InputAttenuationValue_Demod"},
    {{"get InputPort", "ROUTE:ISELECT?"},
     "InputAttenuation, InputAttenuation_Receiver, InputAttenuationMode_Receiver, InputAttenuationValue, "
     "InputAttenuationValue_Receiver, InputAttenuation_Demod"}};

/// The name in their errors where it is not their own.
const Common<const char*> names[] = {{"MeasureTsBitrate", "MeasureBitrateOffset"},
                                     {"ChannelFilterBW", "StatusChannelBW"},
                                     {"MeasureCdAddNoiseCn ", "MeasureNoiseGenerator, MeasureCdAddNoiseCn"},
                                     {"InputAttenuation_Receiver", "InputAttenuation"},
                                     {"InputAttenuationValue_Receiver", "InputAttenuationValue"}};
/// What stands before the name in the source only.
const Common<const char*> prefixes[] = {
    {"IDriverIdentify_", "Manufacturer, ModelNumber, SerialNumber, FirmwareVersion, InstalledHardware"}};
/// The name in the source of a wrong measure mode.
const Common<const char*> modeSources[] = {
    {"MeasureOfdmAverage",
     "MeasureOfdmCarrierSuppression, MeasureOfdmCarrierSuppressionPhase, MeasureOfdmIqPhaseError, "
     "MeasureOfdmIqAmplImbalance"},
    {"MeasureOfdmStartCarrier", "MeasureOfdmStopCarrier"},
    {"MeasureTdImpulseResponse", "ImpulseResponseAtten, ImpulseResponseDelay"}};
const Common<const char*> endings[] = {{" method failed", "AlarmRegisterClear"}};

/// Arguments that are valid where the first value of the type is not.
const Common<LONG> arguments[] = {{13, "put Mode"},
                                  {474'000'000, "put RF"},
                                  {20, "put MeasureNoiseGenerator, put MeasureCdAddNoiseCn"},
                                  {1000, "put MeasureCdSymbolCount"},
                                  {-2'000'000, "put MeasureFdSpectrumStartFreq"},
                                  {2'000'000, "put MeasureFdSpectrumStopFreq"}};

std::string NameOf(const std::string& member) { return member.substr(member.find(' ') + 1); }

template <class Value, std::size_t count>
Value Of(const std::string& member, const Common<Value> (&table)[count], Value otherwise) {
    for (const auto& row : table) {
        const std::string members = std::string(", ") + row.members + ',';
        for (const auto& name : {member, NameOf(member)}) {
            if (members.find(", " + name + ',') != members.npos) return row.value;
        }
    }
    return otherwise;
}

std::string Source(const std::string& name) { return "clsTarn4x." + name; }
std::string NameInErrors(const std::string& member) {
    const auto name = Of(member, names, "");
    return *name ? name : NameOf(member);
}

/// The failure of the member itself.
Failure Own(const std::string& member) {
    const auto name = NameInErrors(member);
    const bool reads = member.starts_with("get ");
    const auto verb = reads ? "Get " : member.starts_with("put ") ? "Let " : "";
    return {reads ? QueryFailed : CommandFailed, Source(Of(member, prefixes, "") + name),
            verb + name + Of(member, endings, " failed")};
}

Failure OffLine(const std::string& member) {
    if (member == "put OnLine") return {AlreadyOffLine, Source("OnLine"), "Driver already off-line"};
    if (Of(member, neverFail, false)) return {};
    const First first = Of(member, firsts, {"", ""});
    return Own(*first.member ? first.member : member);
}

Failure Unsuited(const std::string& member) {
    if (Of(member, modes, -1) >= 0) {
        const auto name = Of(member, modeSources, "");
        return {BadMeasureMode, Source(*name ? name : NameOf(member)), "Wrong measurement mode selected"};
    }
    if (Of(member, ports, -1) >= 0) return {BadInputPort, Source(NameInErrors(member)), "Wrong input port selected"};
    if (!Of(member, manual, false)) return {};
    return {BadCodeRateMode, Source(NameOf(member)), "Code rate mode does not support operation"};
}

// ---- The slots ----

ComPtr<ITypeInfo> Referred(ITypeInfo* description, HREFTYPE reference) {
    ComPtr<ITypeInfo> referred;
    com::Check(description->GetRefTypeInfo(reference, referred.put()));
    return referred;
}

/// The function table behind interface number index of a class.
ComPtr<ITypeInfo> Table(ITypeInfo* coclass, UINT index) {
    HREFTYPE reference = 0;
    com::Check(coclass->GetRefTypeOfImplType(index, &reference));
    const auto dispatch = Referred(coclass, reference);
    com::Check(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    return Referred(dispatch.get(), reference);
}

/// The first value of an enumeration that does not stand for "unknown".
LONG FirstValue(ITypeInfo* enumeration) {
    VARDESC* variable = nullptr;
    for (UINT index = 0;; ++index) {
        com::Check(enumeration->GetVarDesc(index, &variable));
        const LONG value = variable->lpvarValue->lVal;
        enumeration->ReleaseVarDesc(variable);
        if (value >= 0) return value;
    }
}

Slot::Parameter ParameterOf(ITypeInfo* table, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_PTR: {
            auto inner = ParameterOf(table, *type.lptdesc);
            inner.reference = inner.type != VT_DISPATCH || type.lptdesc->vt == VT_PTR;
            return inner;
        }
        case VT_SAFEARRAY:
            return {VT_ARRAY | VT_UI1, false, false, 0};
        case VT_USERDEFINED: {
            const auto referred = Referred(table, type.hreftype);
            if (com::AttributesOf(referred).typekind != TKIND_ENUM) return {VT_DISPATCH, false, false, 0};
            return {VT_I4, false, false, FirstValue(referred.get())};
        }
        default:
            return {type.vt, false, false, type.vt == VT_I2 ? 1 : 0};
    }
}

Slot SlotOf(ITypeInfo* table, const FUNCDESC& function, int face) {
    com::Bstr name;
    UINT named = 0;
    com::Check(table->GetNames(function.memid, name.put(), 1, &named));
    Slot slot{static_cast<Face>(face), name.Utf8(), function.invkind, static_cast<unsigned>(function.oVft), {}};
    for (SHORT index = 0; index < function.cParams; ++index) {
        const ELEMDESC& parameter = function.lprgelemdescParam[index];
        slot.parameters.push_back(ParameterOf(table, parameter.tdesc));
        slot.parameters.back().result = (parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
    }
    if (slot.kind == INVOKE_PROPERTYPUT) {
        auto& value = slot.parameters.back().value;
        value = Of(slot.Text(), arguments, value);
    }
    return slot;
}

// ---- The walk ----

/// Calls that have to succeed on the way.
class Steps {
  public:
    Steps(const std::vector<Slot>& slots, Walker& walker) : slots_(slots), walker_(walker) {}

    void Set(const char* member, LONG value, const Failure& expected = {}) {
        Slot slot = Find(slots_, std::string("put ") + member);
        slot.parameters.back().value = value;
        walker_.Call(slot, expected);
    }
    void Reset() { walker_.Call(Find(slots_, "call Reset"), {}); }
    void GoOnLine() { Set("OnLine", VARIANT_TRUE); }
    void GoOffLine() { Set("OnLine", VARIANT_FALSE); }

  private:
    const std::vector<Slot>& slots_;
    Walker& walker_;
};

}  // namespace

std::string Slot::Text() const {
    return (kind == INVOKE_PROPERTYGET ? "get " : kind == INVOKE_PROPERTYPUT ? "put " : "call ") + name;
}

std::vector<Slot> SlotsOf(const std::wstring& component) {
    ComPtr<ITypeLib> library;
    com::Check(LoadTypeLibEx(component.c_str(), REGKIND_NONE, library.put()));
    ComPtr<ITypeInfo> driver;
    com::Check(library->GetTypeInfoOfGuid(CLSID_clsTarn4x, driver.put()));
    std::vector<Slot> slots;
    for (int face = 0; face < Faces; ++face) {
        const auto table = Table(driver.get(), static_cast<UINT>(face));
        const UINT count = com::AttributesOf(table).cFuncs;
        for (UINT index = 0; index < count; ++index) {
            FUNCDESC* function = nullptr;
            com::Check(table->GetFuncDesc(index, &function));
            slots.push_back(SlotOf(table.get(), *function, face));
            table->ReleaseFuncDesc(function);
        }
    }
    return slots;
}

void Walk(const std::vector<Slot>& slots, Walker& walker) {
    Steps steps(slots, walker);
    const auto modeOf = [](const Slot& slot) { return Of(slot.Text(), modes, -1); };

    // The driver remembers the measure mode when it goes off-line. Members that need none come first, because some of
    // them would ask for it or forget it.
    walker.Begin("off-line");
    auto sorted = slots;
    std::ranges::stable_sort(sorted, {}, modeOf);
    int mode = -1;
    for (const auto& slot : sorted) {
        if (modeOf(slot) != mode) {
            mode = modeOf(slot);
            steps.GoOnLine();
            steps.Set("MeasureMode", mode);
            steps.GoOffLine();
        }
        walker.Call(slot, OffLine(slot.Text()));
    }

    walker.Begin("on-line");
    steps.GoOnLine();
    for (const auto& slot : slots) {
        if (modeOf(slot) >= 0) {
            steps.Reset();  // the settings that were written may not suit the signal
            steps.Set("MeasureMode", modeOf(slot));
        }
        if (const int port = Of(slot.Text(), ports, -1); port >= 0) steps.Set("InputPort", port);
        if (Of(slot.Text(), manual, false)) steps.Set("StatusOfdmCodeRateMode", Manual);
        walker.Call(slot, {});
    }

    walker.Begin("unsuitable");
    steps.GoOnLine();
    steps.Set("OnLine", VARIANT_TRUE, {AlreadyOnLine, Source("OnLine"), "Driver already on-line"});
    steps.Set("MeasureMode", UnsuitableMode);
    steps.Set("InputPort", UnsuitablePort);
    steps.Set("StatusOfdmCodeRateMode", Automatic);
    for (const auto& slot : slots) {
        if (const auto expected = Unsuited(slot.Text()); expected.result != S_OK) walker.Call(slot, expected);
    }
    steps.GoOffLine();
}

const Slot& Find(const std::vector<Slot>& slots, const std::string& member) {
    const auto found = std::ranges::find(slots, member, &Slot::Text);
    if (found == slots.end()) throw std::logic_error("no member " + member);
    return *found;
}

std::vector<Behind> BehindAnother(const std::vector<Slot>& slots) {
    std::vector<Behind> found;
    for (const auto& slot : slots) {
        const auto member = slot.Text();
        const auto first = Of(member, firsts, {"", ""});
        if (!*first.line) continue;
        auto expected = Own(member);
        expected.description += ".  Error : 0,\"No error\"";
        found.push_back({slot, Of(member, modes, 0), Of(member, ports, 2), first.line, expected});
    }
    return found;
}
