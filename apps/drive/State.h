#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "form/App.h"

namespace quillon::apps {

// Which rows of its grids a screen's state tells; none given: 50 around the active one.
struct StateRange {
  std::optional<std::uint64_t> from;
  std::size_t count = 50;
  std::optional<int> page;  // of its prepared pages
};

// A screen as JSON: everything that a person sees of it, and the values behind.
std::string stateOf(const form::App& app, form::Screen& screen, const StateRange& range);
std::string screensOf(const form::App& app);

}  // namespace quillon::apps
