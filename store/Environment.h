#pragma once

#include <cstdint>
#include <string>

namespace quillon::store {

class FileSystem;

// Time as the store sees it; a simulation puts its own in.
class Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock() = default;
  virtual std::int64_t milliseconds() = 0;            // steady; any start; may be coarse (5 ms)
  virtual std::int64_t unixSeconds() = 0;             // calendar time, UTC
  virtual void sleep(std::int64_t microseconds) = 0;  // other processes run meanwhile
};

// The real clock; lives as long as the program.
Clock& systemClock();

// What the store runs on. The references must outlive every session made with it.
struct Environment {
  FileSystem& files;
  Clock& clock;
  std::string user;  // shown to others who wait for our locks
  std::string machine;
  std::int64_t process = 0;
};

}  // namespace quillon::store
