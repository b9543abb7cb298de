#include "driver/clsTarn4x.h"

#include "driver/SettingsCatalogue.h"

namespace tarn4x {

clsTarn4x::clsTarn4x(std::shared_ptr<platform::Framework> services)
    : framework(std::move(services)), settings(BuildSettingsCatalogue(*framework)), channel(*framework, *settings) {}

clsTarn4x::KeptTimeout clsTarn4x::ChangeTimeout(float seconds) {
    KeptTimeout kept{mobjTransport(), 0.0F};
    kept.Seconds = kept.Of->Timeout();
    kept.Of->SetTimeout(seconds);
    return kept;
}

void clsTarn4x::Restore(const KeptTimeout& kept) {
    if (channel.Holds(kept.Of)) kept.Of->SetTimeout(kept.Seconds);
}

}  // namespace tarn4x
