' Checks an installation and says what to do where something is wrong. It speaks for the bitness of the script host that
' runs it: a 32-bit program needs what C:\Windows\SysWOW64\cscript.exe finds, a 64-bit one what System32's finds.
'
'   cscript //nologo diagnose.vbs [/host:ADDRESS] [/port:5025] [/placeholder]
'
' /host         takes the driver on-line with the receiver at that address too
' /placeholder  names a serial port on which nobody answers, for a PC without serial ports
'
' Every line begins with "ok", "FAILED", or "note" for what matters to some users only. The exit code is the number of
' failures.
Option Explicit

Dim shell, files, bitness, failures, driver
failures = 0
Set shell = CreateObject("WScript.Shell")
Set files = CreateObject("Scripting.FileSystemObject")
bitness = 64
If Environment("PROCESSOR_ARCHITECTURE") = "x86" Then bitness = 32
WScript.Echo "ok      This is a " & bitness & "-bit script host: " & WScript.FullName

' ---- What is registered ----

Const typeLibraryMarshaller = "{00020424-0000-0000-C000-000000000046}"
Dim version
version = ""
' ProgID, class, one of the interfaces
CheckComponent "XTarn4x.clsTarn4x", "{A5BD6635-6536-458E-9D8B-8CEDA3F3343B}", "{E9C53484-7A1B-4AEB-94A6-65334AFAC7BB}"
CheckComponent "Seamlib.clsApplication", "{940547D9-B26F-472C-BD44-37AD845B9684}", "{59C5C129-321D-4427-A9A6-EE2061C78618}"
CheckComponent "Seamcfg.clsNode", "{0F69D974-24D9-46C0-9713-A21CA17D7BF5}", "{8EC96D47-F0F4-47D5-9589-D923DD291EC8}"
CheckComponent "Conduit.clsEthernet", "{DED266E1-920B-4375-8981-E8217B74B233}", "{B3731317-31DA-4F03-95BE-9163C10BD02E}"

' ---- What the driver finds on this PC ----

Dim visa
visa = Environment("SystemRoot") & "\System32\visa" & bitness & ".dll"
If files.FileExists(visa) Then
    Passed "VISA for GPIB: " & visa
Else
    Note "No VISA for GPIB: there is no " & visa, "Only receivers on the GPIB bus need it: install the " & bitness & _
        "-bit VISA runtime of the GPIB interface's maker."
End If

' The driver looks for COM1 to COM16; the last of them is the least likely to be a real one.
Const namedPorts = "HKCU\Software\Conduit\Ports", placeholder = "COM16"
If HasOption("placeholder") Then NamePlaceholder
If CreateDriver() Then
    CheckSerialPorts
    If Argument("host", "") <> "" Then
        CheckConnection
    Else
        Note "No connection was tried.", "Call this script with /host:ADDRESS to try one."
    End If
End If

WScript.Echo ""
If failures = 0 Then
    WScript.Echo "All is well for " & bitness & "-bit programs."
Else
    WScript.Echo failures & " failed."
End If
WScript.Quit failures

' ---- Checks ----

