' Every member that a script can write, read back; every kind of member; the irregular ones by their irregularity.
On Error Resume Next
Dim driver, statistics, second, i, low, high, screen, text

' Saves a byte array and gives its size: not every script engine can look into one.
Function SizeOf(bytes)
    Dim path
    path = Argument("work") & "\screen.pcx"
    host.SaveBytes path, bytes
    SizeOf = CreateObject("Scripting.FileSystemObject").GetFile(path).Size
End Function

Set driver = OnLineDriver()
CheckNoError "on-line"

' ---- Setup settings ----
driver.MeasureCdAddNoise = 1
Check "MeasureCdAddNoise", driver.MeasureCdAddNoise, 1
driver.MeasureCdAddNoiseCn = 12.5
Check "MeasureNoiseGenerator", driver.MeasureNoiseGenerator, 12.5
driver.MeasureNoiseGenerator = 56.01
CheckError "C/N too high", &H8004017C, "clsTarn4x.MeasureCdAddNoiseCn", "Invalid property value (MeasureCdAddNoiseCn = 56.01)"
driver.MeasureCdAddNoise = 0
driver.MeasureCdSymbolCount = 99999
Check "MeasureCdSymbolCount", driver.MeasureCdSymbolCount, 99999
driver.SpecFuncLoopBandwidth = 2
Check "SpecFuncLoopBandwidth", driver.SpecFuncLoopBandwidth, 2
driver.SpecFuncMinBerIntegration = 100
Check "SpecFuncMinBerIntegration", driver.SpecFuncMinBerIntegration, 100
driver.StatusSawFilterBW = 7
Check "StatusSawFilterBW", driver.StatusSawFilterBW, 7
driver.StatusSawFilterBW = 5
CheckError "no such filter", &H8004017C, "clsTarn4x.StatusSawFilterBW", "Invalid property value (Filter Bandwidth = 5)"
driver.StatusSawFilterBW = 8
driver.StatusChannelBW = 8
Check "StatusChannelBW", driver.StatusChannelBW, 8
driver.Setup10MhzRef = 2
CheckError "no such reference", &H8004017C, "clsTarn4x.Setup10MhzRef", "Invalid Property Value"
driver.Setup10MhzRef = 0
Check "Setup10MhzRef", driver.Setup10MhzRef, 0
Check "ReferenceLocked", driver.ReferenceLocked, True
Check "StateSignal", driver.StateSignal, True
driver.SetupLevelUnit = 3
low = driver.MeasureRfLevel
driver.SetupLevelUnit = 4
CheckClose "the level in dBuV is 108.75 above that in dBm at 75 ohm, 107 at 50 ohm", driver.MeasureRfLevel - low, 107.9, 1.5
driver.SetupLevelUnit = 3
driver.SetupTime = TimeSerial(9, 5, 7)
Check "SetupTime", TypeName(driver.SetupTime), "Date"
CheckClose "SetupTime", CDbl(driver.SetupTime), CDbl(TimeSerial(9, 5, 7)), 0.001
driver.SetupDate = DateSerial(2026, 3, 15)
Check "SetupDate", driver.SetupDate, DateSerial(2026, 3, 15)

' ---- Input stage ----
driver.InputPort = 3
CheckError "no such port", &H8004017C, "clsTarn4x.InputPort", "Invalid Property Value (InputPort = 3)"
driver.InputPort = 2
Check "InputPort", driver.InputPort, 2
driver.InputAttenuation = 20
Check "InputAttenuation", driver.InputAttenuation_Receiver, 20
Check "InputAttenuationValue", driver.InputAttenuationValue, 20
driver.InputAttenuation_Receiver = 255
Check "automatic attenuation", driver.InputAttenuation, 255
driver.InputAttenuationMode_Receiver = 3
Check "InputAttenuationMode_Receiver", driver.InputAttenuationMode_Receiver, 3
i = driver.InputAttenuation_Demod
CheckError "demodulator attenuation on the receiver port", &H800407E2, "clsTarn4x.InputAttenuation_Demod", "Wrong input port selected"
driver.InputPort = 4
driver.InputAttenuation_Demod = 4
Check "InputAttenuation_Demod", driver.InputAttenuation_Demod, 4
Check "InputAttenuationValue_Demod", driver.InputAttenuationValue_Demod, 2
driver.InputPort = 2

' ---- OFDM parameters, a parametrised property among them ----
driver.StatusOfdmCodeRateMode = 0
i = driver.StatusOfdmAlpha
CheckError "automatic code rate mode", &H800407E9, "clsTarn4x.StatusOfdmAlpha", "Code rate mode does not support operation"
driver.StatusOfdmCodeRateMode = 1
driver.StatusOfdmCodeRate(0) = 2
Check "StatusOfdmCodeRate(low)", driver.StatusOfdmCodeRate(0), 2
driver.StatusOfdmCodeRate(1) = 3
Check "StatusOfdmCodeRate 5/6 reads as 1/2", driver.StatusOfdmCodeRate(1), 0
i = driver.StatusOfdmCodeRate(2)
CheckError "no such priority", &H8004017C, "clsTarn4x.StatusOfdmCodeRate", "udtPriority value out of range"
driver.StatusOfdmFftMode = 0
Check "StatusOfdmFftMode", driver.StatusOfdmFftMode, 0
driver.StatusOfdmGuardInterval = 16
Check "StatusOfdmGuardInterval", driver.StatusOfdmGuardInterval, 16
driver.StatusOfdmOrderOfQam = 16
Check "StatusOfdmOrderOfQam", driver.StatusOfdmOrderOfQam, 16
driver.StatusOfdmAlpha = 2
Check "StatusOfdmAlpha", driver.StatusOfdmAlpha, 2
driver.StatusMpegDataOutput = 0
Check "StatusMpegDataOutput", driver.StatusMpegDataOutput, 0
driver.SpecFuncSystOptims = 1
Check "SpecFuncSystOptims", driver.SpecFuncSystOptims, 1
driver.InputAttenHighAdjChanPower = 1
Check "InputAttenHighAdjChanPower", driver.InputAttenHighAdjChanPower, 1
driver.Reset
driver.StatusOfdmCodeRateMode = 0

