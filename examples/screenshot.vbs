' Saves the screen of the receiver as a PCX image.
'
'   cscript //nologo screenshot.vbs [/file:screen.pcx] [/host:127.0.0.1] [/port:5025] [/mode:1] [/simulated]
'
' /mode        the measure mode to show: 1 constellation, 9 spectrum, 14 impulse response, 18 parameters ...
' /simulated   the receiver is tarn4x-sim: the waits that a real instrument needs are left out
Option Explicit

Const tarnCapture = 1, tarnTransfer = 2

Dim app, host, driver, setup, settings, screen

Set app = CreateObject("Seamlib.clsApplication")
If HasSwitch("simulated") Then app.DelayScale = 0
Set host = CreateObject("Seamlib.clsHost")
Set driver = host.CreateDriver("XTarn4x")
Set setup = host.Setup(driver)
setup.Name = "Screenshot"
Set settings = setup.Settings
settings("Remote Control").Value = "TCP/IP"
settings("TCP/IP.Host").Value = Argument("host", "127.0.0.1")
settings("TCP/IP.Port").Value = Argument("port", "5025")
setup.OnLine = True
If Not setup.OnLine Then
    WScript.Echo "The receiver does not answer: " & setup.WhyOffLine
    WScript.Quit 1
End If

driver.MeasureMode = CLng(Argument("mode", 1))
If driver.ScreenShot(tarnCapture + tarnTransfer, screen) Then
    host.SaveBytes Argument("file", "screen.pcx"), screen
    WScript.Echo "Saved as " & Argument("file", "screen.pcx")
Else
    WScript.Echo "The receiver refused to capture its screen."
End If

setup.OnLine = False

' ---- Helpers ----

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
