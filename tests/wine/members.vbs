' What a script finds in the members beside numbers: dates, texts, arrays, objects; and a user who asks to stop.
On Error Resume Next
Dim driver, second, statistics, screen, size

' Saves a byte array and gives its size: not every script engine can look into one.
Function SizeOf(bytes)
    Dim path
    path = Argument("work") & "\screen.pcx"
    host.SaveBytes path, bytes
    SizeOf = CreateObject("Scripting.FileSystemObject").GetFile(path).Size
End Function

Set driver = OnLineDriver()
driver.RF = "474000000"
Check "a number from text", driver.RF, 474000000.0
driver.RF = "soon"
CheckTrue "a number from a word is a type mismatch", Err.Number = 13
Err.Clear
Check "default member", driver + 0, 474000000.0
driver.RF = 2999999.9
CheckError "RF too low", &H8004017C, "clsTarn4x.RF", "Invalid property value (RF = 2999999.9 Hz)"
driver.SetupTime = TimeSerial(9, 5, 7)
Check "SetupTime", TypeName(driver.SetupTime), "Date"
CheckTrue "SetupTime", Abs(driver.SetupTime - TimeSerial(9, 5, 7)) < 0.001
driver.SetupDate = DateSerial(2026, 3, 15)
Check "SetupDate", driver.SetupDate, DateSerial(2026, 3, 15)
driver.StatusOfdmCodeRateMode = 1
driver.StatusOfdmCodeRate(0) = 2
Check "a property with an argument", driver.StatusOfdmCodeRate(0), 2
Check "no text for the unknown", driver.FormatFftMode(-1), ""
Check "... and the prefix says so", driver.Prefix, "---"

driver.MeasureMode = 1
Check "ScreenShot", driver.ScreenShot(3, screen), True
CheckTrue "screen", IsArray(screen) And VarType(screen) = 8192 + 17
size = SizeOf(screen)
Check "screen with header", driver.ScreenShot(2 + 4, screen), True
Check "header in front of the image", SizeOf(screen) - size, 2 + Len(CStr(size))
Err.Clear

Set statistics = driver.AlarmStatistics
statistics.Statistics = "1:30:00,0,-,0,-,0,-,0,-,0,-,0,-,1,---,3"
Check "a report of one's own", TypeName(statistics.MonitoringTime) & CDbl(statistics.MonitoringTime), "Date" & 0.0625
statistics.Statistics = "1:00:00,0,-"
CheckTrue "a short report", Err.Number = 9
Err.Clear
CheckTrue "an object of its own", driver.AlarmStatistics.Statistics <> statistics.Statistics

' A stop request: no mode is checked, nothing is parsed, and the next read is as usual.
driver.MeasureMode = 13
app.AbortRequested = True
Check "crest factor on a stop request", driver.MeasureTdCcdfCrestFactorMax, 0.0
app.AbortRequested = False
CheckTrue "after the stop request", driver.MeasureTdCcdfCrestFactorMax > 0

Set second = OnLineDriver()
second.MeasureMode = 17
Check "a second driver has a state of its own", driver.MeasureMode & " " & second.MeasureMode, "13 17"
CheckNoError "two drivers"

Finish 21
