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

#include "core/CommandChannel.h"
#include "core/Conversions.h"
#include "core/Enumerations.h"
#include "core/Operation.h"
#include "core/ResponseParsing.h"
#include "core/Rows.h"
#include "platform/Framework.h"

namespace tarn4x {

class clsStatistics;

/// Driver of a Tarn 4x DVB-T test receiver.
///
/// Members raise platform::AutomationError. Unless a member says otherwise, a read that fails raises xtarnQueryFailed
/// and a write or method xtarnCommandFailed, with the instrument's own error behind the text when it refused. Results
/// need an on-line driver. When the user has asked to stop, results are 0, False or empty and no mode is checked.
/// Members with measure modes in brackets raise xtarnBadMeasureMode in any other mode; [SP] stands for SP_1 to SP_3,
/// [CREST] for ADIS, CENV and CCDF, [IQ] for CDI to POL and PAR.
class clsTarn4x {
  public:
    /// Builds the settings with their defaults. Raises what a transport or the settings component raises, and 380
    /// "Invalid Property Value (intIndex = 0)" on a computer without a serial port.
    explicit clsTarn4x(std::shared_ptr<platform::Framework> framework);
    clsTarn4x(const clsTarn4x&) = delete;
    clsTarn4x& operator=(const clsTarn4x&) = delete;

    // ---- IDriverSetup: name, settings, on-line state (core/Session.cpp) ----

    std::string get_IDriverSetup_Name() const { return mstrName; }
    void put_IDriverSetup_Name(std::string_view name) { mstrName = name; }
    /// Root of the settings, the same object every time.
    std::shared_ptr<platform::SettingsNode> get_IDriverSetup_Settings() const { return settings; }
    bool get_IDriverSetup_OnLine();
    /// Raises 2002 "Driver already on-line" or 2003 "Driver already off-line" (plain numbers). A link that cannot be
    /// opened, or an instrument that refuses the first commands, leaves the driver off-line without an error.
    void put_IDriverSetup_OnLine(bool onLine);

    // ---- IDriverIdentify (identity/) ----

    std::string get_IDriverIdentify_Manufacturer();
    std::string get_IDriverIdentify_ModelNumber();
    std::string get_IDriverIdentify_SerialNumber();
    std::string get_IDriverIdentify_FirmwareVersion();
    std::string get_IDriverIdentify_InstalledHardware();

    // ---- Instrument (core/Reset.cpp, capture/) ----

    /// Puts the instrument into its power-on state and waits 15 s.
    void Reset();
    /// Captures the screen and/or transfers it as PCX image into bytBuffer. False: the instrument refused the capture.
    /// Raises xtarnBadRemoteControlPort when the selected link carries no blocks.
    bool get_ScreenShot(TarnScreenShotModes udtMode, std::vector<std::uint8_t>& bytBuffer);

    // ---- Measurements (properties/MeasurementQueries.cpp); quantities of ETSI TR 101 290 ----

    double get_MeasureTsBitrate();                    ///< bit rate of the transport stream, Mbit/s
    double get_MeasureBitrateOffset();                ///< deviation of the bit rate, ppm
    double get_MeasureTdCcdfCrestFactorMargin();      ///< crest factor at the chosen probability, dB [CREST]
    double get_MeasureTdCcdfCrestFactorMax();         ///< largest crest factor, dB [CREST]
    double get_MeasureTdCcdfCrestFactorCurrent();     ///< present crest factor, dB [CREST]
    double get_MeasureFdSpectrumShoulderLower();      ///< lower shoulder attenuation, dB [SP]
    double get_MeasureFdSpectrumShoulderUpper();      ///< upper shoulder attenuation, dB [SP]
    double get_MeasureFrequencyOffset();              ///< carrier frequency offset, Hz [NORM]
    double get_MeasureRfLevel();                      ///< RF level in the unit of SetupLevelUnit
    double get_MeasureOfdmCarrierSuppression();       ///< carrier suppression, dB [PAR]
    double get_MeasureOfdmCarrierSuppressionPhase();  ///< phase of the residual carrier, degrees [PAR]
    double get_MeasureOfdmMerRmsDb();                 ///< modulation error ratio (rms), dB [HIST, PAR]
    double get_MeasureOfdmMerRmsPct();                ///< modulation error ratio (rms), % [HIST, PAR]
    double get_MeasureOfdmMerPeakPct();               ///< modulation error ratio (peak), % [PAR]
    double get_MeasureOfdmPhaseJitter();              ///< phase jitter (rms), degrees [PAR]
    double get_MeasureOfdmIqPhaseError();             ///< quadrature error, degrees [PAR]
    double get_MeasureOfdmIqAmplImbalance();          ///< amplitude imbalance, % [PAR]
    double get_MeasureOfdmSignalToNoiseRatio();       ///< signal-to-noise ratio, dB [PAR]
    void MeasureResetBer();                           ///< restarts the bit error measurements
    double get_MeasureBerBeforeVit();                 ///< bit error ratio before Viterbi decoding
    double get_MeasureBerBeforeRS();                  ///< bit error ratio before Reed-Solomon decoding
    double get_MeasureBerAfterRS();                   ///< bit error ratio after Reed-Solomon decoding
    bool get_MeasureCarrierLoopOutOfLock();           ///< True: the receiver has lost the signal
    bool get_MeasureMpegTsUnSync();                   ///< True: the transport stream is not synchronised

