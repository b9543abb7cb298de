#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "driver/CommandChannel.h"
#include "driver/Conversions.h"
#include "driver/MemberTable.h"
#include "driver/Operation.h"
#include "driver/ResponseParsing.h"
#include "driver/Rows.h"
#include "platform/Framework.h"

namespace tarn4x {

class clsStatistics;

/// Driver of a Tarn 4x DVB-T test receiver. What each member measures or controls, its unit and the measure modes in
/// which it exists are told in driver/Members.def; quantities are those of ETSI TR 101 290, transmission parameters
/// those of EN 300 744.
///
/// Members raise platform::AutomationError. Unless a member says otherwise, a read that fails raises xtarnQueryFailed
/// and a write or method xtarnCommandFailed, with an entry of the instrument's error queue behind the text when the
/// transport reported 2010 to 2013. Results need an on-line driver. A member in a measure mode in which it does not
/// exist raises xtarnBadMeasureMode.
///
/// When the user has asked to stop, a read sends its query and returns 0, False or an empty text without a look at the
/// answer, and modes are not checked. Apart from that: the seven measured transmission parameters and MeasureOrderOfQam
/// return Unknown (-1), a measure mode that is remembered is returned as it is, the setters of the carriers still check
/// the mode and then do nothing, and InputAttenuationMode_Receiver and InputAttenuationValue_Demod still check the
/// port.
class clsTarn4x {
  public:
    /// Builds the settings with their defaults. Raises what a transport or the settings component raises, and 380
    /// "Invalid Property Value (intIndex = 0)" on a computer without a serial port.
    explicit clsTarn4x(std::shared_ptr<platform::Framework> framework);
    clsTarn4x(const clsTarn4x&) = delete;
    clsTarn4x& operator=(const clsTarn4x&) = delete;

    // ---- IDriverSetup: name, settings, on-line state (driver/Session.cpp) ----

    std::string get_IDriverSetup_Name() const { return mstrName; }
    void put_IDriverSetup_Name(std::string_view name) { mstrName = name; }
    /// Root of the settings, the same object every time.
    std::shared_ptr<platform::SettingsNode> get_IDriverSetup_Settings() const { return settings; }
    bool get_IDriverSetup_OnLine();
    /// Raises 2002 "Driver already on-line" or 2003 "Driver already off-line" (plain numbers). A link that cannot be
    /// opened, or an instrument that refuses the first commands, leaves the driver off-line without an error.
    void put_IDriverSetup_OnLine(bool onLine);

    // ---- IDriverIdentify (members/Identity.cpp) ----

    std::string get_IDriverIdentify_Manufacturer();
    std::string get_IDriverIdentify_ModelNumber();
    std::string get_IDriverIdentify_SerialNumber();
    std::string get_IDriverIdentify_FirmwareVersion();
    std::string get_IDriverIdentify_InstalledHardware();

    // ---- Instrument (driver/Reset.cpp, members/ScreenShot.cpp) ----

    void Reset();
    /// Raises xtarnBadRemoteControlPort when the selected link carries no blocks.
    bool get_ScreenShot(TarnScreenShotModes udtMode, std::vector<std::uint8_t>& bytBuffer);

    // ---- Measurements (members/MeasurementQueries.cpp) ----

    double get_MeasureTsBitrate();
    double get_MeasureBitrateOffset();
    double get_MeasureTdCcdfCrestFactorMargin();
    double get_MeasureTdCcdfCrestFactorMax();
    double get_MeasureTdCcdfCrestFactorCurrent();
    double get_MeasureFdSpectrumShoulderLower();
    double get_MeasureFdSpectrumShoulderUpper();
    double get_MeasureFrequencyOffset();
    double get_MeasureRfLevel();
    double get_MeasureOfdmCarrierSuppression();
    double get_MeasureOfdmCarrierSuppressionPhase();
    double get_MeasureOfdmMerRmsDb();
    double get_MeasureOfdmMerRmsPct();
    double get_MeasureOfdmMerPeakPct();
    double get_MeasureOfdmPhaseJitter();
    double get_MeasureOfdmIqPhaseError();
    double get_MeasureOfdmIqAmplImbalance();
    double get_MeasureOfdmSignalToNoiseRatio();
    void MeasureResetBer();
    double get_MeasureBerBeforeVit();
    double get_MeasureBerBeforeRS();
    double get_MeasureBerAfterRS();
    bool get_MeasureCarrierLoopOutOfLock();
    bool get_MeasureMpegTsUnSync();

    // ---- Pieces of the last answer; they never fail ----

    std::string get_ResponseString() const { return answer.Raw; }
    std::string get_Prefix() const { return answer.Prefix; }
    std::string get_Postfix() const { return answer.Postfix; }

