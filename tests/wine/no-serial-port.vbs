' A computer without a serial port cannot create the driver.
On Error Resume Next
host.CreateDriver "XTarn4x"
CheckError "no serial port", 380, "modParameterUtilities.GetDisplayValue", "Invalid Property Value (intIndex = 0)"
Finish 1
