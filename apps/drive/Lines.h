#pragma once

#include <optional>
#include <string>

namespace quillon::apps {

// The lines of a file descriptor, one at a time. A line that is too long is read to its end and not kept.
class Lines {
 public:
  static constexpr std::size_t kLongest = 1 << 20;  // bytes

  struct Line {
    std::string text;
    bool tooLong = false;
  };

  explicit Lines(int descriptor) : descriptor_(descriptor) {}

  // Without its line end; nothing at the end of input, also where reading fails. A last line needs no line end.
  std::optional<Line> next();

 private:
  bool more();

  int descriptor_;
  std::string buffer_;
  std::size_t at_ = 0;
};

}  // namespace quillon::apps
