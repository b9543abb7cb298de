#include "driver/Failure.h"
#include "driver/members/clsStatistics.h"

namespace tarn4x {

std::shared_ptr<clsStatistics> clsTarn4x::get_AlarmStatistics() {
    ForgetPrefix();
    return Guarded(GetOf(Members::AlarmStatistics), [&] {
        const auto response = channel.QueryString("READ:DVBT:ALAR:STAT?");
        auto statistics = std::make_shared<clsStatistics>(framework);
        statistics->put_Statistics(answer.ParseResponse(response));
        return statistics;
    });
}

void clsTarn4x::AlarmRegisterClear() {
    auto operation = MethodOf(Members::AlarmRegisterClear);
    operation.Ending = " method failed";
    Guarded(operation, [&] {
        channel.SendCommand("CONF:DVBT:ALAR:RES");
        Delay(3.0F);  // the instrument resets the register
    });
}

}  // namespace tarn4x