    // ---- Pieces of the last answer; they never fail ----

    std::string get_ResponseString() const { return answer.Raw; }  ///< the answer as it came
    std::string get_Prefix() const { return answer.Prefix; }       ///< marker in front: < > * --- UNDER OVER NORF
    std::string get_Postfix() const { return answer.Postfix; }     ///< remark in parentheses behind it

    // ---- Operating mode and measure mode (properties/Modes.cpp) ----

    /// Operating standard. Only tarnDVBT can be selected (10 s); others raise xtarnInvalidPropertyValue.
    TarnModes get_Mode();
    void put_Mode(TarnModes value);
    /// Measurement screen; read from the instrument once, then remembered. Selecting one takes 3 s.
    TarnMeasureModes get_MeasureMode();
    void put_MeasureMode(TarnMeasureModes value);
    /// Centre frequency in Hz, 3 000 000 to 10 000 000 009, in steps of 0.1 Hz.
    double get_RF();
    void put_RF(double value);

    // ---- Instrument setup settings (properties/SetupSettings.cpp) ----

    double get_MeasureNoiseGenerator();  ///< alias of MeasureCdAddNoiseCn
    void put_MeasureNoiseGenerator(double value);
    TarnSwitchStates get_MeasureCdAddNoise();  ///< built-in noise generator
    void put_MeasureCdAddNoise(TarnSwitchStates value);
    double get_MeasureCdAddNoiseCn();  ///< carrier-to-noise ratio of the noise generator, 2.0 to 56.0 dB
    void put_MeasureCdAddNoiseCn(double value);
    std::int32_t get_MeasureCdSymbolCount();  ///< symbols that are integrated, 1 to 99999
    void put_MeasureCdSymbolCount(std::int32_t value);
    double get_MeasureFdSpectrumStartFreq();  ///< start of the span in Hz from the centre, -4.48 MHz and up [SP]
    void put_MeasureFdSpectrumStartFreq(double value);
    double get_MeasureFdSpectrumStopFreq();  ///< end of the span in Hz from the centre, at least 1.34 MHz on [SP]
    void put_MeasureFdSpectrumStopFreq(double value);
    bool get_ReferenceLocked();  ///< True: the 10 MHz reference is locked
    bool get_StateSignal();      ///< True: the RF level is in range
    TarnSpecFuncLoopBandwidths get_SpecFuncLoopBandwidth();
    void put_SpecFuncLoopBandwidth(TarnSpecFuncLoopBandwidths value);
    TarnSpecFuncMinBerIntegrations get_SpecFuncMinBerIntegration();
    void put_SpecFuncMinBerIntegration(TarnSpecFuncMinBerIntegrations value);
    TarnStatusOrderOfQams get_MeasureOrderOfQam();  ///< constellation found in the signal
    TarnStatusSawFilterBWs get_StatusSawFilterBW();
    void put_StatusSawFilterBW(TarnStatusSawFilterBWs value);
    TarnStatusChannelBWs get_StatusChannelBW();
    void put_StatusChannelBW(TarnStatusChannelBWs value);
    TarnReferenceSources get_Setup10MhzRef();
    void put_Setup10MhzRef(TarnReferenceSources value);
    TarnSetupLevelUnits get_SetupLevelUnit();
    void put_SetupLevelUnit(TarnSetupLevelUnits value);
    Date get_SetupTime();  ///< clock of the instrument, a time of day
    void put_SetupTime(Date value);
    Date get_SetupDate();  ///< calendar of the instrument
    void put_SetupDate(Date value);

    // ---- Input stage (properties/InputStage.cpp) ----

    TarnInputAttenuations get_InputAttenuation();  ///< alias of InputAttenuation_Receiver
    void put_InputAttenuation(TarnInputAttenuations value);
    TarnInputAttenuations get_InputAttenuation_Receiver();  ///< attenuation of the RF input or tarnAttenAuto
    void put_InputAttenuation_Receiver(TarnInputAttenuations value);
    TarnRxAttenModes get_InputAttenuationMode_Receiver();  ///< strategy of the automatic attenuator (receiver ports)
    void put_InputAttenuationMode_Receiver(TarnRxAttenModes value);
    TarnInputAttenuations get_InputAttenuationValue();           ///< alias of InputAttenuationValue_Receiver
    TarnInputAttenuations get_InputAttenuationValue_Receiver();  ///< attenuation in use, dB (receiver ports)
    TarnDemodAttenVals get_InputAttenuationValue_Demod();  ///< state of the demodulator input; firmware 5.05 and up
    TarnDemodAttenuations get_InputAttenuation_Demod();    ///< switch of the demodulator input (demodulator port)
    void put_InputAttenuation_Demod(TarnDemodAttenuations value);
    TarnInputPorts get_InputPort();
    void put_InputPort(TarnInputPorts value);

