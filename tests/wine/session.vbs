' Going on-line and off-line, and what goes wrong on the way.
On Error Resume Next
Dim driver, setup, settings, log, i, text, sent

' The third of kind, source, text and data.
Function TextOf(entry)
    Dim pieces
    pieces = Split(entry, Chr(9))
    TextOf = pieces(2)
End Function

Set driver = NewDriver()
Set setup = host.Setup(driver)
Set settings = setup.Settings
Set log = CreateObject("Seamlib.clsMessageLog")

Check "off-line at first", setup.OnLine, False
setup.OnLine = False
CheckError "off-line already", 2003, "clsTarn4x.OnLine", "Driver already off-line"
text = driver.MeasureRfLevel
CheckError "a read off-line", &H800407D4, "clsTarn4x.MeasureRfLevel", "Get MeasureRfLevel failed"
driver.Reset
CheckError "a method off-line", &H800407D5, "clsTarn4x.Reset", "Reset failed"
driver.RF = 474000000
CheckError "a write off-line", &H800407D5, "clsTarn4x.RF", "Let RF failed"

' An unknown transport is the creation error itself; a link that cannot be opened is no error at all.
settings("Remote Control").Value = "No.Such"
setup.OnLine = True
CheckTrue "unknown transport", Err.Number <> 0
Err.Clear
Check "still off-line", setup.OnLine, False
For Each text In Array("GPIB", "GUI")
    settings("Remote Control").Value = text
    log.Clear
    setup.OnLine = True
    CheckNoError text & " cannot be opened"
    Check text & " stays off-line", setup.OnLine, False
    CheckTrue text & " says why in the log", log.Count > 0
Next
settings("Remote Control").Value = "TCP/IP"
settings("TCP/IP.Port").Value = 1
setup.OnLine = True
CheckNoError "closed port"
Check "closed port stays off-line", setup.OnLine, False
settings("TCP/IP.Port").Value = Argument("port")

log.Clear
setup.OnLine = True
CheckNoError "on-line"
Check "on-line", setup.OnLine, True
sent = ""
For i = 1 To log.Count
    If Left(log.Entry(i), 7) = "6" & Chr(9) & "TARN" & Chr(9) Then sent = sent & TextOf(log.Entry(i)) & "|"
Next
Check "first commands", sent, "SYST:ERR?|*CLS;*SRE 0;*ESE 0|SYST:ERR?|SYST:REM|"
setup.OnLine = True
CheckError "on-line already", 2002, "clsTarn4x.OnLine", "Driver already on-line"
Check "still on-line", setup.OnLine, True
driver.Reset
CheckNoError "reset"
log.Clear
setup.OnLine = False
CheckNoError "off-line"
Check "off-line", setup.OnLine, False
Check "last command", TextOf(log.Entry(3)), "SYST:LOC"

' The same instrument over the serial line.
settings("Remote Control").Value = "RS232"
setup.OnLine = True
Check "on-line over the serial line", setup.OnLine, True
driver.MeasureMode = 18
Check "measure mode over the serial line", driver.MeasureMode, 18
CheckTrue "a measurement over the serial line", driver.MeasureOfdmMerRmsDb > 20
setup.OnLine = False
CheckNoError "off-line again"

Finish 28