    // ---- Operating mode and measure mode (members/Modes.cpp) ----

    /// Raises xtarnInvalidPropertyValue for any other mode than tarnDVBT.
    TarnModes get_Mode();
    void put_Mode(TarnModes value);
    /// Read from the instrument once, then remembered until Mode or Reset.
    TarnMeasureModes get_MeasureMode();
    void put_MeasureMode(TarnMeasureModes value);
    double get_RF();
    void put_RF(double value);

    // ---- Instrument setup settings (members/SetupSettings.cpp) ----

    double get_MeasureNoiseGenerator();
    void put_MeasureNoiseGenerator(double value);
    TarnSwitchStates get_MeasureCdAddNoise();
    void put_MeasureCdAddNoise(TarnSwitchStates value);
    double get_MeasureCdAddNoiseCn();
    void put_MeasureCdAddNoiseCn(double value);
    std::int32_t get_MeasureCdSymbolCount();
    void put_MeasureCdSymbolCount(std::int32_t value);
    double get_MeasureFdSpectrumStartFreq();
    void put_MeasureFdSpectrumStartFreq(double value);
    double get_MeasureFdSpectrumStopFreq();
    void put_MeasureFdSpectrumStopFreq(double value);
    bool get_ReferenceLocked();
    bool get_StateSignal();
    TarnSpecFuncLoopBandwidths get_SpecFuncLoopBandwidth();
    void put_SpecFuncLoopBandwidth(TarnSpecFuncLoopBandwidths value);
    TarnSpecFuncMinBerIntegrations get_SpecFuncMinBerIntegration();
    void put_SpecFuncMinBerIntegration(TarnSpecFuncMinBerIntegrations value);
    TarnStatusOrderOfQams get_MeasureOrderOfQam();
    TarnStatusSawFilterBWs get_StatusSawFilterBW();
    void put_StatusSawFilterBW(TarnStatusSawFilterBWs value);
    TarnStatusChannelBWs get_StatusChannelBW();
    void put_StatusChannelBW(TarnStatusChannelBWs value);
    TarnReferenceSources get_Setup10MhzRef();
    void put_Setup10MhzRef(TarnReferenceSources value);
    TarnSetupLevelUnits get_SetupLevelUnit();
    void put_SetupLevelUnit(TarnSetupLevelUnits value);
    Date get_SetupTime();
    void put_SetupTime(Date value);
    Date get_SetupDate();
    void put_SetupDate(Date value);

    // ---- Input stage (members/InputStage.cpp) ----

    TarnInputAttenuations get_InputAttenuation();
    void put_InputAttenuation(TarnInputAttenuations value);
    TarnInputAttenuations get_InputAttenuation_Receiver();
    void put_InputAttenuation_Receiver(TarnInputAttenuations value);
    TarnRxAttenModes get_InputAttenuationMode_Receiver();
    void put_InputAttenuationMode_Receiver(TarnRxAttenModes value);
    TarnInputAttenuations get_InputAttenuationValue();
    TarnInputAttenuations get_InputAttenuationValue_Receiver();
    TarnDemodAttenVals get_InputAttenuationValue_Demod();
    TarnDemodAttenuations get_InputAttenuation_Demod();
    void put_InputAttenuation_Demod(TarnDemodAttenuations value);
    TarnInputPorts get_InputPort();
    void put_InputPort(TarnInputPorts value);

    // ---- Responses, carriers and spectrum (members/Responses.cpp) ----

    double get_MeasureFdPhaseResponse();
    double get_MeasureFdGroupDelayResponse();
    double get_MeasureFdAmplitudeResponse();
    void MeasureTdImpulseResponse();
    double get_ImpulseResponseAtten(std::int16_t intNumber);
    double get_ImpulseResponseDelay(std::int16_t intNumber);
    std::int16_t get_MeasureOfdmStartCarrier();
    void put_MeasureOfdmStartCarrier(std::int16_t value);
    std::int16_t get_MeasureOfdmStopCarrier();
    void put_MeasureOfdmStopCarrier(std::int16_t value);
    TarnFdSpectrumDetectors get_MeasureFdSpectrumDetector();
    void put_MeasureFdSpectrumDetector(TarnFdSpectrumDetectors value);
    std::int16_t get_MeasureFdSpectrumAverage();
    std::int16_t get_MeasureFdSpectrumAverageCount();
    void put_MeasureFdSpectrumAverageCount(std::int16_t value);
    std::int16_t get_MeasureTdCrestFactorAqu();
    void MeasureOfdmCarrierRange(std::int16_t intStart, std::int16_t intStop);

