#include "com/StatisticsFace.h"

#include <utility>

#include "com/Members.h"
#include "platform/com/DualFace.h"
#include "statistics/clsStatistics.h"

namespace com {
namespace {

using Statistics = tarn4x::clsStatistics;

class StatisticsFace : public DualFace<&CLSID_clsStatistics, _clsStatistics> {
  public:
    explicit StatisticsFace(std::shared_ptr<Statistics> statistics) : statistics_(std::move(statistics)) {}

    STDMETHODIMP put_Statistics(BSTR value) override {
        return CallMember(*statistics_, __uuidof(_clsStatistics), &Statistics::put_Statistics, value);
    }
    STDMETHODIMP get_Statistics(BSTR* value) override { return Get(value, &Statistics::get_Statistics); }
    STDMETHODIMP get_MonitoringTime(DATE* value) override { return Get(value, &Statistics::get_MonitoringTime); }
    STDMETHODIMP get_Level(DATE* value) override { return Get(value, &Statistics::get_Level); }
    STDMETHODIMP get_Synchronisation(DATE* value) override { return Get(value, &Statistics::get_Synchronisation); }
    STDMETHODIMP get_BerBeforeVit(DATE* value) override { return Get(value, &Statistics::get_BerBeforeVit); }
    STDMETHODIMP get_BerBeforeRs(DATE* value) override { return Get(value, &Statistics::get_BerBeforeRs); }
    STDMETHODIMP get_BerAfterRs(DATE* value) override { return Get(value, &Statistics::get_BerAfterRs); }
    STDMETHODIMP get_MpegDataErrorTime(DATE* value) override { return Get(value, &Statistics::get_MpegDataErrorTime); }
    STDMETHODIMP get_CorrCntBeforeVit(double* value) override { return Get(value, &Statistics::get_CorrCntBeforeVit); }
    STDMETHODIMP get_CorrCntBeforeRs(double* value) override { return Get(value, &Statistics::get_CorrCntBeforeRs); }
    STDMETHODIMP get_MpegDataErrorCntAfterRs(double* value) override {
        return Get(value, &Statistics::get_MpegDataErrorCntAfterRs);
    }
    STDMETHODIMP get_ModErrorRatio(DATE* value) override { return Get(value, &Statistics::get_ModErrorRatio); }

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