Sub CheckComponent(progId, ownClass, ownInterface)
    Dim name, clsid, file, found
    name = Left(progId, InStr(progId, ".") - 1)
    clsid = ReadKey("HKCR\" & progId & "\CLSID\")
    file = ReadKey("HKCR\CLSID\" & clsid & "\InprocServer32\")
    If clsid = "" Then
        Failed progId & " is not registered.", HowToRegister(name)
    ElseIf file = "" Then
        Failed progId & " is registered, but not for " & bitness & "-bit programs.", HowToRegister(name)
    ElseIf Not files.FileExists(file) Then
        Failed progId & " leads to a file that is not there: " & file, HowToRegister(name)
    ElseIf UCase(clsid) <> ownClass Then
        Note progId & " leads to another product's file: " & file, "If the driver shall use the stand-alone " & _
            "framework instead, register " & name & ".dll with regsvr32 /i:force. The other product loses the " & _
            "ProgID by that."
    Else
        found = FileVersion(file)
        If version = "" Then version = found
        If found = version Then
            Passed progId & " leads to " & file & ", version " & found
        Else
            Failed progId & " leads to " & file & ", whose version " & found & " is not the driver's " & version, _
                "Install the components of one version in one folder, and register them there."
        End If
        CheckTypeLibrary name, ReadKey("HKCR\CLSID\" & clsid & "\TypeLib\"), file
        CheckMarshalling name, ownInterface
    End If
End Sub

Sub CheckTypeLibrary(name, library, file)
    Dim registered
    registered = ReadKey("HKCR\TypeLib\" & library & "\1.0\0\win" & bitness & "\")
    If LCase(registered) = LCase(file) Then
        Passed name & "'s type library is registered"
    ElseIf registered = "" Then
        Failed name & "'s type library is not registered: calls by name fail, early binding too.", HowToRegister(name)
    Else
        Failed name & "'s type library leads to another file: " & registered, HowToRegister(name)
    End If
End Sub

' Without it an object cannot be used from another thread than the one that made it.
Sub CheckMarshalling(name, iid)
    Dim marshaller
    marshaller = ReadKey("HKCR\Interface\" & iid & "\ProxyStubClsid32\")
    If UCase(marshaller) = typeLibraryMarshaller And ReadKey("HKCR\Interface\" & iid & "\TypeLib\") <> "" Then
        Passed name & "'s objects can be used from other threads"
    Else
        Failed name & "'s objects cannot be used from other threads: their interfaces are not registered.", _
            HowToRegister(name)
    End If
End Sub

Function CreateDriver()
    On Error Resume Next
    ' The script host's own CreateObject does not tell why a driver cannot be created.
    Set driver = CreateObject("Seamlib.clsHost").CreateDriver("XTarn4x")
    CreateDriver = Err.Number = 0
    If CreateDriver Then
        Passed "The driver can be created"
    ElseIf Err.Number = 380 Then
        Failed "The driver cannot be created: this PC has no free serial port, COM1 to COM16.", _
            "The driver lists the serial ports when it is created and needs at least one, even if the receiver is " & _
            "reached over TCP/IP. Plug in a USB serial adapter, switch the on-board port on in the BIOS, or close the " & _
            "programs that hold a port open. If no receiver is on a serial port, name one on which nobody answers, " & _
            "by calling this script with /placeholder, or by" & vbCrLf & _
            "          reg add " & namedPorts & " /v " & placeholder & " /d none"
    Else
        Failed "The driver cannot be created: " & Err.Description & " (" & Hex(Err.Number) & ")", _
            "Cure what failed above first. The driver needs Seamlib, Seamcfg and Conduit in the same bitness."
    End If
End Function

Sub NamePlaceholder()
    Dim target
    target = ReadKey(namedPorts & "\" & placeholder)
    If target = "" Then
        shell.RegWrite namedPorts & "\" & placeholder, "none", "REG_SZ"
        Passed placeholder & " is now a serial port on which nobody answers, for this user: written to " & namedPorts
    Else
        Note placeholder & " was named before: " & target, "It is left as it is."
    End If
    WScript.Echo "          It goes with: reg delete " & namedPorts & " /v " & placeholder & " /f"
End Sub

Sub CheckSerialPorts()
    On Error Resume Next
    Dim host, ports
    Set host = CreateObject("Seamlib.clsHost")
    ports = host.Setup(driver).Settings("RS232.Comm Port").ValueList
    If Err.Number = 0 Then
        Passed "Serial ports: " & ports
    Else
        Note "The serial ports cannot be listed: " & Err.Description, _
            "Another product's framework may not offer Seamlib.clsHost."
    End If
End Sub

Sub CheckConnection()
    On Error Resume Next
    Dim address, setup, settings, isOnLine, who
    address = Argument("host", "") & ", port " & Argument("port", "5025")
    isOnLine = False
    Set setup = CreateObject("Seamlib.clsHost").Setup(driver)
    Set settings = setup.Settings
    settings("Remote Control").Value = "TCP/IP"
    settings("TCP/IP.Host").Value = Argument("host", "")
    settings("TCP/IP.Port").Value = Argument("port", "5025")
    setup.OnLine = True
    isOnLine = setup.OnLine
    If isOnLine Then who = driver.Manufacturer & " " & driver.ModelNumber & ", serial number " & driver.SerialNumber
    If Err.Number <> 0 Then
        Failed "The receiver at " & address & " is no Tarn 4x: " & Err.Description, "Is the address right?"
    ElseIf isOnLine Then
        Passed "The receiver at " & address & " answers: " & who
        setup.OnLine = False
    Else
        Failed "The receiver at " & address & " does not answer: " & setup.WhyOffLine, _
            "Is it switched on and on the network? Does ""ping"" reach it? Is the port right, and open in the " & _
            "firewall? Is another program connected to it?"
    End If
End Sub

' ---- Helpers ----

Function HowToRegister(name)
    Dim folder
    folder = "C:\Windows\System32\"
    If bitness = 32 Then folder = "C:\Windows\SysWOW64\"
    HowToRegister = "Repair the installation, or as administrator call " & folder & "regsvr32.exe with the full " & _
        "path of the " & bitness & "-bit " & name & ".dll."
End Function

Function Environment(name)
    ' Wine leaves a NUL at the end.
    Environment = Replace(shell.ExpandEnvironmentStrings("%" & name & "%"), Chr(0), "")
End Function

Function ReadKey(key)
    ReadKey = ""
    On Error Resume Next
    ReadKey = shell.RegRead(key)
End Function

Function FileVersion(file)
    FileVersion = "unknown"
    On Error Resume Next
    FileVersion = files.GetFileVersion(file)
End Function

Sub Passed(text)
    WScript.Echo "ok      " & text
End Sub

Sub Note(text, advice)
    WScript.Echo "note    " & text
    WScript.Echo "          " & advice
End Sub

Sub Failed(text, cure)
    failures = failures + 1
    WScript.Echo "FAILED  " & text
    WScript.Echo "          What helps: " & cure
End Sub

Function HasOption(name)
    Dim i
    HasOption = False
    For i = 0 To WScript.Arguments.Count - 1
        If LCase(WScript.Arguments.Item(i)) = "/" & name Then HasOption = True
    Next
End Function

Function Argument(name, default)
    Dim i, text
    Argument = default
    For i = 0 To WScript.Arguments.Count - 1
        text = WScript.Arguments.Item(i)
        If LCase(Left(text, Len(name) + 2)) = "/" & name & ":" Then Argument = Mid(text, Len(name) + 3)
    Next
End Function