    // ---- OFDM transmission parameters (members/OfdmParameters.cpp) ----
    // Alpha, code rate, FFT mode, guard interval and order of QAM raise xtarnBadCodeRateMode unless
    // StatusOfdmCodeRateMode is tarnMan.

    TarnStatusFftModes get_MeasureFftMode();
    std::int16_t get_MeasureOfdmAverage();
    TarnStatusAlphas get_StatusOfdmAlpha();
    void put_StatusOfdmAlpha(TarnStatusAlphas value);
    TarnStatusCodeRates get_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority);
    void put_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates value);
    TarnStatusOfdmCodeRateModes get_StatusOfdmCodeRateMode();
    void put_StatusOfdmCodeRateMode(TarnStatusOfdmCodeRateModes value);
    TarnStatusFftModes get_StatusOfdmFftMode();
    void put_StatusOfdmFftMode(TarnStatusFftModes value);
    TarnStatusGuardIntervals get_StatusOfdmGuardInterval();
    void put_StatusOfdmGuardInterval(TarnStatusGuardIntervals value);
    TarnStatusOrderOfQams get_StatusOfdmOrderOfQam();
    void put_StatusOfdmOrderOfQam(TarnStatusOrderOfQams value);
    TarnStatusHierarchicalModes get_StatusMpegDataOutput();
    void put_StatusMpegDataOutput(TarnStatusHierarchicalModes value);
    TarnStatusFftModes get_MeasureFftModeTps();
    TarnStatusGuardIntervals get_MeasureGuardIntervalTps();
    TarnStatusOrderOfQams get_MeasureOrderOfQamTps();
    TarnStatusAlphas get_MeasureAlphaTps();
    TarnStatusCodeRates get_MeasureCodeRateTps();
    TarnStatusCodeRates get_MeasureCodeRate();
    TarnSpecFuncSystOptims get_SpecFuncSystOptims();
    void put_SpecFuncSystOptims(TarnSpecFuncSystOptims value);
    TarnSwitchStates get_InputAttenHighAdjChanPower();
    void put_InputAttenHighAdjChanPower(TarnSwitchStates value);

    // ---- Alarm statistics (members/AlarmStatistics.cpp) ----

    std::shared_ptr<clsStatistics> get_AlarmStatistics();
    void AlarmRegisterClear();

    // ---- Identity (members/Identity.cpp) ----

    std::string get_Identity();
    std::string get_Manufacturer();
    std::string get_ModelNumber();
    std::string get_SerialNumber();
    std::string get_FirmwareVersion();
    std::string get_InstalledHardware();

    // ---- Texts and numbers of enumeration values (members/ValueFormatting.cpp); they talk to no instrument ----

    std::string FormatFftMode(TarnStatusFftModes udtValue);
    std::string FormatGuardInterval(TarnStatusGuardIntervals udtValue);
    std::string FormatOrderOfQam(TarnStatusOrderOfQams udtValue);
    std::string FormatAlpha(TarnStatusAlphas udtValue);
    std::string FormatCodeRate(TarnStatusCodeRates udtValue);
    double ValueCodeRate(TarnStatusCodeRates udtValue);

  private:
    // ---- Failures (driver/Failure.h) ----

    /// Raises an error of the driver: the code offset by ObjectErrorBase.
    [[noreturn]] void Raise(std::int32_t code, std::string source, std::string description);
    [[noreturn]] void RaiseFor(std::string_view member, std::int32_t code, std::string description);
    [[noreturn]] void RaiseFor(Members member, std::int32_t code, std::string description);
    /// Runs a member's body; what fails inside reaches the caller as the failure of the operation.
    template <class Body>
    auto Guarded(const Operation& operation, Body&& body);
    [[noreturn]] void Report(const Operation& operation, const platform::AutomationError& error);

    // ---- Session ----

    void GoOnLine();
    void GoOffLine();
    bool AbortRequested() { return framework->TheApplication().AbortRequested(); }
    void Delay(float seconds) { framework->TheApplication().Delay(seconds); }
    /// The transport; raises 91 while off-line.
    std::shared_ptr<platform::Transport> mobjTransport() const { return channel.Transport(); }
    /// A transport and its time-out as it was, in seconds.
    struct KeptTimeout {
        std::shared_ptr<platform::Transport> Of;
        float Seconds;
    };
    KeptTimeout ChangeTimeout(float seconds);
    /// Gives the time-out back, unless another transport has taken the place of its own.
    void Restore(const KeptTimeout& kept);

    // ---- Recipes of the members (driver/Recipes.cpp) ----

    void ForgetPrefix() { answer.Prefix = "---"; }
    /// Whether the measure mode is one in which the member exists.
    bool InModeOf(Members member);
    /// Raises xtarnBadMeasureMode unless the member exists in the measure mode or the user asked to stop.
    void RequireMode(Members member, std::string_view source = {});
    [[noreturn]] void RaiseWrongMode(std::string_view source);
    void RequireManualCodeRate(Members member);
    /// What stands before the guard of every read: the forgotten prefix and the preconditions.
    void Prepare(const Read& read);

    /// Sends a query; nothing when the user has asked to stop.
    std::optional<std::string> AskRaw(std::string_view query, std::string_view expected = {},
                                      std::string_view delimiter = ",");
    /// Sends a query and parses the answer; nothing when the user has asked to stop.
    std::optional<std::string> Ask(std::string_view query, std::string_view expected = {},
                                   std::string_view delimiter = ",");
    /// Asks inside the guard of the member and converts what came; 0 when the user has asked to stop.
    template <class Convert>
    auto Asked(const Read& read, Convert&& convert);
    double ReadNumber(const Read& read);
    std::int16_t ReadInteger(const Read& read);
    std::int32_t ReadLong(const Read& read);
    /// The value of the token that came; nothing when the user has asked to stop.
    std::optional<std::int32_t> AskToken(const Read& read, std::span<const Token> tokens);
    template <class Enumeration>
    Enumeration ReadToken(const Read& read, std::span<const Token> tokens);
    [[noreturn]] void RaiseUnknown(const Read& read, std::string_view raw);

    /// Sends a command inside the guard of the member.
    void Tell(const Write& write, std::string_view argument = {});
    void WriteToken(const Write& write, std::span<const Token> tokens, std::int32_t value);
    struct Bounds {
        std::int32_t Lowest;
        std::int32_t Highest;
    };
    /// Writes a value after its checks.
    void PutParameter(const Write& write, std::span<const Token> tokens, std::int32_t value, const Bounds& bounds);
    /// Raises xtarnInvalidPropertyValue "<argument or member> value out of range" outside of the bounds.
    void RequireRange(Members member, std::int32_t value, const Bounds& bounds, std::string_view argument = {});
    [[noreturn]] void RaiseOutOfRange(Members member, std::string_view argument = {});
    /// Raises xtarnInvalidPropertyValue "<refusal><value>)". Without a refusal it is "Invalid property value (<member>
    /// = ".
    [[noreturn]] void RaiseInvalid(Members member, std::string_view value, std::string_view refusal = {});

    // ---- What families share among their members ----

    /// Makes the time-out long enough for a screen; nothing when the selected link carries no blocks.
    std::optional<KeptTimeout> ChangeTimeoutForBlocks();
    void PutSpectrumFrequency(const Write& write, double value, double lowest, double highest);
    /// Raises xtarnBadInputPort unless the selected input has the bit; returns the input.
    TarnInputPorts RequirePort(Members member, std::int32_t bit, bool stopRequestPasses);
    bool HasImpedanceOption();
    TarnInputAttenuations AskAttenuation(const Read& read);
    double ReadResponse(Members member, double ParsedAnswer::*value);
    double ReadEcho(Members member, std::int16_t number, const std::array<std::string, 25>& texts);
    /// False: a stop request in a mode without carriers. Raises xtarnBadMeasureMode without the request.
    bool MaySetCarrier(Members member);
    Bounds AskCarrierBounds();
    std::int16_t ReadCarrier(Members member, std::size_t index, std::string_view missing);
    void TellCarriers(const Operation& operation, std::int16_t start, std::int16_t stop);
    /// The bandwidth of the SAW filter; nothing when the user has asked to stop.
    std::optional<std::int32_t> AskSawFilter();
    // What is found of the hardware; nothing when the user has asked to stop.
    using FiltersFound = std::array<bool, 3>;  // 6, 7 and 8 MHz
    std::optional<std::string> AskInstalledHardware();
    /// The codes of the channel filters: from the board information, or tried one by one where there is none.
    std::optional<std::string> AskChannelFilters();
    std::optional<FiltersFound> TryChannelFilters();
    std::string IdentityField(Members member, std::size_t index);
    std::string Format(std::span<const Token> texts, std::int32_t value);

    std::shared_ptr<platform::Framework> framework;
    std::shared_ptr<platform::SettingsNode> settings;
    CommandChannel channel;
    ParsedAnswer answer;

    std::string mstrName;
    TarnMeasureModes CachedMeasureMode = tarnNORM;
    bool MeasureModeKnown = false;
    bool ImpulseResponseKnown = false;
    bool IdentityRead = false;
    std::string IdentityAnswer;
    bool OptionsRead = false;
    std::string OptionText;
    std::array<std::string, 25> ImpulseAttenTexts;
    std::array<std::string, 25> ImpulseDelayTexts;
};

}  // namespace tarn4x