    // ---- Responses, carriers and spectrum (properties/Responses.cpp) ----

    double get_MeasureFdPhaseResponse();                      ///< phase response, degrees [APH]
    double get_MeasureFdGroupDelayResponse();                 ///< group delay response, ns [AGD]
    double get_MeasureFdAmplitudeResponse();                  ///< amplitude response, dB [APH, AGD]
    void MeasureTdImpulseResponse();                          ///< reads the 25 strongest echoes [IR_1]
    double get_ImpulseResponseAtten(std::int16_t intNumber);  ///< attenuation of echo 1 to 25, dB
    double get_ImpulseResponseDelay(std::int16_t intNumber);  ///< delay of echo 1 to 25, us
    std::int16_t get_MeasureOfdmStartCarrier();  ///< first carrier evaluated, 0 to 1704 (2k) or 6816 (8k) [IQ]
    void put_MeasureOfdmStartCarrier(std::int16_t value);
    std::int16_t get_MeasureOfdmStopCarrier();  ///< last carrier evaluated, from the start carrier up [IQ]
    void put_MeasureOfdmStopCarrier(std::int16_t value);
    TarnFdSpectrumDetectors get_MeasureFdSpectrumDetector();  ///< [SP]
    void put_MeasureFdSpectrumDetector(TarnFdSpectrumDetectors value);
    std::int16_t get_MeasureFdSpectrumAverage();       ///< sweeps averaged so far [SP]
    std::int16_t get_MeasureFdSpectrumAverageCount();  ///< sweeps to average, 0 (off) to 999 [SP]
    void put_MeasureFdSpectrumAverageCount(std::int16_t value);
    std::int16_t get_MeasureTdCrestFactorAqu();  ///< crest factor acquisitions so far [CREST]
    /// Sets the first and last carrier evaluated [IQ].
    void MeasureOfdmCarrierRange(std::int16_t intStart, std::int16_t intStop);

    // ---- OFDM transmission parameters (properties/OfdmParameters.cpp), EN 300 744 ----
    // Members marked (manual) raise xtarnBadCodeRateMode unless StatusOfdmCodeRateMode is tarnMan.

