#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>

namespace quillon::sim {

// What a child process tells its parent; written whole or not at all, also when the child is killed.
struct ChildMessage {
  std::uint32_t kind = 0;
  std::int32_t seq = 0;
  std::int64_t number = 0;
  char text[240] = {};
  void setText(const std::string& words);
};

// The child's end of the pipe. Waits while the pipe is full; when the parent is gone it ends the process.
class ChildPipe {
 public:
  explicit ChildPipe(int descriptor) : descriptor_(descriptor) {}
  void tell(const ChildMessage& message) const;

 private:
  int descriptor_;
};

// A forked process that runs a function and ends without a trace of the parent's destructors. Only made by a process
// with one thread and without open databases, whose handles and locks it would share.
class ChildProcess {
 public:
  static constexpr std::uint32_t kFailed = 0xFFFF;  // sent when the function raises; its text says why

  explicit ChildProcess(const std::function<void(const ChildPipe&)>& body);
  ~ChildProcess();  // kills it when it still runs
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  int descriptor() const { return descriptor_; }  // for poll
  // Takes what was told so far; waits for nothing. False: the process has ended and everything was taken.
  bool drain(const std::function<void(const ChildMessage&)>& take);
  // Takes everything until the process ends by itself. Whether it ended well.
  bool finish(const std::function<void(const ChildMessage&)>& take);
  // Ends it where it stands and takes what it told before.
  void kill(const std::function<void(const ChildMessage&)>& take);
  void stop();  // as a laptop that goes to sleep, until it goes on
  void goOn();
  std::int64_t residentBytes() const;  // 0 when it has ended
  bool endedWell() const { return reaped_ && status_ == 0; }

 private:
  void reap();

  pid_t process_ = -1;
  int descriptor_ = -1;
  bool reaped_ = false;
  int status_ = 0;
};

}  // namespace quillon::sim
