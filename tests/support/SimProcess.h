#pragma once

#include <memory>
#include <string>

#include "store/Database.h"
#include "store/Session.h"
#include "support/CodeOf.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"

namespace quillon::sim {

inline constexpr const char* kSharedFolder = "/shared";

// One simulated process that has the shared folder open.
class SimProcess {
 public:
  SimProcess(SimDisk disk, SimClock& clock, const store::Settings& settings, const std::string& user = "ANNA")
      : disk_(std::move(disk)),
        files_(disk_.process()),
        number_(disk_.lastProcess()),
        session_(
            std::make_unique<store::Session>(store::Environment{*files_, clock, user, "PC", number_ + 1}, settings)) {}
  void open() { database_ = std::make_unique<store::Database>(*session_, kSharedFolder); }
  void close() { database_.reset(); }
  store::Database& database() { return *database_; }
  int number() const { return number_; }
  void kill() { disk_.killProcess(number_); }  // what is left of it stays silent

 private:
  SimDisk disk_;
  std::unique_ptr<store::FileSystem> files_;
  int number_;
  std::unique_ptr<store::Session> session_;
  std::unique_ptr<store::Database> database_;
};

}  // namespace quillon::sim
