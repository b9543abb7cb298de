#include "host/Framework.h"

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <limits>
#include <string>

#include "host/SettingsTree.h"
#include "host/Transports.h"

namespace host {

std::shared_ptr<platform::SettingsNode> Framework::CreateNode() { return std::make_shared<SettingsNode>(); }

std::shared_ptr<platform::Transport> Framework::CreateTransport(std::string_view progId) {
    return host::CreateTransport(progId, *CreateNode(),
                                 {.AbortRequested = [this] { return application_.AbortRequested(); },
                                  .Log = [this](auto... entry) { log_.Log(entry...); },
                                  .ErrorReporting = [this] { return errors_.ErrorReporting(); }});
}

std::optional<double> Framework::NumberFromText(std::string_view text) {
    const char separator = *std::localeconv()->decimal_point;
    std::string number(text);
    std::ranges::replace(number, separator, '.');
    const auto first = number.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    const char* begin = number.data() + first + (number[first] == '+' ? 1 : 0);
    const char* end = number.data() + number.find_last_not_of(' ') + 1;
    double value = 0.0;
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (stop != end || error == std::errc::invalid_argument || !std::isfinite(value)) return {};
    if (error == std::errc::result_out_of_range) {
        const bool tiny = number.find("e-") != number.npos || number.find("E-") != number.npos;
        return tiny ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return value;
}

}  // namespace host
