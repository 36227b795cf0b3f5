#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "store/sql/ScratchReader.h"

namespace quillon::store::sql {

// Keeps records in the order in which they were added. What is more than a few MiB goes to a scratch file.
class Spool {
 public:
  explicit Spool(Scratch scratch);
  ~Spool();
  void add(std::string_view record);
  // Once more or many times, after all adds. The record lives until the callback returns.
  void forEach(const std::function<void(std::string_view record)>& each);
  void clear();

 private:
  Scratch scratch_;
  std::string bytes_;  // u32 size, record, ...
  std::unique_ptr<File> file_;
  std::uint64_t fileEnd_ = 0;
};

}  // namespace quillon::store::sql
