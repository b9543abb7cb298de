#include "driver/Failure.h"

namespace tarn4x {

namespace {

constexpr float ResetTimeout = 100.0F;  // seconds
constexpr float ResetPause = 15.0F;     // seconds; the instrument starts anew

}  // namespace

void clsTarn4x::Reset() {
    Guarded(MethodOf(Members::Reset), [&] {
        ImpulseResponseKnown = false;
        MeasureModeKnown = false;
        CachedMeasureMode = tarnNORM;
        const auto kept = ChangeTimeout(ResetTimeout);
        try {
            channel.WriteCommand("SYST:RES");
        } catch (const platform::AutomationError&) {
            Restore(kept);
            throw;
        }
        Restore(kept);
        Delay(ResetPause);
    });
}

}  // namespace tarn4x
