#pragma once

#include <memory>

#include "shell/Session.h"
#include "support/ScriptedPerson.h"
#include "support/SimDesktop.h"
#include "support/SimProcess.h"

namespace quillon::sim {

// The program as one person has it open, on a disk that another process works on, too.
class Workplace {
 protected:
  SimDisk disk_;
  SimClock clock_;
  SimProcess other_{disk_, clock_, {}};
  std::unique_ptr<store::FileSystem> files_ = disk_.process();
  ScriptedPerson person_;
  SimDesktop desktop_;
  shell::Session session_{store::Environment{*files_, clock_, "BEN", "PC", 99}, person_, desktop_};
};

}  // namespace quillon::sim
