#include "driver/Failure.h"

namespace tarn4x {

namespace {

constexpr float InstrumentTimeout = 5.0F;  // seconds
constexpr float StateChangePause = 1.0F;   // seconds
constexpr std::int16_t OnLineRetryLimit = 10;
constexpr std::int32_t AlreadyOnLine = 2002, AlreadyOffLine = 2003;

/// Hands the driver's settings of a transport to the transport itself.
void CopySettings(platform::SettingsNode& from, platform::SettingsNode& to) {
    for (const auto& setting : to.Children()) {
        const auto source = from.Item(setting->Name());
        setting->SetValueList(source->ValueList());
        setting->SetValue(true, true, source->GetValue());
    }
}

}  // namespace

bool clsTarn4x::get_IDriverSetup_OnLine() { return channel.HasTransport() && mobjTransport()->IsConnected(); }

void clsTarn4x::put_IDriverSetup_OnLine(bool onLine) {
    if (get_IDriverSetup_OnLine() == onLine) {
        RaiseThrough(framework->TheErrorService(), {onLine ? AlreadyOnLine : AlreadyOffLine, "clsTarn4x.OnLine",
                                                    onLine ? "Driver already on-line" : "Driver already off-line"});
    }
    if (onLine) {
        GoOnLine();
    } else {
        GoOffLine();
    }
}

void clsTarn4x::GoOnLine() {
    auto transport = framework->CreateTransport(platform::ToText(settings->Item("Remote Control")->GetValue()));
    transport->SetName(mstrName);
    const auto subtree = transport->Settings();
    CopySettings(*settings->Item(subtree->Name()), *subtree);
    IgnoringErrors([&] { transport->Connect(true); });
    if (!transport->IsConnected()) transport.reset();
    channel.SetTransport(transport);
    try {
        if (transport) {
            transport->SetTimeout(InstrumentTimeout);
            channel.RetryLimit = 0;
            MeasureModeKnown = ImpulseResponseKnown = IdentityRead = false;
            CachedMeasureMode = tarnNORM;
            channel.WriteCommand("*CLS;*SRE 0;*ESE 0");
            channel.WriteCommand("SYST:REM");
            channel.RetryLimit = OnLineRetryLimit;
        }
        Delay(StateChangePause);
    } catch (const platform::AutomationError&) {  // never half on-line
        GoOffLine();
    }
}

void clsTarn4x::GoOffLine() {
    bool running = false;
    IgnoringErrors([&] { running = framework->TheApplication().AppState() == platform::Application::Running; });
    IgnoringErrors([&] { framework->TheApplication().SuspendState(); });
    channel.RetryLimit = 0;
    IgnoringErrors([&] { channel.WriteCommand("SYST:LOC"); });
    IgnoringErrors([&] { mobjTransport()->Connect(false); });
    channel.SetTransport(nullptr);
    IgnoringErrors([&] {
        if (running) framework->TheApplication().ResumeState();
    });
    IgnoringErrors([&] { Delay(StateChangePause); });
}

}  // namespace tarn4x
