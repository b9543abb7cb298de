#include "com/StatisticsFace.h"

#include <utility>

#include "com/Members.h"
#include "driver/members/clsStatistics.h"
#include "platform/com/DualFace.h"

namespace com {
namespace {

using Statistics = tarn4x::clsStatistics;

class StatisticsFace : public DualFace<&CLSID_clsStatistics, _clsStatistics> {
  public:
    explicit StatisticsFace(std::shared_ptr<Statistics> statistics) : statistics_(std::move(statistics)) {}

    // Types as driver/StatisticsMembers.def names them.
    using Date = DATE;
    using Double = double;
    using String = BSTR;

#define READ(identifier, name, type, ...) \
    STDMETHODIMP get_##name(type* value) override { return Get(value, &Statistics::get_##name); }
#define CONTROL(identifier, name, type, ...)                                                       \
    STDMETHODIMP put_##name(type value) override {                                                 \
        return CallMember(*statistics_, __uuidof(_clsStatistics), &Statistics::put_##name, value); \
    }                                                                                              \
    STDMETHODIMP get_##name(type* value) override { return Get(value, &Statistics::get_##name); }
#include "driver/StatisticsMembers.def"

  private:
    template <class Out, class Member>
    HRESULT Get(Out* value, Member member) {
        return GetMember(*statistics_, __uuidof(_clsStatistics), value, member);
    }

    std::shared_ptr<Statistics> statistics_;
};

}  // namespace

ComPtr<_clsStatistics> StatisticsFor(std::shared_ptr<Statistics> statistics) {
    return ComPtr<_clsStatistics>(new StatisticsFace(std::move(statistics)));
}

}  // namespace com
