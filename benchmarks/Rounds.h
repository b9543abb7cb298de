#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double Microseconds(Clock::duration time) { return std::chrono::duration<double, std::micro>(time).count(); }

/// Prints one result for report.py: what was measured, p50, p99 and unit.
inline void Print(const std::string& name, double p50, double p99, const char* unit) {
    std::printf("%s\t%.4f\t%.4f\t%s\n", name.c_str(), p50, p99, unit);
    std::fflush(stdout);
}

/// Something to time: calls it so often in a row for one sample. Calls that take less than a few microseconds need
/// more than one, or the clock is what is measured. What prepares a turn is not timed.
class Case {
  public:
    template <class Call>
    Case(
        std::string name, int batch, Call call, std::function<void()> prepare = [] {})
        : name_(std::move(name)), prepare_(std::move(prepare)), sample_([batch, call = std::move(call)]() mutable {
              const auto start = Clock::now();
              for (int i = 0; i < batch; ++i) call();
              return Microseconds(Clock::now() - start) / batch;
          }) {}

    void Take(int samples) {
        prepare_();
        for (int i = 0; i < samples; ++i) taken_.push_back(sample_());
    }
    void Forget() { taken_.clear(); }
    void Report() {
        std::ranges::sort(taken_);
        Print(name_, taken_[taken_.size() / 2], taken_[taken_.size() * 99 / 100], "us");
    }

  private:
    std::string name_;
    std::function<void()> prepare_;
    std::function<double()> sample_;
    std::vector<double> taken_;
};

/// One round: the cases take turns, 50 samples each: often enough that whatever
/// else the machine does falls on all of them, and long enough that one does not run on what another left behind.
inline void RunRound(std::vector<Case> cases, int samples) {
    constexpr int turn = 50;
    for (Case& warmingUp : cases) {
        warmingUp.Take(turn);
        warmingUp.Forget();
    }
    for (int i = 0; i < samples; i += turn) {
        for (Case& next : cases) next.Take(turn);
    }
    for (Case& done : cases) done.Report();
}

}  // namespace bench
