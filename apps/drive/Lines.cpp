#include "apps/drive/Lines.h"

#include <unistd.h>

#include <cerrno>

namespace quillon::apps {

bool Lines::more() {
  buffer_.resize(1 << 16);
  at_ = 0;
  ssize_t got = 0;
  do got = ::read(descriptor_, buffer_.data(), buffer_.size());
  while (got < 0 && errno == EINTR);
  buffer_.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return got > 0;
}

std::optional<Lines::Line> Lines::next() {
  Line line;
  bool begun = false;
  while (at_ < buffer_.size() || more()) {
    begun = true;
    const std::size_t end = buffer_.find('\n', at_);
    const std::size_t stop = end == std::string::npos ? buffer_.size() : end;
    if (line.text.size() + (stop - at_) > kLongest) line.tooLong = true;
    if (line.tooLong)
      line.text.clear();
    else
      line.text.append(buffer_, at_, stop - at_);
    at_ = stop + (end == std::string::npos ? 0 : 1);
    if (end != std::string::npos) break;
  }
  if (!begun) return std::nullopt;
  if (line.text.ends_with('\r')) line.text.pop_back();
  return line;
}

}  // namespace quillon::apps
