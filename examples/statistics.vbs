' Watches the receiver for a while and prints its alarm statistics.
'
'   cscript //nologo statistics.vbs [/host:127.0.0.1] [/port:5025] [/seconds:10] [/simulated]
'
' /simulated   the receiver is tarn4x-sim: the waits that a real instrument needs are left out
Option Explicit

Dim app, host, driver, setup, settings, statistics

Set app = CreateObject("Seamlib.clsApplication")
If HasSwitch("simulated") Then app.DelayScale = 0
Set host = CreateObject("Seamlib.clsHost")
Set driver = host.CreateDriver("XTarn4x")
Set setup = host.Setup(driver)
setup.Name = "Statistics"
Set settings = setup.Settings
settings("Remote Control").Value = "TCP/IP"
settings("TCP/IP.Host").Value = Argument("host", "127.0.0.1")
settings("TCP/IP.Port").Value = Argument("port", "5025")
setup.OnLine = True
If Not setup.OnLine Then
    WScript.Echo "The receiver does not answer: " & setup.WhyOffLine
    WScript.Quit 1
End If

driver.AlarmRegisterClear
app.DelayScale = 1
app.Delay Argument("seconds", 10)

' Every read of AlarmStatistics is a new object with the values of that moment. Durations are in days.
Set statistics = driver.AlarmStatistics
PrintDuration "Monitored for", statistics.MonitoringTime
PrintDuration "Level out of range", statistics.Level
PrintDuration "Not synchronised", statistics.Synchronisation
PrintDuration "MER too low", statistics.ModErrorRatio
PrintDuration "BER before Viterbi too high", statistics.BerBeforeVit
PrintDuration "BER before Reed-Solomon too high", statistics.BerBeforeRs
PrintDuration "MPEG data errors", statistics.MpegDataErrorTime
WScript.Echo Left("Corrected by Viterbi" & Space(34), 34) & statistics.CorrCntBeforeVit & " bits"
WScript.Echo Left("Corrected by Reed-Solomon" & Space(34), 34) & statistics.CorrCntBeforeRs & " bits"
WScript.Echo Left("MPEG data errors" & Space(34), 34) & statistics.MpegDataErrorCntAfterRs

setup.OnLine = False

' ---- Helpers ----

Sub PrintDuration(name, days)
    WScript.Echo Left(name & Space(34), 34) & CLng(days * 24 * 3600) & " s"
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
