// Takes the driver on-line over TCP/IP and measures, in JScript.
//
//   cscript //nologo measure.js [/host:127.0.0.1] [/port:5025] [/simulated]
//
// /simulated   the receiver is tarn4x-sim: the waits that a real instrument needs are left out

var tarnPAR = 18;  // the values of the type library; a script has to write them down

function argument(name, otherwise) {
    for (var i = 0; i < WScript.Arguments.length; i++) {
        var text = WScript.Arguments.Item(i);
        if (text.toLowerCase() == "/" + name) return "";
        if (text.substr(0, name.length + 2).toLowerCase() == "/" + name + ":") return text.substr(name.length + 2);
    }
    return otherwise;
}

function measured(name, value, unit) {
    // The prefix "---" says that there is no value, "<" and ">" that the true one is beyond it.
    WScript.Echo(name + ": " + driver.Prefix + (driver.Prefix == "---" ? "" : value + " " + unit));
}

if (argument("simulated", null) !== null) new ActiveXObject("Seamlib.clsApplication").DelayScale = 0;

var host = new ActiveXObject("Seamlib.clsHost");
var driver = host.CreateDriver("XTarn4x");
var setup = host.Setup(driver);
setup.Settings("Remote Control").Value = "TCP/IP";
setup.Settings("TCP/IP.Host").Value = argument("host", "127.0.0.1");
setup.Settings("TCP/IP.Port").Value = argument("port", "5025");
setup.OnLine = true;
if (!setup.OnLine) {
    WScript.Echo("The receiver does not answer. " + setup.WhyOffLine);
    WScript.Quit(1);
}

try {
    driver.RF = 474e6;
    driver.MeasureMode = tarnPAR;
    measured("RF level", driver.MeasureRfLevel, "dBm");
    measured("MER (rms)", driver.MeasureOfdmMerRmsDb, "dB");
    measured("Phase jitter", driver.MeasureOfdmPhaseJitter, "deg");
    measured("Lower shoulder", driver.MeasureFdSpectrumShoulderLower, "dB");  // not in this measure mode
} catch (error) {
    // The number as documented, for example 800407E0; JScript's own error.number is signed.
    WScript.Echo((error.number >>> 0).toString(16).toUpperCase() + ": " + error.description);
}
setup.OnLine = false;
