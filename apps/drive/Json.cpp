#include "apps/drive/Json.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "base/Errors.h"

namespace quillon::apps {
namespace {

constexpr std::size_t kDeepest = 32;
constexpr std::size_t kMostNames = 1000;  // of an object

// Builds the value from the library's events.
class Builder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return put({}); }
  bool boolean(bool truth) override { return put({.kind = Json::Kind::boolean, .truth = truth}); }
  bool number_integer(number_integer_t number) override { return putNumber(std::to_string(number)); }
  bool number_unsigned(number_unsigned_t number) override { return putNumber(std::to_string(number)); }
  bool number_float(number_float_t /*number*/, const string_t& written) override { return putNumber(written); }
  bool string(string_t& text) override { return put({.kind = Json::Kind::text, .text = std::move(text)}); }
  bool binary(binary_t& /*bytes*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return open(Json::Kind::object); }
  bool start_array(std::size_t /*size*/) override { return open(Json::Kind::array); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    if (open_.back().members.size() == kMostNames) throw Error("An object has more than 1000 members");
    if (open_.back().find(name) != nullptr) throw Error("\"" + name + "\" stands there twice");
    names_.back() = std::move(name);
    return true;
  }
  bool parse_error(std::size_t position, const std::string& /*token*/, const nlohmann::detail::exception&) override {
    throw Error("This is no JSON; it goes wrong at byte " + std::to_string(position));
  }

  Json result;

 private:
  bool putNumber(std::string written) { return put({.kind = Json::Kind::number, .text = std::move(written)}); }
  bool put(Json value) {
    if (open_.empty())
      result = std::move(value);
    else
      open_.back().members.emplace_back(std::exchange(names_.back(), {}), std::move(value));
    return true;
  }
  bool open(Json::Kind kind) {
    if (open_.size() == kDeepest) throw Error("This is nested deeper than " + std::to_string(kDeepest));
    open_.push_back({.kind = kind});
    names_.emplace_back();
    return true;
  }
  bool close() {
    Json whole = std::move(open_.back());
    open_.pop_back();
    names_.pop_back();
    return put(std::move(whole));
  }

  std::vector<Json> open_;
  std::vector<std::string> names_;  // of the member that comes next in each of them
};

}  // namespace

const Json* Json::find(std::string_view name) const {
  const auto found = std::ranges::find(members, name, &std::pair<std::string, Json>::first);
  return found == members.end() ? nullptr : &found->second;
}

Json parseJson(std::string_view text) {
  Builder builder;
  nlohmann::json::sax_parse(text, &builder);
  return std::move(builder.result);
}

std::int64_t wholeOf(const Json& number, std::string_view what) {
  std::int64_t whole = -1;
  const char* end = number.text.data() + number.text.size();
  const auto [stop, error] = std::from_chars(number.text.data(), end, whole);
  if (!number.is(Json::Kind::number) || error != std::errc() || stop != end || whole < 0)
    throw Error("\"" + std::string(what) + "\" takes a whole number from 0");
  return whole;
}

}  // namespace quillon::apps
