#include "support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <system_error>

namespace quillon::sim {
namespace {

[[noreturn]] void raiseSystem(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

[[noreturn]] void run(const std::function<void(const ChildPipe&)>& body, const ChildPipe& pipe) {
  ChildMessage failed;
  failed.kind = ChildProcess::kFailed;
  try {
    body(pipe);
    ::_exit(0);
  } catch (const std::exception& error) {
    failed.setText(error.what());
  } catch (...) {
    failed.setText("raised something unknown");
  }
  pipe.tell(failed);
  ::_exit(1);
}

}  // namespace

void ChildMessage::setText(const std::string& words) {
  std::memset(text, 0, sizeof text);
  words.copy(text, sizeof text - 1);
}

void ChildPipe::tell(const ChildMessage& message) const {
  static_assert(sizeof message <= 512, "a write to a pipe up to this size is never split");
  while (::write(descriptor_, &message, sizeof message) != static_cast<ssize_t>(sizeof message))
    if (errno != EINTR) ::_exit(2);
}

ChildProcess::ChildProcess(const std::function<void(const ChildPipe&)>& body) {
  int ends[2];
  if (::pipe(ends) != 0) raiseSystem("pipe");
  process_ = ::fork();
  if (process_ < 0) raiseSystem("fork");
  if (process_ == 0) {
    ::close(ends[0]);
    run(body, ChildPipe(ends[1]));
  }
  ::close(ends[1]);
  descriptor_ = ends[0];
  ::fcntl(descriptor_, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
  if (!reaped_) kill([](const ChildMessage&) {});
  ::close(descriptor_);
}

bool ChildProcess::drain(const std::function<void(const ChildMessage&)>& take) {
  while (true) {
    ChildMessage message;
    const ssize_t got = ::read(descriptor_, &message, sizeof message);
    if (got == static_cast<ssize_t>(sizeof message)) {
      take(message);
    } else if (got == 0) {
      reap();
      return false;
    } else if (got < 0 && errno == EAGAIN) {
      return true;
    } else if (got > 0 || errno != EINTR) {
      raiseSystem("read from a pipe");
    }
  }
}

bool ChildProcess::finish(const std::function<void(const ChildMessage&)>& take) {
  while (drain(take)) {
    pollfd wait{descriptor_, POLLIN, 0};
    ::poll(&wait, 1, -1);
  }
  return endedWell();
}

void ChildProcess::kill(const std::function<void(const ChildMessage&)>& take) {
  if (reaped_) return;
  ::kill(process_, SIGKILL);
  // Only when it is gone are its locks gone too.
  reap();
  drain(take);
}

void ChildProcess::stop() { ::kill(process_, SIGSTOP); }
void ChildProcess::goOn() { ::kill(process_, SIGCONT); }

std::int64_t ChildProcess::residentBytes() const {
  std::ifstream file("/proc/" + std::to_string(process_) + "/statm");
  std::int64_t whole = 0, resident = 0;
  file >> whole >> resident;
  return resident * ::sysconf(_SC_PAGESIZE);
}

void ChildProcess::reap() {
  while (!reaped_ && ::waitpid(process_, &status_, 0) < 0)
    if (errno != EINTR) raiseSystem("waitpid");
  reaped_ = true;
}

}  // namespace quillon::sim
