' A link and an instrument that go wrong; faults.sim says how. After each fault the next read is right.
On Error Resume Next
Const queryFailed = &H800407D4, commandFailed = &H800407D5
Const level = "clsTarn4x.MeasureRfLevel"
Dim driver, value

Set driver = OnLineDriver()
CheckNoError "on-line"

Sub CheckRecovered(name)
    On Error Resume Next
    value = 0
    value = driver.MeasureRfLevel
    CheckTrue name & ": the next read is right", Err.Number = 0 And value < 0 And value > -200
    Err.Clear
End Sub

' 1: no answer; the time-out is five seconds
value = driver.MeasureRfLevel
CheckError "silent peer", queryFailed, level, "Get MeasureRfLevel failed"
CheckRecovered "silent peer"
' 2: the peer closes in the middle of an answer; the channel tries again
CheckTrue "closed in an answer", driver.MeasureRfLevel < 0
CheckNoError "closed in an answer"
' 3: an answer of more than a mebibyte without an end
value = driver.MeasureRfLevel
CheckTrue "endless answer", Err.Number = queryFailed And Left(Err.Description, 25) = "Get MeasureRfLevel failed"
Err.Clear
CheckRecovered "endless answer"
' 4: an answer that comes after the time-out is never taken for the next one
value = driver.MeasureRfLevel
CheckError "late answer", queryFailed, level, "Get MeasureRfLevel failed"
CheckRecovered "late answer"
' 5: an answer in pieces, and one with CR LF
Check "answer in pieces", driver.MeasureRfLevel, -12.5
Check "answer with CR LF", driver.MeasureRfLevel, -13.5
Check "raw answer", driver.ResponseString, "<-13.5 (est)"
Check "prefix", driver.Prefix, "<"
Check "postfix", driver.Postfix, "(est)"
' 6: "---" eleven times, then a value
Check "no value yet", driver.MeasureRfLevel, 0.0
Check "no value yet", driver.Prefix, "---"
' 7: answers that no token and no Boolean fits
value = driver.MeasureMode
CheckError "unknown measure mode", &H8004017C, "clsTarn4x.MeasureMode", _
    "Device reported an unrecognised measurement mode (10 dB)"
value = driver.Mode
CheckError "unknown mode", &H8004017C, "clsTarn4x.Mode", "Device reported an unrecognised mode (xDVBT)"
value = driver.MeasureMpegTsUnSync
CheckError "neither true nor false", queryFailed, "clsTarn4x.MeasureMpegTsUnSync", "Get MeasureMpegTsUnSync failed"
' 8: an error queue with entries is drained before the next command
value = driver.MeasureRfLevel
CheckTrue "error queue with entries", driver.MeasureRfLevel < 0
CheckNoError "error queue with entries"

Finish 21
