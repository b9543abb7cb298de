#include "host/Application.h"

#include <algorithm>
#include <thread>

namespace host {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds Slice{50};
constexpr double LongestDelay = 1e6;  // seconds; keeps the clock arithmetic far from its limits

void RefuseNegative(double number, const char* what) {
    if (number >= 0.0) return;
    throw platform::AutomationError(platform::InvalidProcedureCall, "Seamlib.clsApplication",
                                    std::string(what) + " may not be negative");
}

}  // namespace

void Application::Delay(float seconds) {
    RefuseNegative(seconds, "The time of a delay");
    const double scaled = std::min(seconds * DelayScale(), LongestDelay);
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(scaled));
    while (!AbortRequested()) {
        const auto rest = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (rest.count() <= 0) return;
        Wait(std::min(rest, Slice));
    }
}

void Application::SetDelayScale(double scale) {
    RefuseNegative(scale, "The factor on delays");
    delayScale_ = scale;
}

void Application::SuspendState() {
    std::int32_t expected = Running;
    state_.compare_exchange_strong(expected, Suspended);
}

void Application::ResumeState() {
    std::int32_t expected = Suspended;
    state_.compare_exchange_strong(expected, Running);
}

void Application::Wait(milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace host
