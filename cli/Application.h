#pragma once

#include <string>
#include <utility>

#include "host/Application.h"

namespace cli {

/// Application services of the program. The user asks to stop with Ctrl-C; a second one ends the program at once. On a
/// terminal, waits of a second or more say what is waited for.
class Application : public host::Application {
  public:
    Application();
    ~Application() override;
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// What the user is told to be waiting for, while the object lives: "MeasureMode".
    class Activity {
      public:
        Activity(Application& application, std::string text)
            : application_(application), outer_(std::exchange(application.activity_, std::move(text))) {}
        ~Activity() { application_.activity_ = std::move(outer_); }
        Activity(const Activity&) = delete;
        Activity& operator=(const Activity&) = delete;

      private:
        Application& application_;
        std::string outer_;
    };

    void Delay(float seconds) override;
    /// Waits that long whatever DelayScale is; ends early when the user asks to stop.
    void Pause(double seconds);

  private:
    std::string activity_;
};

}  // namespace cli
