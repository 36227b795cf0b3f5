// The program put together as its own entry does, to the moment when a person may begin.
#include "shell/Start.h"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <vector>

#include "base/Errors.h"
#include "bench/PeakMemory.h"
#include "bench/desktop/Frames.h"
#include "bench/desktop/Windows.h"
#include "desktop/Desk.h"
#include "ledger/Screens.h"
#include "maintenance/Screens.h"
#include "platform/GivenDesktop.h"
#include "platform/LinuxDesktop.h"
#include "shell/Session.h"
#include "store/vfs/DiskFileSystem.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 11;

double now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

struct Started {
  double milliseconds, memory;
};

Started start(const std::string& command) {
  const double from = now();
  FILE* child = ::popen(command.c_str(), "r");
  if (child == nullptr) throw Error("No process can be started");
  std::array<double, 2> told{};
  const bool ok = std::fscanf(child, "%lf %lf", &told[0], &told[1]) == 2;
  if (::pclose(child) != 0 || !ok) throw Error("The program did not start: " + command);
  return {(told[0] - from) * 1000, told[1]};
}

}  // namespace

int startOnce(int count, char** words) {
  if (count != 4) return 2;
  desktop::Desk desk(count, words);
  platform::LinuxDesktop machine;
  platform::GivenDesktop given(machine, {.folder = words[3]});
  store::DiskFileSystem disk;
  shell::Session session({disk, store::systemClock(), "bench", "local", ::getpid()}, desk.person(), given);
  shell::registerScreens(session);
  ledger::registerScreens(session);
  maintenance::registerScreens(session);
  shell::prepareStart(session);
  session.app().open("TfrmSplash");
  form::Screen& main = session.app().open("TfrmQuillon");
  const Frames frames("frmQuillon", Frames::Of::anything);
  std::optional<int> before;
  const auto enter = [&] {
    session.app().run(main, "frmQuillon", [&] { shell::enterAtStart(session, words[2], false); });
    before = frames.count();
  };
  desk.run(session.app(), given, enter, [&] { return before && frames.count() > *before; });
  if (!session.menusEnabled || !session.hasCompany()) return 1;
  std::printf("%.6f %.3f\n", now(), peakMemory());
  std::fflush(stdout);
  ::_exit(0);  // leaving is not measured
}

void starts(const std::string& program, const std::string& folder, Report& report) {
  const std::string command = program + " --start '" + folder + "' '" + folder + "/settings'";
  start(command);
  std::vector<double> times;
  double memory = 0;
  for (int round = 0; round < kRounds; ++round) {
    const Started started = start(command);
    times.push_back(started.milliseconds);
    memory = std::max(memory, started.memory);
  }
  std::sort(times.begin(), times.end());
  report.add({.name = "start",
              .ours = times[kRounds / 2],
              .unit = "ms",
              .note = "worst of " + std::to_string(kRounds) + " " + std::to_string(static_cast<int>(times.back()))});
  report.add({.name = "start-memory", .ours = memory, .unit = "MiB"});
}

}  // namespace quillon::bench
