' Finds the driver, takes it on-line over TCP/IP and prints what the receiver measures.
'
'   cscript //nologo first-measurement.vbs [/host:127.0.0.1] [/port:5025] [/simulated]
'
' /simulated   the receiver is tarn4x-sim: the waits that a real instrument needs are left out
Option Explicit

' The values of the type library; a script has to write them down.
Const tarnDVBT = 13
Const tarnNORM = 0, tarnSP_1 = 9, tarnCCDF = 13, tarnPAR = 18

Dim host, driver, setup, settings, app

Set app = CreateObject("Seamlib.clsApplication")
If HasSwitch("simulated") Then app.DelayScale = 0

' ---- Find the driver and create it ----
Set host = CreateObject("Seamlib.clsHost")
Set driver = host.CreateDriver("XTarn4x")
PrintLine "Driver", host.Describe("XTarn4x"), ""

' ---- Say how to reach the instrument, and go on-line ----
Set setup = host.Setup(driver)
setup.Name = "First measurement"
Set settings = setup.Settings
settings("Remote Control").Value = "TCP/IP"
settings("TCP/IP.Host").Value = Argument("host", "127.0.0.1")
settings("TCP/IP.Port").Value = Argument("port", "5025")
setup.OnLine = True
If Not setup.OnLine Then
    WScript.Echo "The receiver does not answer: " & setup.WhyOffLine
    WScript.Quit 1
End If

' ---- Who is there ----
PrintLine "Instrument", driver.Manufacturer & " " & driver.ModelNumber, ""
PrintLine "Serial number", driver.SerialNumber, ""
PrintLine "Firmware", driver.FirmwareVersion, ""
PrintLine "Options", driver.InstalledHardware, ""

' ---- Tune to channel 21 ----
driver.Mode = tarnDVBT
driver.RF = 474000000
PrintLine "Mode", driver.Mode, ""
PrintLine "RF", driver.RF, "Hz"

' ---- Measure. Some results exist only in certain measure modes. ----
driver.MeasureMode = tarnNORM
PrintLine "Measure mode", driver.MeasureMode, ""
Measured "RF level", driver.MeasureRfLevel, "dBm"
Measured "Frequency offset", driver.MeasureFrequencyOffset, "Hz"
Measured "TS bit rate", driver.MeasureTsBitrate, "Mbit/s"
Measured "TS bit rate offset", driver.MeasureBitrateOffset, "ppm"
Measured "Receiver out of lock", driver.MeasureCarrierLoopOutOfLock, ""
Measured "TS not synchronised", driver.MeasureMpegTsUnSync, ""
driver.MeasureResetBer
Measured "BER before Viterbi", driver.MeasureBerBeforeVit, ""
Measured "BER before Reed-Solomon", driver.MeasureBerBeforeRS, ""
Measured "BER after Reed-Solomon", driver.MeasureBerAfterRS, ""

driver.MeasureMode = tarnPAR
PrintLine "Measure mode", driver.MeasureMode, ""
Measured "MER (rms)", driver.MeasureOfdmMerRmsDb, "dB"
Measured "MER (rms)", driver.MeasureOfdmMerRmsPct, "%"
Measured "MER (peak)", driver.MeasureOfdmMerPeakPct, "%"
Measured "Signal-to-noise ratio", driver.MeasureOfdmSignalToNoiseRatio, "dB"
Measured "Phase jitter", driver.MeasureOfdmPhaseJitter, "deg"
Measured "IQ quadrature error", driver.MeasureOfdmIqPhaseError, "deg"
Measured "IQ amplitude imbalance", driver.MeasureOfdmIqAmplImbalance, "%"
Measured "Carrier suppression", driver.MeasureOfdmCarrierSuppression, "dB"
Measured "Residual carrier phase", driver.MeasureOfdmCarrierSuppressionPhase, "deg"

driver.MeasureMode = tarnSP_1
PrintLine "Measure mode", driver.MeasureMode, ""
Measured "Lower shoulder", driver.MeasureFdSpectrumShoulderLower, "dB"
Measured "Upper shoulder", driver.MeasureFdSpectrumShoulderUpper, "dB"

driver.MeasureMode = tarnCCDF
PrintLine "Measure mode", driver.MeasureMode, ""
Measured "Crest factor, margin", driver.MeasureTdCcdfCrestFactorMargin, "dB"
Measured "Crest factor, largest", driver.MeasureTdCcdfCrestFactorMax, "dB"
Measured "Crest factor, present", driver.MeasureTdCcdfCrestFactorCurrent, "dB"

setup.OnLine = False

' ---- Helpers ----

Sub PrintLine(name, value, unit)
    If Len(value) < 22 Then value = Right(Space(22) & value, 22)
    WScript.Echo RTrim(Left(name & Space(26), 26) & value & " " & unit)
End Sub

' A result with the receiver's remarks about it: the prefix "<" says that the true value is below, the postfix
' "(10/100)" how far a count has come, and the prefix "---" that there is no value.
Sub Measured(name, value, unit)
    Dim remark
    If driver.Prefix = "---" Then value = "---"
    remark = unit
    If driver.Prefix <> "" Then remark = Left(unit & Space(8), 8) & "prefix " & driver.Prefix & " "
    If driver.Postfix <> "" Then remark = Left(remark & Space(8), 8) & "postfix " & driver.Postfix
    PrintLine name, value, remark
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
