' Mode, measure mode, RF and the measurements on the simulated receiver; refusals with number, source and text.
On Error Resume Next
Const wrongMode = "Wrong measurement mode selected"
Dim driver, value

Set driver = OnLineDriver()
CheckNoError "on-line"

driver.Mode = 13
CheckNoError "Mode = DVB-T"
Check "Mode", driver.Mode, 13
driver.Mode = 0
CheckError "Mode = 0", &H8004017C, "clsTarn4x.Mode", "Invalid property value (Mode = 0)"
driver.Mode = 4
CheckError "Mode = QAM", &H8004017C, "clsTarn4x.Mode", "Invalid property value (Mode = QAM)"

driver.RF = 474000000.25
Check "RF", driver.RF, 474000000.3
driver.RF = 2999999.9
CheckError "RF too low", &H8004017C, "clsTarn4x.RF", "Invalid property value (RF = 2999999.9 Hz)"
driver.RF = "474000000"
Check "RF from text", driver.RF, 474000000.0
driver.RF = "soon"
CheckTrue "RF from a word is a type mismatch", Err.Number = 13
Err.Clear
Check "default member", driver + 0, 474000000.0

driver.MeasureMode = -1
CheckError "no such measure mode", &H8004017C, "clsTarn4x.MeasureMode", "Invalid property value (MeasureMode = -1)"
driver.MeasureMode = 0
Check "measure mode NORM", driver.MeasureMode, 0
CheckClose "frequency offset", driver.MeasureFrequencyOffset, 0, 50000
value = driver.MeasureTdCcdfCrestFactorMargin
CheckError "crest factor in NORM", &H800407E0, "clsTarn4x.MeasureTdCcdfCrestFactorMargin", wrongMode
value = driver.MeasureOfdmIqPhaseError
CheckError "IQ error in NORM", &H800407E0, "clsTarn4x.MeasureOfdmAverage", wrongMode
Check "prefix without a value", driver.Prefix, "---"

CheckTrue "RF level", driver.MeasureRfLevel < 0
Check "prefix", driver.Prefix, ""
CheckTrue "raw answer", InStr(driver.ResponseString, Left(CStr(Int(Abs(driver.MeasureRfLevel))), 2)) > 0
Check "in lock", driver.MeasureCarrierLoopOutOfLock, False
Check "in sync", driver.MeasureMpegTsUnSync, False
CheckTrue "bit rate", driver.MeasureTsBitrate > 4 And driver.MeasureTsBitrate < 32
CheckClose "bit rate offset", driver.MeasureBitrateOffset, 0, 100
driver.MeasureResetBer
CheckNoError "MeasureResetBer"
CheckTrue "bit error ratio", driver.MeasureBerBeforeVit < 0.01 And driver.MeasureBerBeforeVit >= 0
CheckTrue "corrected by Viterbi", driver.MeasureBerBeforeRS < driver.MeasureBerBeforeVit
CheckTrue "corrected by Reed-Solomon", driver.MeasureBerAfterRS <= driver.MeasureBerBeforeVit

driver.MeasureMode = 18
CheckTrue "MER", driver.MeasureOfdmMerRmsDb > 20
' MER in dB and in % are one quantity: % = 100 / 10^(dB / 20).
CheckClose "MER in %", driver.MeasureOfdmMerRmsPct * 10 ^ (driver.MeasureOfdmMerRmsDb / 20), 100, 10
CheckTrue "peak above rms", driver.MeasureOfdmMerPeakPct > driver.MeasureOfdmMerRmsPct
CheckTrue "signal to noise", driver.MeasureOfdmSignalToNoiseRatio > 20
CheckTrue "jitter", driver.MeasureOfdmPhaseJitter >= 0 And driver.MeasureOfdmPhaseJitter < 10
CheckTrue "quadrature error", Abs(driver.MeasureOfdmIqPhaseError) < 10
CheckTrue "imbalance", Abs(driver.MeasureOfdmIqAmplImbalance) < 20
CheckTrue "carrier suppression", driver.MeasureOfdmCarrierSuppression > 0
CheckTrue "its phase", Abs(driver.MeasureOfdmCarrierSuppressionPhase) <= 360
driver.MeasureMode = 17
CheckTrue "MER in HIST", driver.MeasureOfdmMerRmsDb > 20
value = driver.MeasureOfdmMerPeakPct
CheckError "peak in HIST", &H800407E0, "clsTarn4x.MeasureOfdmMerPeakPct", wrongMode
driver.MeasureMode = 10
CheckTrue "lower shoulder", driver.MeasureFdSpectrumShoulderLower > 20
CheckTrue "upper shoulder", driver.MeasureFdSpectrumShoulderUpper > 20
driver.MeasureMode = 13
CheckTrue "crest factors", driver.MeasureTdCcdfCrestFactorMax >= driver.MeasureTdCcdfCrestFactorCurrent
CheckTrue "crest factor margin", driver.MeasureTdCcdfCrestFactorMargin > 0

' A stop request: no mode is checked, nothing is parsed, and the next read is as usual.
app.AbortRequested = True
Check "crest factor on a stop request", driver.MeasureTdCcdfCrestFactorMax, 0.0
Check "lock on a stop request", driver.MeasureCarrierLoopOutOfLock, False
app.AbortRequested = False
CheckTrue "after the stop request", driver.MeasureTdCcdfCrestFactorMax > 0

' Every object has settings and state of its own.
Dim second
Set second = OnLineDriver()
second.MeasureMode = 17
Check "the second driver's mode", second.MeasureMode, 17
Check "the first driver's mode", driver.MeasureMode, 13
CheckTrue "the second driver measures", second.MeasureOfdmMerRmsDb > 20
CheckNoError "two drivers"

Finish 49
