#include "driver/clsTarn4x.h"

#include "driver/SettingsCatalogue.h"

namespace tarn4x {

clsTarn4x::clsTarn4x(std::shared_ptr<platform::Framework> services)
    : framework(std::move(services)), settings(BuildSettingsCatalogue(*framework)), channel(*framework, *settings) {}

}  // namespace tarn4x
