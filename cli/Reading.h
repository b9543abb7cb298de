#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/Failure.h"
#include "cli/Members.h"
#include "cli/Session.h"

namespace cli {

/// What came of reading a member.
struct Reading {
    Request Asked;
    Value Result = {};
    std::string Unit = {};
    std::string Prefix = {}, Postfix = {};  ///< the instrument's marker and remark about a number
    std::optional<Failure> Error = {};

    /// False when the instrument has no number and says so: "---", "UNDER", "OVER" or "NORF".
    bool HasValue() const;
    /// The number when the member measures one.
    std::optional<double> Number() const;
    /// "< 1E-08 (4/10)", "33.1 dB", "tarnPAR (18)"
    std::string Text() const;
};

/// Reads members for one result: the alarm statistics and the impulse response are measured once, so that their parts
/// belong together.
class Reader {
  public:
    explicit Reader(Session& session) : session_(session) {}

    /// What the member raises becomes the Error. Throws Failure when the connection is lost, and Stopped.
    Reading Read(const Request& request);

  private:
    Value Ask(const Request& request);

    Session& session_;
    std::shared_ptr<tarn4x::clsStatistics> statistics_;
    bool echoesAreMeasured_ = false;
};

/// What properties the user asks for; throws Failure for what is no property.
std::vector<Request> PropertiesFor(std::span<const std::string> words);

}  // namespace cli
