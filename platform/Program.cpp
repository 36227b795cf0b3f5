#include "platform/Program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>

#include "platform/Descriptor.h"
#include "platform/SystemError.h"

extern char** environ;

namespace quillon::platform {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::string_view kEnglish = "LC_ALL=C.UTF-8";

// What the child starts with; signals as a program expects them, whatever this process made of them.
class SpawnPlan {
 public:
  SpawnPlan() {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    sigaddset(&signals, SIGPIPE);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    ::posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0);
  }
  ~SpawnPlan() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  void outputTo(int descriptor) {
    for (const int standard : {1, 2}) ::posix_spawn_file_actions_adddup2(&actions_, descriptor, standard);
  }
  void outputNowhere() {
    for (const int standard : {1, 2}) ::posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", O_WRONLY, 0);
  }
  void ownSession() { flags_ |= POSIX_SPAWN_SETSID; }
  void ownGroup() { flags_ |= POSIX_SPAWN_SETPGROUP; }

  // The process, or null when there is no such program.
  std::optional<pid_t> start(const CommandLine& command, char** environment) {
    std::vector<char*> arguments;
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    ::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags_));
    pid_t process = -1;
    const int error =
        ::posix_spawnp(&process, arguments.front(), &actions_, &attributes_, arguments.data(), environment);
    if (error == ENOENT || error == EACCES || error == ENOTDIR) return std::nullopt;
    if (error != 0) throw systemError("start", command.front(), error);
    return process;
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
  int flags_ = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
};

int statusOf(int waited) { return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited); }

// Null when it has not ended by then.
std::optional<int> waitFor(pid_t process, Clock::time_point end) {
  for (;;) {
    int status = 0;
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    if (ended == process) return statusOf(status);
    if (ended < 0 && errno != EINTR) return 0;  // reaped by somebody else; it has ended, and nobody can say how
    if (Clock::now() >= end) return std::nullopt;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

// Reads until every writer is gone; false when that takes too long.
bool readAll(int pipe, std::string& output, Clock::time_point end) {
  std::array<char, 4096> buffer;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd waiting{pipe, POLLIN, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return false;
    const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
    if (count == 0) return true;
    if (count > 0) output.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

std::optional<ProgramResult> run(const CommandLine& command, std::chrono::milliseconds patience) {
  const auto end = Clock::now() + patience;
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw systemError("start", command.front(), errno);
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);

  std::vector<char*> environment;
  for (char** entry = environ; *entry; ++entry)
    if (std::strncmp(*entry, "LC_ALL=", 7) != 0 && std::strncmp(*entry, "LANGUAGE=", 9) != 0)
      environment.push_back(*entry);
  environment.push_back(const_cast<char*>(kEnglish.data()));
  environment.push_back(nullptr);

  SpawnPlan plan;
  plan.outputTo(writing.get());
  plan.ownGroup();
  const auto process = plan.start(command, environment.data());
  if (!process) return std::nullopt;
  writing.close();
  ProgramResult result;
  const bool whole = readAll(reading.get(), result.output, end);
  const auto status = whole ? waitFor(*process, end) : std::nullopt;
  if (!status) {
    ::kill(-*process, SIGKILL);  // with the programs that it started itself
    waitFor(*process, Clock::time_point::max());
    throw Error("The program '" + command.front() + "' does not answer");
  }
  result.status = *status;
  return result;
}

std::optional<DetachedProgram> DetachedProgram::start(const CommandLine& command) {
  SpawnPlan plan;
  plan.outputNowhere();
  plan.ownSession();
  const auto process = plan.start(command, environ);
  if (!process) return std::nullopt;
  return DetachedProgram(*process);
}

std::optional<int> DetachedProgram::wait(std::chrono::milliseconds patience) {
  return waitFor(process_, Clock::now() + patience);
}

}  // namespace quillon::platform
