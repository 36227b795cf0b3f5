#pragma once

#include <functional>
#include <utility>

#include "store/Errors.h"
#include "support/ForwardedFile.h"

namespace quillon::sim {

// A handle whose every change of locks can be watched, and refused with an error.
class WatchedFile final : public ForwardedFile {
 public:
  using ForwardedFile::ForwardedFile;
  void onChange(std::function<void()> hook) { hook_ = std::move(hook); }
  void raiseAtLock(int number) { raiseAt_ = number; }  // 1: the next; 0: none
  bool lock(std::uint64_t offset, std::uint64_t length, store::LockMode mode) override {
    if (raiseAt_ > 0 && --raiseAt_ == 0) throw store::IoError(store::Code::ioFailed, "no lock", 5);
    const bool done = ForwardedFile::lock(offset, length, mode);
    if (hook_) hook_();
    return done;
  }
  void unlock(std::uint64_t offset, std::uint64_t length) noexcept override {
    ForwardedFile::unlock(offset, length);
    if (hook_) hook_();
  }

 private:
  std::function<void()> hook_;
  int raiseAt_ = 0;
};

}  // namespace quillon::sim
