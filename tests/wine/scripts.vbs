' What only a script engine shows, against the simulated receiver: Set, For Each, the default member, a property with an
' argument, dates, arrays, objects, Err. A script host passes over a statement that fails, so the checks are counted.
Option Explicit
On Error Resume Next

Dim host, driver, setup, settings, i, text, screen, statistics, passedChecks, failedChecks

' The value, its type included; Integer and Long are one.
Sub Check(name, actual, expected)
    Dim got, wanted
    got = Replace(TypeName(actual), "Long", "Integer") & " " & actual
    wanted = Replace(TypeName(expected), "Long", "Integer") & " " & expected
    If got = wanted Then
        passedChecks = passedChecks + 1
    Else
        failedChecks = failedChecks + 1
        WScript.Echo "FAILED " & name & ": got [" & got & "], not [" & wanted & "]"
    End If
End Sub

' The error that the statement before has left; it is taken away.
Sub CheckError(name, number, source, description)
    Dim got
    got = Hex(Err.Number) & " " & Err.Source & ": " & Err.Description
    Err.Clear
    Check name, got, number & " " & source & ": " & description
End Sub

CreateObject("Seamlib.clsApplication").DelayScale = 0
Set host = CreateObject("Seamlib.clsHost")
For Each i In host.Drivers
    text = text & i & ": " & host.Describe(i)
Next
Check "drivers", text, "XTarn4x: Tarn4x"
Set statistics = CreateObject("XTarn4x.clsStatistics")
Check "clients cannot create the statistics", Err.Number <> 0, True
Err.Clear
Set driver = host.CreateDriver("XTarn4x")
Set setup = host.Setup(driver)
Set settings = setup.Settings
text = ""
For Each i In settings
    text = text & i.Name & "|"
Next
Check "settings", text, "General|Type|Manufacturer|Model Number|Serial Number|Options|Remote Control|" & _
    "Log Messages|GPIB|RS232|TCP/IP|GUI|"
Check "the serial port that opens", settings("RS232")("Comm Port").ValueList, "COM1=1"
Set i = settings("No Such Setting")
Check "a missing setting", Err.Number & Err.Source, "9Seamcfg.clsNode"
Err.Clear
text = driver.MeasureRfLevel
CheckError "off-line", "800407D4", "clsTarn4x.MeasureRfLevel", "Get MeasureRfLevel failed"

settings("TCP/IP.Port").Value = WScript.Arguments(0)
For Each i In Array("GUI", "RS232", "TCP/IP")
    settings("Remote Control").Value = i
    setup.OnLine = True
    Check i & " is on-line", setup.OnLine & (Left(setup.WhyOffLine, 3) = "No "), (i <> "GUI") & (i = "GUI")
    If i = "RS232" Then setup.OnLine = False
Next
CheckError "no link is an error", "0", "", ""
setup.OnLine = True
CheckError "on-line twice", "7D2", "clsTarn4x.OnLine", "Driver already on-line"
driver.RF = "474000000"
Check "default member", driver + 0, 474000000.0
driver.RF = 2999999.9
CheckError "RF too low", "8004017C", "clsTarn4x.RF", "Invalid property value (RF = 2999999.9 Hz)"
driver.RF = "soon"
Check "a word is no number", Err.Number, 13
Err.Clear
driver.SetupDate = DateSerial(2026, 3, 15)
Check "a date", driver.SetupDate, DateSerial(2026, 3, 15)
driver.StatusOfdmCodeRateMode = 1
driver.StatusOfdmCodeRate(0) = 2
Check "a property with an argument", driver.StatusOfdmCodeRate(0), 2
Check "a Boolean", driver.ScreenShot(3, screen), True
Check "an array", VarType(screen), 8192 + 17
host.SaveBytes WScript.Arguments(1), screen
Check "its bytes", CreateObject("Scripting.FileSystemObject").GetFile(WScript.Arguments(1)).Size > 1000, True
Set statistics = driver.AlarmStatistics
statistics.Statistics = "1:30:00,0,-,0,-,0,-,0,-,0,-,0,-,1,---,3"
Check "an object", TypeName(statistics.MonitoringTime) & CDbl(statistics.MonitoringTime), "Date" & 0.0625
CheckError "all of that", "0", "", ""

If passedChecks + failedChecks <> 21 Then failedChecks = failedChecks + 1
WScript.Echo passedChecks & " passed, " & CLng(failedChecks) & " failed"
