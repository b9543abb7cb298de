#include "cli/Application.h"

#include <algorithm>
#include <csignal>
#include <cstdio>

#include "cli/Clean.h"
#include "cli/Terminal.h"
#include "platform/Value.h"

namespace cli {

namespace {

std::atomic<Application*> running = nullptr;

void Stop(int signal) {
    std::signal(signal, SIG_DFL);
    if (auto* application = running.load()) application->SetAbortRequested(true);
}

}  // namespace

Application::Application() {
    running = this;
    std::signal(SIGINT, Stop);
    std::signal(SIGTERM, Stop);
#ifdef SIGBREAK
    std::signal(SIGBREAK, Stop);
#endif
#ifdef SIGHUP
    if (std::signal(SIGHUP, Stop) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);  // nohup keeps it running
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);  // who writes into a pipe without a reader finds out
#endif
}

Application::~Application() { running = nullptr; }

void Application::Delay(float seconds) {
    const double real = seconds * DelayScale();
    std::string told;
    if (real >= 1.0 && !AbortRequested() && terminal::ShowsErrors()) {
        told = Clean(activity_) + ": waiting " + platform::GeneralNumber(real) + " s";
        std::fprintf(stderr, "%s", told.c_str());
    }
    host::Application::Delay(seconds);
    if (!told.empty()) std::fprintf(stderr, "\r%*s\r", static_cast<int>(told.size()), "");
}

void Application::Pause(double seconds) {
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    const auto end = Clock::now() + std::chrono::ceil<milliseconds>(std::chrono::duration<double>(seconds));
    while (!AbortRequested()) {
        const auto rest = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (rest.count() <= 0) return;
        Wait(std::min(rest, milliseconds(50)));
    }
}

}  // namespace cli
