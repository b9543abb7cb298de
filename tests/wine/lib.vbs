' What the script tests share; it stands in front of each of them. A test calls Finish with the number of its checks, so
' that a check that was never reached counts as a failure: a script host passes over a statement that fails.
Option Explicit

Dim passedChecks, failedChecks
passedChecks = 0
failedChecks = 0

Sub Verdict(name, good, detail)
    If Argument("verbose") <> "" Then WScript.Echo "check " & name
    If good Then
        passedChecks = passedChecks + 1
    Else
        failedChecks = failedChecks + 1
        WScript.Echo "FAILED " & name & ": " & detail
    End If
End Sub

' The value, its type included; Integer and Long are one.
Sub Check(name, actual, expected)
    Dim same
    same = Replace(TypeName(actual), "Long", "Integer") = Replace(TypeName(expected), "Long", "Integer")
    If same Then same = (actual = expected)
    Verdict name, same, "got " & TypeName(actual) & " [" & actual & "], not " & TypeName(expected) & " [" & expected & "]"
End Sub

Sub CheckTrue(name, condition)
    Verdict name, condition, "is not so"
End Sub

' The error that the statement before has left; it is taken away.
Sub CheckError(name, number, source, description)
    Verdict name, Err.Number = number And Err.Source = source And Err.Description = description, _
        "got " & Err.Number & " [" & Err.Source & "] [" & Err.Description & "]"
    Err.Clear
End Sub

Sub CheckNoError(name)
    CheckError name, 0, "", ""
End Sub

Sub Finish(planned)
    If passedChecks + failedChecks <> planned Then
        failedChecks = failedChecks + 1
        WScript.Echo "FAILED: " & passedChecks + failedChecks - 1 & " checks were reached, not " & planned
    End If
    WScript.Echo passedChecks & " passed, " & failedChecks & " failed"
End Sub

Function Argument(name)
    Dim i, text
    Argument = ""
    For i = 0 To WScript.Arguments.Count - 1
        text = WScript.Arguments.Item(i)
        If LCase(Left(text, Len(name) + 2)) = "/" & name & ":" Then Argument = Mid(text, Len(name) + 3)
    Next
End Function

Dim app, host
Set app = CreateObject("Seamlib.clsApplication")
Set host = CreateObject("Seamlib.clsHost")
app.DelayScale = 0

' A driver whose link is the simulated receiver over TCP/IP.
Function NewDriver()
    Dim settings
    Set NewDriver = host.CreateDriver("XTarn4x")
    Set settings = host.Setup(NewDriver).Settings
    settings("Remote Control").Value = "TCP/IP"
    settings("TCP/IP.Host").Value = "127.0.0.1"
    settings("TCP/IP.Port").Value = Argument("port")
End Function

Function OnLineDriver()
    Set OnLineDriver = NewDriver()
    host.Setup(OnLineDriver).OnLine = True
End Function
