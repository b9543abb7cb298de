#pragma once

#include "host/Application.h"
#include "host/ErrorService.h"
#include "host/MessageLog.h"

namespace host {

/// The framework for programs that use no COM. It must outlive what it creates.
class Framework : public platform::Framework {
  public:
    Application& TheApplication() override { return application_; }
    MessageLog& TheMessageLog() override { return log_; }
    ErrorService& TheErrorService() override { return errors_; }
    std::shared_ptr<platform::SettingsNode> CreateNode() override;
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override;
    /// In the program's C locale: "C" unless it has called setlocale.
    std::optional<double> NumberFromText(std::string_view text) override;

  private:
    Application application_;
    MessageLog log_;
    ErrorService errors_{log_};
};

}  // namespace host
