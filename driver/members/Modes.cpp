#include "driver/Recipes.h"

namespace tarn4x {

namespace {

constexpr Token ModeTokens[] = {
    {tarnNYQI, "NYQI"}, {tarnNYQM, "NYQM"}, {tarnNYQN, "NYQN"}, {tarnQAM, "QAM"},   {tarnQAMA, "QAMA"},
    {tarnJ83A, "J83A"}, {tarnJ83B, "J83B"}, {tarnJ83C, "J83C"}, {tarnMPEG, "MPEG"}, {tarnM83A, "M83A"},
    {tarnM83B, "M83B"}, {tarnM83C, "M83C"}, {tarnDVBT, "DVBT"}, {tarnATSC, "ATSC"}, {tarnNTSC, "NTSC"},
};

constexpr Token MeasureModeTokens[] = {
    {tarnUndefined, "0"}, {tarnNORM, "NORM"}, {tarnCDI, "CDI"},   {tarnMDB, "MDB"},   {tarnMPCT, "MPCT"},
    {tarnINT, "INT"},     {tarnIQ, "IQ"},     {tarnAPH, "APH"},   {tarnAGD, "AGD"},   {tarnPOL, "POL"},
    {tarnSP_1, "SP_1"},   {tarnSP_2, "SP_2"}, {tarnSP_3, "SP_3"}, {tarnADIS, "ADIS"}, {tarnCCDF, "CCDF"},
    {tarnIR_1, "IR_1"},   {tarnIR_2, "IR_2"}, {tarnIR_3, "IR_3"}, {tarnHIST, "HIST"}, {tarnPAR, "PAR"},
    {tarnCENV, "CENV"},
};

constexpr double LowestRf = 3'000'000.0;  // Hz
constexpr double HighestRf = 10'000'000'009.0;

}  // namespace

TarnModes clsTarn4x::get_Mode() {
    return ReadToken<TarnModes>(
        {.Member = Members::Mode,
         .Query = "SYST:MODE?",
         .Expected = "NYQI,NYQM,NYQN,QAM,QAMA,J83A,J83B,J83C,MPEG,M83A,M83B,M83C,DVBT,ATSC,NTSC",
         .Unknown = "Device reported an unrecognised mode ("},
        ModeTokens);
}

void clsTarn4x::put_Mode(TarnModes value) {
    const auto token = TokenOf(ModeTokens, value);
    if (value != tarnDVBT) {
        RaiseInvalid(Members::Mode, token.empty() ? std::to_string(value) : std::string(token));
    }
    Guarded(LetOf(Members::Mode), [&] {
        ImpulseResponseKnown = false;
        MeasureModeKnown = false;
        IdentityRead = false;
        const auto kept = ChangeTimeout(10.0F);  // which stays when the command fails
        channel.SendCommand("SYST:MODE DVBT");
        Restore(kept);
        Delay(10.0F);  // the instrument switches standards
    });
}

TarnMeasureModes clsTarn4x::get_MeasureMode() {
    ForgetPrefix();
    if (MeasureModeKnown) return CachedMeasureMode;
    // The "0" of the list makes any answer with that digit final.
    const auto mode = AskToken(
        {.Member = Members::MeasureMode,
         .Query = "SENS:DVBT:MEAS?",
         .Expected = "0,NORM,CDI,MDB,MPCT,INT,IQ,APH,AGD,POL,SP_1,SP_2,SP_3,ADIS,CCDF,CENV,IR_1,IR_2,IR_3,HIST,PAR",
         .Unknown = "Device reported an unrecognised measurement mode ("},
        MeasureModeTokens);
    if (!mode) return tarnNORM;
    CachedMeasureMode = static_cast<TarnMeasureModes>(*mode);
    MeasureModeKnown = true;
    return CachedMeasureMode;
}

void clsTarn4x::put_MeasureMode(TarnMeasureModes value) {
    if (value < tarnNORM || value > tarnCENV) RaiseInvalid(Members::MeasureMode, std::to_string(value));
    Guarded(LetOf(Members::MeasureMode), [&] {
        const auto kept = ChangeTimeout(100.0F);  // which stays when the command fails
        channel.SendCommand(std::string("SENS:DVBT:MEAS ").append(TokenOf(MeasureModeTokens, value)));
        Restore(kept);
        Delay(3.0F);
        CachedMeasureMode = value;
        MeasureModeKnown = true;
    });
}

double clsTarn4x::get_RF() { return ReadNumber({.Member = Members::RF, .Query = "SENS:FREQ:CENT?"}); }

void clsTarn4x::put_RF(double value) {
    if (!(value >= LowestRf && value <= HighestRf)) {
        RaiseInvalid(Members::RF, platform::GeneralNumber(value) + " Hz");
    }
    Tell({.Member = Members::RF, .Command = "SENS:FREQ:CENT "}, SignedNumber(RoundDecimals(value, 1)));
    ImpulseResponseKnown = false;
}

}  // namespace tarn4x
