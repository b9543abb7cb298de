' A script's way to the driver, its settings and its instrument, and what goes wrong on the way.
On Error Resume Next
Dim driver, setup, settings, log, i, text, node

' What was sent, of the log's kind, source, text and data.
Function Sent()
    Dim entry
    Sent = ""
    For i = 1 To log.Count
        entry = Split(log.Entry(i), Chr(9))
        If entry(0) & entry(1) = "6TARN" Then Sent = Sent & entry(2) & "|"
    Next
    log.Clear
End Function

text = ""
For Each i In host.Drivers
    text = text & i & ": " & host.Describe(i)
Next
Check "registered drivers", text, "XTarn4x: Tarn4x"
Set node = CreateObject("XTarn4x.clsStatistics")
CheckTrue "clients cannot create the statistics", Err.Number <> 0
Err.Clear

Set driver = NewDriver()
Set setup = host.Setup(driver)
Set settings = setup.Settings
Set log = CreateObject("Seamlib.clsMessageLog")
text = ""
For Each node In settings
    text = text & node.Name & "|"
Next
Check "settings and subtrees", text, "General|Type|Manufacturer|Model Number|Serial Number|Options|Remote Control|" & _
    "Log Messages|GPIB|RS232|TCP/IP|GUI|"
Check "fixed", settings("Type").Fixed & settings("Serial Number").Fixed, True & False
Check "default", settings("Log Messages").Value & settings("Log Messages").DisplayValue, "-1Yes"
Check "the only serial port that opens", settings("RS232.Comm Port").ValueList, "COM1=1"
Check "serial port", settings("RS232")("Comm Port").Value, "1"
Set node = settings("No Such Setting")
CheckTrue "a missing setting is an error", Err.Number = 9 And InStr(Err.Description, "No Such Setting") > 0
Err.Clear

' A link that cannot be opened is no error.
settings("TCP/IP.Port").Value = 1
For Each text In Array("GPIB", "GUI", "TCP/IP")
    settings("Remote Control").Value = text
    log.Clear
    setup.OnLine = True
    CheckNoError text & " cannot be opened"
    CheckTrue text & " stays off-line and says why", Not setup.OnLine And InStr(setup.WhyOffLine, "No connection to ") = 1
Next

' The same instrument over the network and over the serial line.
settings("TCP/IP.Port").Value = Argument("port")
For Each text In Array("TCP/IP", "RS232")
    settings("Remote Control").Value = text
    log.Clear
    setup.OnLine = True
    CheckTrue text & " is on-line", setup.OnLine And setup.WhyOffLine = ""
    Check "first commands over " & text, Sent(), "SYST:ERR?|*CLS;*SRE 0;*ESE 0|SYST:ERR?|SYST:REM|"
    CheckTrue "a measurement over " & text, driver.MeasureRfLevel < 0
    log.Clear
    setup.OnLine = False
    CheckNoError text & " is off-line"
    Check "last command over " & text, Sent(), "SYST:ERR?|SYST:LOC|"
Next

Finish 24
