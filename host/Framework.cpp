#include "host/Framework.h"

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
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
    if (error != std::errc() || stop != end || !std::isfinite(value)) return {};
    return value;
}

}  // namespace host
