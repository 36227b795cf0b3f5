#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "apps/drive/Json.h"
#include "apps/drive/Reply.h"

namespace quillon::apps {

class Program;

// A line that was read: what it asks for, which is one word of a table, and what goes with it.
struct Request {
  std::string_view verb;
  Json whole;

  const Json& about() const { return *whole.find(verb); }
  // The text behind the verb; RequestRefused when it is none.
  const std::string& name() const;
  bool flag(std::string_view name) const;  // true, or false when it is left out; RequestRefused for others
};

// RequestRefused for what is no request: no JSON, no object, an unknown verb, or one with what it does not take.
Request readRequest(std::string_view line);
// Whether it may come while a question waits.
bool mayComeBeforeAnswer(const Request& request);

// Does what a request asks of the screens and tables. What it was asked for is put into `reply` before anything else
// can be asked. Gives how a command ended, if it was one. Error and RequestRefused when it was not done at all.
std::optional<form::Ended> serve(Program& program, const Request& request, Reply& reply);

}  // namespace quillon::apps