    TarnStatusFftModes get_MeasureFftMode();  ///< FFT mode found in the signal
    std::int16_t get_MeasureOfdmAverage();    ///< progress of the averaging [PAR]
    TarnStatusAlphas get_StatusOfdmAlpha();   ///< (manual)
    void put_StatusOfdmAlpha(TarnStatusAlphas value);
    TarnStatusCodeRates get_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority);  ///< (manual)
    void put_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates value);
    TarnStatusOfdmCodeRateModes get_StatusOfdmCodeRateMode();
    void put_StatusOfdmCodeRateMode(TarnStatusOfdmCodeRateModes value);
    TarnStatusFftModes get_StatusOfdmFftMode();  ///< (manual)
    void put_StatusOfdmFftMode(TarnStatusFftModes value);
    TarnStatusGuardIntervals get_StatusOfdmGuardInterval();  ///< (manual)
    void put_StatusOfdmGuardInterval(TarnStatusGuardIntervals value);
    TarnStatusOrderOfQams get_StatusOfdmOrderOfQam();  ///< (manual)
    void put_StatusOfdmOrderOfQam(TarnStatusOrderOfQams value);
    TarnStatusHierarchicalModes get_StatusMpegDataOutput();  ///< stream at the MPEG output
    void put_StatusMpegDataOutput(TarnStatusHierarchicalModes value);
    TarnStatusFftModes get_MeasureFftModeTps();              ///< as the TPS tells
    TarnStatusGuardIntervals get_MeasureGuardIntervalTps();  ///< as the TPS tells
    TarnStatusOrderOfQams get_MeasureOrderOfQamTps();        ///< as the TPS tells
    TarnStatusAlphas get_MeasureAlphaTps();                  ///< as the TPS tells
    TarnStatusCodeRates get_MeasureCodeRateTps();            ///< as the TPS tells
    TarnStatusCodeRates get_MeasureCodeRate();               ///< in use
    TarnSpecFuncSystOptims get_SpecFuncSystOptims();
    void put_SpecFuncSystOptims(TarnSpecFuncSystOptims value);
    TarnSwitchStates get_InputAttenHighAdjChanPower();  ///< extra attenuation for a strong adjacent channel
    void put_InputAttenHighAdjChanPower(TarnSwitchStates value);

    // ---- Alarm statistics (statistics/) ----

    /// The alarm statistics report of the instrument; every call returns a new object.
    std::shared_ptr<clsStatistics> get_AlarmStatistics();
    void AlarmRegisterClear();  ///< resets the alarm register and waits 3 s

    // ---- Identity (identity/) ----

    std::string get_Identity();           ///< answer to *IDN? (IEEE 488.2), read once
    std::string get_Manufacturer();       ///< first field of Identity
    std::string get_ModelNumber();        ///< second field of Identity
    std::string get_SerialNumber();       ///< third field of Identity
    std::string get_FirmwareVersion();    ///< fourth field of Identity
    std::string get_InstalledHardware();  ///< option codes separated by commas, read once

    // ---- Texts and numbers of enumeration values (formatting/); they talk to no instrument ----

    std::string FormatFftMode(TarnStatusFftModes udtValue);              ///< 2K, 8K
    std::string FormatGuardInterval(TarnStatusGuardIntervals udtValue);  ///< '1/4' ... with the apostrophes
    std::string FormatOrderOfQam(TarnStatusOrderOfQams udtValue);        ///< 4QAM, 16QAM, 64QAM
    std::string FormatAlpha(TarnStatusAlphas udtValue);                  ///< non-hierarchical, alpha = 1 ...
    std::string FormatCodeRate(TarnStatusCodeRates udtValue);            ///< '1/2' ... with the apostrophes
    double ValueCodeRate(TarnStatusCodeRates udtValue);                  ///< 1/2 as 0.5 ...; 0 for any other value

  private:
    // ---- Failures (core/Failure.h) ----

    /// Raises an error of the driver: the code offset by ObjectErrorBase.
    [[noreturn]] void Raise(std::int32_t code, std::string source, std::string description);
    [[noreturn]] void RaiseFor(std::string_view member, std::int32_t code, std::string description);
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
    platform::Transport& mobjTransport() { return channel.Transport(); }

    // ---- Recipes of the members (core/Recipes.cpp) ----

    void ForgetPrefix() { answer.Prefix = "---"; }
    /// Raises xtarnBadMeasureMode with the member's source unless the mode is allowed or the user asked to stop.
    void RequireMode(std::string_view member, const AllowedModes& modes);
    [[noreturn]] void RaiseWrongMode(std::string_view member);
    /// Raises xtarnBadCodeRateMode unless the code rate mode is manual or the user asked to stop.
    void RequireManualCodeRate(std::string_view member);
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
    [[noreturn]] void RaiseUnknown(const Read& read);

    /// Sends a command inside the guard of the member.
    void Tell(const Write& write, std::string_view argument = {});
    void WriteToken(const Write& write, std::span<const Token> tokens, std::int32_t value);
    /// Writes a transmission parameter after its checks.
    void PutParameter(const Write& write, std::span<const Token> tokens, std::int32_t value, std::int32_t lowest,
                      std::int32_t highest, bool needsManualCodeRate);
    /// Raises xtarnInvalidPropertyValue "<argument or member> value out of range" outside of the bounds.
    void RequireRange(std::string_view member, std::int32_t value, std::int32_t lowest, std::int32_t highest,
                      std::string_view argument = {});
    /// Raises xtarnInvalidPropertyValue "<text><value>)".
    [[noreturn]] void RaiseInvalid(std::string_view member, std::string_view text, std::string_view value);
    /// Runs a body with the transport's time-out changed; a failure leaves it so.
    template <class Body>
    void WithTimeout(float seconds, Body&& body);

    // ---- What families share among their members ----

    void PutSpectrumFrequency(const Write& write, double value, double lowest, double highest);
    /// Raises xtarnBadInputPort unless the selected input has the bit; returns the input.
    TarnInputPorts RequirePort(std::string_view member, std::int32_t bit, bool stopRequestPasses);
    bool HasImpedanceOption();
    TarnInputAttenuations AskAttenuation(const Read& read);
    double ReadResponse(std::string_view member, const AllowedModes& modes, double ParsedAnswer::*value);
    double ReadEcho(std::string_view member, std::int16_t number, const std::array<std::string, 25>& texts);
    bool CarrierModeSelected();
    void RequireCarrier(std::string_view member, std::int16_t value, std::string_view argument = {});
    std::int16_t ReadCarrier(std::string_view member, std::size_t index, std::string_view missing);
    void TellCarriers(const Operation& operation, std::int16_t start, std::int16_t stop);
    std::optional<std::string> AskInstalledHardware();
    std::optional<std::string> AskChannelFilters();
    std::string IdentityField(std::string_view name, std::string_view source, std::size_t index);

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
