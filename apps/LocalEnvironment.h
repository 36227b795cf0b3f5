#pragma once

#include <memory>
#include <optional>

#include "base/Date.h"
#include "store/Environment.h"
#include "store/vfs/DiskFileSystem.h"

namespace quillon::apps {

// The store's environment on this machine: its disk and clock, and this process's user and machine name.
class LocalEnvironment {
 public:
  // `today`: the day that its calendar shows, always; otherwise that of the machine.
  explicit LocalEnvironment(std::optional<Date> today = {});
  LocalEnvironment(const LocalEnvironment&) = delete;
  LocalEnvironment& operator=(const LocalEnvironment&) = delete;

  // Lives as long as this object.
  const store::Environment& get() const { return environment_; }

 private:
  store::DiskFileSystem files_;
  std::unique_ptr<store::Clock> givenDay_;
  store::Environment environment_;
};

}  // namespace quillon::apps
