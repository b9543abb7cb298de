#pragma once

#include "host/Application.h"

namespace host {

/// Application services whose delays handle the window messages of the caller's thread.
class PumpingApplication : public Application {
  protected:
    void Wait(std::chrono::milliseconds time) override;
};

}  // namespace host
