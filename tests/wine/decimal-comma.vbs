' A user whose regional format has a decimal comma: texts follow it, the instrument and the driver's own texts do not.
On Error Resume Next
Dim driver, log, i, sent, statistics

Set driver = OnLineDriver()
Set log = CreateObject("Seamlib.clsMessageLog")
Check "the user's format", CStr(1.5), "1,5"
log.Clear
driver.RF = "474000000,25"
CheckNoError "RF from text"
Check "RF", driver.RF, 474000000.3
driver.MeasureCdAddNoiseCn = 12.5
Check "C/N", driver.MeasureCdAddNoiseCn, 12.5
driver.MeasureCdAddNoiseCn = "1,99"
CheckError "C/N from text", &H8004017C, "clsTarn4x.MeasureCdAddNoiseCn", "Invalid property value (MeasureCdAddNoiseCn = 1.99)"
driver.RF = 2999999.9
CheckError "RF too low", &H8004017C, "clsTarn4x.RF", "Invalid property value (RF = 2999999.9 Hz)"
For i = 1 To log.Count
    sent = sent & log.Entry(i)
Next
CheckTrue "RF is sent with a point", InStr(sent, "SENS:FREQ:CENT  474000000.3") > 0
CheckTrue "C/N is sent with a point", InStr(sent, "SENS:DVBT:NOISE 12.5") > 0
Set statistics = driver.AlarmStatistics
statistics.Statistics = "1:30:00,0,-,0,-,0,-,0,-,0,-,0,-,1.500,---,3"
Check "a point separates thousands in a count", statistics.CorrCntBeforeVit, 1500.0

Finish 9
