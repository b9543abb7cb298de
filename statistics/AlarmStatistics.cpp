#include "core/Failure.h"
#include "statistics/clsStatistics.h"

namespace tarn4x {

std::shared_ptr<clsStatistics> clsTarn4x::get_AlarmStatistics() {
    ForgetPrefix();
    return Guarded(GetOf("AlarmStatistics"), [&] {
        const auto response = channel.QueryString("READ:DVBT:ALAR:STAT?");
        auto statistics = std::make_shared<clsStatistics>(framework);
        statistics->put_Statistics(answer.ParseResponse(response));
        return statistics;
    });
}

void clsTarn4x::AlarmRegisterClear() {
    constexpr Operation operation{
        .Verb = "", .Name = "AlarmRegisterClear", .Code = xtarnCommandFailed, .Ending = " method failed"};
    Guarded(operation, [&] {
        channel.SendCommand("CONF:DVBT:ALAR:RES");
        Delay(3.0F);  // the instrument resets the register
    });
}

}  // namespace tarn4x
