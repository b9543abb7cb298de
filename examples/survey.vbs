' Reads everything that the driver can read and prints it by family: value, unit, and the receiver's remarks (prefix and
' postfix), or the text of the error.
'
'   cscript //nologo survey.vbs [/host:127.0.0.1] [/port:5025] [/simulated]
'
' /simulated   the receiver is tarn4x-sim: the waits that a real instrument needs are left out
Option Explicit

Const tarnHigh = 1, tarnLow = 0, tarnMan = 1
Const tarnReceiver = 2, tarnDemod = 4
Const tarnNORM = 0, tarnCDI = 1, tarnAPH = 6, tarnAGD = 7, tarnSP_1 = 9, tarnCCDF = 13, tarnIR_1 = 14, tarnPAR = 18

Dim app, host, driver, setup, settings, statistics, v, i, rows, errors
rows = 0
errors = 0

Set app = CreateObject("Seamlib.clsApplication")
If HasSwitch("simulated") Then app.DelayScale = 0
Set host = CreateObject("Seamlib.clsHost")
Set driver = host.CreateDriver("XTarn4x")
Set setup = host.Setup(driver)
setup.Name = "Survey"
Set settings = setup.Settings
settings("Remote Control").Value = "TCP/IP"
settings("TCP/IP.Host").Value = Argument("host", "127.0.0.1")
settings("TCP/IP.Port").Value = Argument("port", "5025")
setup.OnLine = True
If Not setup.OnLine Then
    WScript.Echo "The receiver does not answer: " & setup.WhyOffLine
    WScript.Quit 1
End If

' From here on a member that fails becomes a line of the table.
On Error Resume Next

Family "Identity"
v = driver.Identity : Row "Identity", ""
v = driver.Manufacturer : Row "Manufacturer", ""
v = driver.ModelNumber : Row "ModelNumber", ""
v = driver.SerialNumber : Row "SerialNumber", ""
v = driver.FirmwareVersion : Row "FirmwareVersion", ""
v = driver.InstalledHardware : Row "InstalledHardware", ""

Family "Modes"
v = driver.Mode : Row "Mode", ""
v = driver.MeasureMode : Row "MeasureMode", ""
v = driver.RF : Row "RF", "Hz"

Family "Input stage"
driver.InputPort = tarnReceiver
v = driver.InputPort : Row "InputPort", ""
v = driver.InputAttenuation : Row "InputAttenuation", "dB"
v = driver.InputAttenuation_Receiver : Row "InputAttenuation_Receiver", "dB"
v = driver.InputAttenuationMode_Receiver : Row "InputAttenuationMode_Receiver", ""
v = driver.InputAttenuationValue : Row "InputAttenuationValue", "dB"
v = driver.InputAttenuationValue_Receiver : Row "InputAttenuationValue_Receiver", "dB"
v = driver.InputAttenHighAdjChanPower : Row "InputAttenHighAdjChanPower", ""
driver.InputPort = tarnDemod
v = driver.InputAttenuationValue_Demod : Row "InputAttenuationValue_Demod", ""
v = driver.InputAttenuation_Demod : Row "InputAttenuation_Demod", ""
driver.InputPort = tarnReceiver

Family "Instrument setup"
v = driver.MeasureCdAddNoise : Row "MeasureCdAddNoise", ""
v = driver.MeasureCdAddNoiseCn : Row "MeasureCdAddNoiseCn", "dB"
v = driver.MeasureNoiseGenerator : Row "MeasureNoiseGenerator", "dB"
v = driver.MeasureCdSymbolCount : Row "MeasureCdSymbolCount", "symbols"
v = driver.ReferenceLocked : Row "ReferenceLocked", ""
v = driver.StateSignal : Row "StateSignal", ""
v = driver.SpecFuncLoopBandwidth : Row "SpecFuncLoopBandwidth", ""
v = driver.SpecFuncMinBerIntegration : Row "SpecFuncMinBerIntegration", ""
v = driver.StatusSawFilterBW : Row "StatusSawFilterBW", "MHz"
v = driver.StatusChannelBW : Row "StatusChannelBW", "MHz"
v = driver.Setup10MhzRef : Row "Setup10MhzRef", ""
v = driver.SetupLevelUnit : Row "SetupLevelUnit", ""
v = driver.SetupTime : Row "SetupTime", ""
v = driver.SetupDate : Row "SetupDate", ""
v = driver.SpecFuncSystOptims : Row "SpecFuncSystOptims", ""
v = driver.StatusMpegDataOutput : Row "StatusMpegDataOutput", ""

Family "OFDM parameters that are set"
driver.StatusOfdmCodeRateMode = tarnMan
v = driver.StatusOfdmCodeRateMode : Row "StatusOfdmCodeRateMode", ""
v = driver.StatusOfdmAlpha : Row "StatusOfdmAlpha", ""
v = driver.StatusOfdmCodeRate(tarnHigh) : Row "StatusOfdmCodeRate(tarnHigh)", ""
v = driver.StatusOfdmCodeRate(tarnLow) : Row "StatusOfdmCodeRate(tarnLow)", ""
v = driver.StatusOfdmFftMode : Row "StatusOfdmFftMode", ""
v = driver.StatusOfdmGuardInterval : Row "StatusOfdmGuardInterval", ""
v = driver.StatusOfdmOrderOfQam : Row "StatusOfdmOrderOfQam", ""

Family "OFDM parameters of the signal"
v = driver.FormatFftMode(driver.MeasureFftMode) : Row "MeasureFftMode", ""
v = driver.FormatOrderOfQam(driver.MeasureOrderOfQam) : Row "MeasureOrderOfQam", ""
v = driver.FormatCodeRate(driver.MeasureCodeRate) : Row "MeasureCodeRate", ""
v = driver.ValueCodeRate(driver.MeasureCodeRate) : Row "ValueCodeRate", ""
v = driver.FormatFftMode(driver.MeasureFftModeTps) : Row "MeasureFftModeTps", ""
v = driver.FormatGuardInterval(driver.MeasureGuardIntervalTps) : Row "MeasureGuardIntervalTps", ""
v = driver.FormatOrderOfQam(driver.MeasureOrderOfQamTps) : Row "MeasureOrderOfQamTps", ""
v = driver.FormatAlpha(driver.MeasureAlphaTps) : Row "MeasureAlphaTps", ""
v = driver.FormatCodeRate(driver.MeasureCodeRateTps) : Row "MeasureCodeRateTps", ""

Family "Signal"
driver.MeasureMode = tarnNORM
v = driver.MeasureRfLevel : Row "MeasureRfLevel", "dBm"
v = driver.MeasureFrequencyOffset : Row "MeasureFrequencyOffset", "Hz"
v = driver.MeasureTsBitrate : Row "MeasureTsBitrate", "Mbit/s"
v = driver.MeasureBitrateOffset : Row "MeasureBitrateOffset", "ppm"
v = driver.MeasureCarrierLoopOutOfLock : Row "MeasureCarrierLoopOutOfLock", ""
v = driver.MeasureMpegTsUnSync : Row "MeasureMpegTsUnSync", ""
v = driver.MeasureBerBeforeVit : Row "MeasureBerBeforeVit", ""
v = driver.MeasureBerBeforeRS : Row "MeasureBerBeforeRS", ""
v = driver.MeasureBerAfterRS : Row "MeasureBerAfterRS", ""
v = driver.ResponseString : Row "ResponseString", ""

Family "Constellation"
driver.MeasureMode = tarnPAR
v = driver.MeasureOfdmMerRmsDb : Row "MeasureOfdmMerRmsDb", "dB"
v = driver.MeasureOfdmMerRmsPct : Row "MeasureOfdmMerRmsPct", "%"
v = driver.MeasureOfdmMerPeakPct : Row "MeasureOfdmMerPeakPct", "%"
v = driver.MeasureOfdmSignalToNoiseRatio : Row "MeasureOfdmSignalToNoiseRatio", "dB"
v = driver.MeasureOfdmPhaseJitter : Row "MeasureOfdmPhaseJitter", "deg"
v = driver.MeasureOfdmIqPhaseError : Row "MeasureOfdmIqPhaseError", "deg"
v = driver.MeasureOfdmIqAmplImbalance : Row "MeasureOfdmIqAmplImbalance", "%"
v = driver.MeasureOfdmCarrierSuppression : Row "MeasureOfdmCarrierSuppression", "dB"
v = driver.MeasureOfdmCarrierSuppressionPhase : Row "MeasureOfdmCarrierSuppressionPhase", "deg"
v = driver.MeasureOfdmAverage : Row "MeasureOfdmAverage", ""
v = driver.MeasureOfdmStartCarrier : Row "MeasureOfdmStartCarrier", ""
v = driver.MeasureOfdmStopCarrier : Row "MeasureOfdmStopCarrier", ""

Family "Spectrum"
driver.MeasureMode = tarnSP_1
v = driver.MeasureFdSpectrumShoulderLower : Row "MeasureFdSpectrumShoulderLower", "dB"
v = driver.MeasureFdSpectrumShoulderUpper : Row "MeasureFdSpectrumShoulderUpper", "dB"
v = driver.MeasureFdSpectrumStartFreq : Row "MeasureFdSpectrumStartFreq", "Hz"
v = driver.MeasureFdSpectrumStopFreq : Row "MeasureFdSpectrumStopFreq", "Hz"
v = driver.MeasureFdSpectrumDetector : Row "MeasureFdSpectrumDetector", ""
v = driver.MeasureFdSpectrumAverage : Row "MeasureFdSpectrumAverage", ""
v = driver.MeasureFdSpectrumAverageCount : Row "MeasureFdSpectrumAverageCount", ""

Family "Crest factor"
driver.MeasureMode = tarnCCDF
v = driver.MeasureTdCcdfCrestFactorMargin : Row "MeasureTdCcdfCrestFactorMargin", "dB"
v = driver.MeasureTdCcdfCrestFactorMax : Row "MeasureTdCcdfCrestFactorMax", "dB"
v = driver.MeasureTdCcdfCrestFactorCurrent : Row "MeasureTdCcdfCrestFactorCurrent", "dB"
v = driver.MeasureTdCrestFactorAqu : Row "MeasureTdCrestFactorAqu", ""

Family "Channel"
driver.MeasureMode = tarnAPH
v = driver.MeasureFdAmplitudeResponse : Row "MeasureFdAmplitudeResponse", "dB"
v = driver.MeasureFdPhaseResponse : Row "MeasureFdPhaseResponse", "deg"
driver.MeasureMode = tarnAGD
v = driver.MeasureFdGroupDelayResponse : Row "MeasureFdGroupDelayResponse", "ns"
driver.MeasureMode = tarnIR_1
driver.MeasureTdImpulseResponse
For i = 1 To 25
    v = driver.ImpulseResponseAtten(i) : Row "ImpulseResponseAtten(" & i & ")", "dB"
    v = driver.ImpulseResponseDelay(i) : Row "ImpulseResponseDelay(" & i & ")", "us"
Next

Family "Alarm statistics"
Set statistics = driver.AlarmStatistics
v = statistics.MonitoringTime * 24 * 3600 : Row "MonitoringTime", "s"
v = statistics.Level * 24 * 3600 : Row "Level", "s"
v = statistics.Synchronisation * 24 * 3600 : Row "Synchronisation", "s"
v = statistics.ModErrorRatio * 24 * 3600 : Row "ModErrorRatio", "s"
v = statistics.BerBeforeVit * 24 * 3600 : Row "BerBeforeVit", "s"
v = statistics.BerBeforeRs * 24 * 3600 : Row "BerBeforeRs", "s"
v = statistics.BerAfterRs * 24 * 3600 : Row "BerAfterRs", "s"
v = statistics.MpegDataErrorTime * 24 * 3600 : Row "MpegDataErrorTime", "s"
v = statistics.CorrCntBeforeVit : Row "CorrCntBeforeVit", "errors"
v = statistics.CorrCntBeforeRs : Row "CorrCntBeforeRs", "errors"
v = statistics.MpegDataErrorCntAfterRs : Row "MpegDataErrorCntAfterRs", "errors"

setup.OnLine = False
WScript.Echo ""
WScript.Echo rows & " values, " & errors & " errors"

' ---- Helpers ----

Sub Family(title)
    WScript.Echo ""
    WScript.Echo title
End Sub

' One line: the value that was just read, or the error that reading left.
Sub Row(name, unit)
    Dim text, remark
    remark = ""
    If Err.Number <> 0 Then
        errors = errors + 1
        text = Err.Description & " (" & Hex(Err.Number) & ")"
        Err.Clear
    Else
        rows = rows + 1
        text = Right(Space(24) & v, 24) & " " & Left(unit & Space(8), 8)
        If Len(v) > 24 Then text = v
        If driver.Prefix <> "" And driver.Prefix <> "---" Then remark = "prefix " & driver.Prefix & " "
        If driver.Postfix <> "" And driver.Prefix <> "---" Then remark = remark & "postfix " & driver.Postfix
    End If
    WScript.Echo RTrim("  " & Left(name & Space(36), 36) & text & remark)
    v = Empty
End Sub

Function Argument(name, default)
    Dim i, text
    Argument = default
    For i = 0 To WScript.Arguments.Count - 1
        text = WScript.Arguments.Item(i)
        If LCase(Left(text, Len(name) + 2)) = "/" & name & ":" Then Argument = Mid(text, Len(name) + 3)
    Next
End Function

Function HasSwitch(name)
    Dim i
    HasSwitch = False
    For i = 0 To WScript.Arguments.Count - 1
        If LCase(WScript.Arguments.Item(i)) = "/" & name Then HasSwitch = True
    Next
End Function