' ---- What the signal says of itself, and the texts for it ----
Check "MeasureFftModeTps", driver.FormatFftMode(driver.MeasureFftModeTps), "8K"
Check "MeasureGuardIntervalTps", driver.FormatGuardInterval(driver.MeasureGuardIntervalTps), "'1/8'"
Check "MeasureOrderOfQamTps", driver.FormatOrderOfQam(driver.MeasureOrderOfQamTps), "64QAM"
Check "MeasureAlphaTps", driver.FormatAlpha(driver.MeasureAlphaTps), "non-hierarchical"
Check "MeasureCodeRateTps", driver.FormatCodeRate(driver.MeasureCodeRateTps), "'2/3'"
CheckClose "ValueCodeRate", driver.ValueCodeRate(driver.MeasureCodeRate), 2 / 3, 1E-15
Check "no text for the unknown", driver.FormatFftMode(-1), ""
Check "... and the prefix says so", driver.Prefix, "---"

' ---- Noise lowers the MER and raises the bit error ratio ----
driver.MeasureMode = 18
high = driver.MeasureOfdmMerRmsDb
i = driver.MeasureBerBeforeVit
driver.MeasureCdAddNoiseCn = 20
driver.MeasureCdAddNoise = 1
CheckTrue "noise lowers the MER", driver.MeasureOfdmMerRmsDb < high - 3
CheckTrue "noise raises the BER", driver.MeasureBerBeforeVit > i
driver.MeasureCdAddNoise = 0

' ---- Carriers, spectrum, channel ----
driver.MeasureOfdmCarrierRange 100, 200
Check "MeasureOfdmStartCarrier", driver.MeasureOfdmStartCarrier, 100
driver.MeasureOfdmStopCarrier = 6816
Check "MeasureOfdmStopCarrier", driver.MeasureOfdmStopCarrier, 6816
driver.MeasureOfdmStopCarrier = 6817
CheckError "carrier too high", &H8004017C, "clsTarn4x.MeasureOfdmStopCarrier", "MeasureOfdmStopCarrier value out of range"
driver.MeasureMode = 9
driver.MeasureFdSpectrumStartFreq = -2000000
Check "MeasureFdSpectrumStartFreq", driver.MeasureFdSpectrumStartFreq, -2000000.0
driver.MeasureFdSpectrumStopFreq = -1000000
CheckError "span too narrow", &H8004017C, "clsTarn4x.MeasureFdSpectrumStopFreq", "MeasureFdSpectrumStopFreq value out of range"
driver.MeasureFdSpectrumDetector = 2
Check "MeasureFdSpectrumDetector", driver.MeasureFdSpectrumDetector, 2
driver.MeasureFdSpectrumAverageCount = 7
Check "MeasureFdSpectrumAverageCount", driver.MeasureFdSpectrumAverageCount, 7
CheckTrue "MeasureFdSpectrumAverage", driver.MeasureFdSpectrumAverage >= 0
i = driver.MeasureFdPhaseResponse
CheckError "phase in the spectrum", &H800407E0, "clsTarn4x.MeasureFdPhaseResponse", "Wrong measurement mode selected"
driver.MeasureMode = 6
CheckClose "phase response", driver.MeasureFdPhaseResponse, 0, 360
driver.MeasureMode = 14
Check "first echo", driver.ImpulseResponseAtten(1), 0.0
CheckTrue "second echo", driver.ImpulseResponseDelay(2) > 0
i = driver.ImpulseResponseAtten(26)
CheckError "no such echo", &H800407D4, "clsTarn4x.ImpulseResponseAtten", "Get ImpulseResponseAtten: index value out of range"

' ---- Screen, statistics ----
driver.MeasureMode = 1
Check "ScreenShot", driver.ScreenShot(3, screen), True
CheckTrue "screen", IsArray(screen) And VarType(screen) = 8192 + 17
low = SizeOf(screen)
Check "screen with header", driver.ScreenShot(2 + 4, screen), True
Check "header in front of the image", SizeOf(screen) - low, 2 + Len(CStr(low))
Err.Clear
driver.AlarmRegisterClear
CheckNoError "AlarmRegisterClear"
Set statistics = driver.AlarmStatistics
Check "statistics", TypeName(statistics.MonitoringTime), "Date"
Check "BerAfterRs", CDbl(statistics.BerAfterRs), 0.0
statistics.Statistics = "1:30:00,0,-,0,-,0,-,0,-,0,-,0,-,1,---,3"
Check "a report of one's own", CDbl(statistics.MonitoringTime), 0.0625
Check "a count", statistics.MpegDataErrorCntAfterRs, 3.0
statistics.Statistics = "1:00:00,0,-"
CheckTrue "a short report", Err.Number = 9
Err.Clear
Set second = driver.AlarmStatistics
CheckTrue "an object of its own", second.Statistics <> statistics.Statistics

Finish 72
