#pragma once

#include <nlohmann/json.hpp>

#include "cli/Failure.h"
#include "cli/Reading.h"

namespace cli {

// What the program prints with --json; docs/tarn4x.md describes it.

using Json = nlohmann::ordered_json;

Json ToJson(const Failure& failure);
Json ToJson(const Reading& reading);

/// A line of ASCII, control characters and broken UTF-8 included.
std::string Dump(const Json& json);

}  // namespace cli
