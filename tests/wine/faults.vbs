' A link that goes wrong; faults.sim says how. After a time-out, of five seconds, the next read is right.
On Error Resume Next
Dim driver, fault, value

Set driver = OnLineDriver()
For Each fault In Array("silent peer", "late answer")
    value = driver.MeasureRfLevel
    CheckError fault, &H800407D4, "clsTarn4x.MeasureRfLevel", "Get MeasureRfLevel failed"
    value = driver.MeasureRfLevel
    CheckTrue "after a " & fault, Err.Number = 0 And value < 0 And value > -200
Next
Check "closed in an answer, tried again", driver.MeasureRfLevel, -22.0
Check "in pieces, with CR LF", driver.MeasureRfLevel, -22.0
Check "raw answer", driver.ResponseString, "<-22 (est)"
Check "no value yet", driver.MeasureRfLevel, 0.0

Finish 8
