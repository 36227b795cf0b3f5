#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::apps {

// A JSON value of a request. A number is kept as it was written, so that an amount stays exact.
struct Json {
  enum class Kind : std::uint8_t { null, boolean, number, text, array, object };

  Kind kind = Kind::null;
  bool truth = false;
  std::string text = {};                                   // of a text or number
  std::vector<std::pair<std::string, Json>> members = {};  // of an array without names

  bool is(Kind wanted) const { return kind == wanted; }
  const Json* find(std::string_view name) const;  // of an object; null
};

// One value and nothing behind it. Error for what is no JSON, is nested deeper than 32, names a member twice or
// more than 1000 in one object.
Json parseJson(std::string_view text);
// A whole number from 0 to what 64 bits with a sign hold; Error that names what it is for.
std::int64_t wholeOf(const Json& number, std::string_view what);

}  // namespace quillon::apps
