#pragma once

#include "picture/api/picture.hpp"

// A library ends no process: a fault of ours becomes an exception or nothing.
#define JSON_ASSERT(condition) static_cast<void>(0)
#include <nlohmann/json.hpp>

namespace svgtool {

/// The words of JSON reports; those of --report's text too.
const char *wordOf(RecordFate fate);
const char *wordOf(RecordsEnd end);

/// What a report says, with its keys in the order in which people read them.
nlohmann::ordered_json jsonOf(const PictureReport &report);

/// One line of JSON without control characters. Bytes that are no UTF-8 become U+FFFD.
std::string textOf(const nlohmann::ordered_json &json);

} // namespace svgtool
