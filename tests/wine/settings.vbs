' Finding the driver, its settings and their defaults.
On Error Resume Next
Dim name, names, register, driver, setup, settings, node, count

names = ""
For Each name In host.Drivers
    names = names & name & " "
Next
Check "registered drivers", names, "XTarn4x "
Check "description", host.Describe("XTarn4x"), "Tarn4x"
Set register = CreateObject("XTarn4x.clsRegister")
Check "class name", register.IRegister_GetClassName, "clsTarn4x"
Check "class description", register.IRegister_GetClassDescription, "Tarn4x"
Set register = CreateObject("XTarn4x.clsStatistics")
CheckTrue "clients cannot create the statistics", Err.Number <> 0
Err.Clear

Set driver = host.CreateDriver("XTarn4x")
Set setup = host.Setup(driver)
Set settings = setup.Settings
setup.Name = "Bench 1"
Check "name", setup.Name, "Bench 1"

Check "Type", settings("Type").Value, "TARN"
Check "Type is fixed", settings("Type").Fixed, True
Check "Manufacturer", settings("Manufacturer").Value, "VANTERRA"
Check "Model Number", settings("Model Number").Value, "TARN"
Check "Serial Number", settings("Serial Number").Value, Empty
Check "Serial Number is free", settings("Serial Number").Fixed, False
Check "Options", settings("Options").ValueList, "TARN-B1=TARN-B1,TARN-B2=TARN-B2,TARN-B3=TARN-B3"
Check "Remote Control", settings("Remote Control").Value, "Conduit.clsGPIB"
Check "Remote Control list", settings("Remote Control").ValueList, _
    "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, TCP/IP=Conduit.clsEthernet, GUI=Conduit.clsGUI"
Check "Log Messages", settings("Log Messages").Value, "-1"
Check "Log Messages shown", settings("Log Messages").DisplayValue, "Yes"
Check "GPIB address", settings("GPIB.Primary Address").Value, 6
Check "serial ports", settings("RS232.Comm Port").ValueList, "COM1=1"
Check "serial port", settings("RS232.Comm Port").Value, "1"
Check "Baud Rate", settings("RS232")("Baud Rate").Value, "19200"
Check "Handshaking", settings("RS232.Handshaking").ValueList, "NO=0,XON/XOFF=1,HARDWARE=2"
Check "network address", settings("TCP/IP.Host").Value, "127.0.0.1"

settings("Remote Control").Value = " RS232 "
Check "display text gives stored value", settings("Remote Control").Value, "Conduit.clsComm"
settings("Remote Control").SetValue True, True, "Conduit.clsGUI"
Check "stored value stays", settings("Remote Control").Value, "Conduit.clsGUI"

count = 0
For Each node In settings
    count = count + 1
Next
Check "settings and subtrees", count, 12
Check "counted", settings.Count, 12
Set node = settings("No Such Setting")
CheckTrue "a missing setting is an error", Err.Number = 9 And InStr(Err.Description, "No Such Setting") > 0
Err.Clear
host.CreateDriver "NoSuchComponent"
CheckTrue "a missing component is an error that names it", _
    Err.Number <> 0 And InStr(Err.Description, "NoSuchComponent") > 0
Err.Clear
Set node = host.Setup(app)
CheckTrue "an object without settings is an error with a text", Err.Number <> 0 And Err.Description <> ""

Finish 30
