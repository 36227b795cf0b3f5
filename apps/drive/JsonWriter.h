#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <string_view>

#include "apps/ValueText.h"

namespace quillon::apps {

// Writes one JSON value, a part at a time: begin, key, value, end. Commas come by themselves.
class JsonWriter {
 public:
  JsonWriter& object() { return begin('{'); }
  JsonWriter& array() { return begin('['); }
  JsonWriter& endObject() { return end('}'); }
  JsonWriter& endArray() { return end(']'); }
  JsonWriter& key(std::string_view name) {
    separate();
    appendJsonText(text_, name);
    text_ += ':';
    first_ = true;
    return *this;
  }

  JsonWriter& value(std::string_view text) {
    separate();
    appendJsonText(text_, text);
    return *this;
  }
  JsonWriter& value(const char* text) { return value(std::string_view(text)); }
  JsonWriter& value(const std::string& text) { return value(std::string_view(text)); }
  JsonWriter& value(std::same_as<bool> auto truth) { return raw(truth ? "true" : "false"); }
  template <std::integral T>
  requires(!std::same_as<T, bool>) JsonWriter& value(T number) { return raw(std::to_string(number)); }
  JsonWriter& value(const store::Value& value) {
    separate();
    appendJson(text_, value);
    return *this;
  }
  template <typename T>
  JsonWriter& value(const std::optional<T>& some) {
    return some ? value(*some) : null();
  }
  JsonWriter& null() { return raw("null"); }
  // What is JSON already.
  JsonWriter& raw(std::string_view json) {
    separate();
    text_ += json;
    return *this;
  }
  template <typename T>
  JsonWriter& member(std::string_view name, const T& some) {
    return key(name).value(some);
  }

  const std::string& text() const { return text_; }

 private:
  void separate() {
    if (!first_) text_ += ',';
    first_ = false;
  }
  JsonWriter& begin(char mark) {
    separate();
    text_ += mark;
    first_ = true;
    return *this;
  }
  JsonWriter& end(char mark) {
    text_ += mark;
    first_ = false;
    return *this;
  }

  std::string text_;
  bool first_ = true;
};

}  // namespace quillon::apps
