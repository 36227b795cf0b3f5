#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

// How long a harness runs, from the environment: QUILLON_SEED repeats one trial, QUILLON_SHARE scales the counts,
// QUILLON_LONG=1 takes the full aims.
namespace quillon::sim {

struct Trials {
  std::optional<std::uint64_t> seed;
  double share = 1;
  bool full = false;

  static Trials fromEnvironment() {
    Trials trials;
    if (const char* text = std::getenv("QUILLON_SEED")) trials.seed = std::strtoull(text, nullptr, 10);
    if (const char* text = std::getenv("QUILLON_SHARE")) trials.share = std::strtod(text, nullptr);
    if (const char* text = std::getenv("QUILLON_LONG")) trials.full = *text == '1';
    return trials;
  }
  std::uint64_t aim(std::uint64_t usual, std::uint64_t longRun) const {
    return static_cast<std::uint64_t>(share * static_cast<double>(full ? longRun : usual));
  }
  static std::string repeating(std::uint64_t seed, const char* program, const char* test) {
    return "repeat with: QUILLON_SEED=" + std::to_string(seed) + " build/release/bin/" + program +
           " --gtest_filter=" + test;
  }
};

}  // namespace quillon::sim
