#include <algorithm>
#include <chrono>
#include <limits>

#include "cli/Commands.h"
#include "cli/Iso8601.h"
#include "cli/Visits.h"
#include "cli/WatchView.h"
#include "platform/Value.h"

namespace cli {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

/// Takes samples, over outages of the link.
class Watcher {
  public:
    Watcher(Session& session, std::span<const Request> requests, bool mayTravel)
        : session_(session), requests_(requests) {
        if (mayTravel) Travel();
    }

    /// Throws Stopped, and Failure when the first sample fails.
    Sample Take() {
        const auto begin = Clock::now();
        Sample sample{.Time = IsoNow()};
        try {
            Fill(sample);
            isFirst_ = false;
        } catch (const platform::AutomationError& error) {
            Lose(sample, begin, session_.Explain(error));
        } catch (const Failure& failure) {
            Lose(sample, begin, failure);
        }
        return sample;
    }

  private:
    void Travel() {
        travel_.emplace(session_);
        mode_ = ModeForAll(requests_, travel_->Found());
        if (!mode_) throw Misuse("No measure mode has all of these members", "Watch them one after the other.");
        travel_->GoTo(*mode_);
    }

    void Fill(Sample& sample) {
        ComeBack(sample);
        Reader reader(session_);
        for (const auto& request : requests_) {
            sample.Readings.push_back(reader.Read(request));
            for (const auto& note : session_.TheFramework().LinkNotes()) Notice(sample, note);
            if (const auto& error = sample.Readings.back().Error; error && isFirst_) throw *error;
        }
    }

    void Lose(Sample& sample, Clock::time_point begin, const Failure& failure) {
        if (isFirst_ || failure.Ends != NotConnected) throw failure;
        sample.Readings.clear();
        sample.Outage = failure;
        if (!lostAt_) lostAt_ = begin;
        session_.Drop();
    }

    /// After an outage: goes on-line again, in the measure mode from before.
    void ComeBack(Sample& sample) {
        if (!lostAt_) return;
        session_.OnLine();
        if (travel_) {
            travel_->LookAround();
            travel_->GoTo(*mode_);
        }
        const auto lost = std::chrono::round<std::chrono::seconds>(Clock::now() - *lostAt_);
        Notice(sample, "The connection is back after " + std::to_string(lost.count()) + " s");
        lostAt_.reset();
    }

    static void Notice(Sample& sample, const std::string& text) {
        if (sample.Notice.find(text) != text.npos) return;
        sample.Notice.append(sample.Notice.empty() ? "" : "; ").append(text);
    }

    Session& session_;
    std::span<const Request> requests_;
    std::optional<cli::Travel> travel_;
    std::optional<tarn4x::TarnMeasureModes> mode_;
    std::optional<Clock::time_point> lostAt_;
    bool isFirst_ = true;
};

}  // namespace

Outcome Watch(Context& context, const WatchOptions& options) {
    const auto requests = PropertiesFor(options.Members);
    const auto view = CreateWatchView(context.Out, requests);
    auto& application = context.Receiver.TheApplication();
    const Seconds period(options.Every), limit(options.For.value_or(std::numeric_limits<double>::max()));
    try {
        Watcher watcher(context.Receiver, requests, options.Switch);
        const auto start = Clock::now();
        Seconds next(0);
        for (int taken = 1;; ++taken) {
            view->Show(watcher.Take());
            if (options.Count && taken >= *options.Count) break;
            // A sample that took longer than the period delays the next ones.
            const Seconds now = Clock::now() - start;
            next = std::max(next + period, now);
            if (next > limit) break;
            application.Pause((next - now).count());
            if (application.AbortRequested()) break;
        }
    } catch (const Stopped&) {  // the usual end of a watch
    }
    return {.Results = nullptr};
}

}  // namespace cli
