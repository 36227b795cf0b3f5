#pragma once

#include "store/Environment.h"
#include "store/vfs/DiskFileSystem.h"

namespace quillon::apps {

// The store's environment on this machine: its disk and clock, and this process's user and machine name.
class LocalEnvironment {
 public:
  LocalEnvironment();
  LocalEnvironment(const LocalEnvironment&) = delete;
  LocalEnvironment& operator=(const LocalEnvironment&) = delete;

  // Lives as long as this object.
  const store::Environment& get() const { return environment_; }

 private:
  store::DiskFileSystem files_;
  store::Environment environment_;
};

}  // namespace quillon::apps
