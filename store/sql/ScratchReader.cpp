#include "store/sql/ScratchReader.h"

#include <algorithm>
#include <cstring>

#include "store/Errors.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {

void ScratchReader::read(void* data, std::size_t size) {
  constexpr std::uint64_t kBuffer = 128 * 1024;
  auto* out = static_cast<char*>(data);
  while (size > 0) {
    if (used_ == buffer_.size()) {
      buffer_.resize(std::min(kBuffer, end_ - at_));
      used_ = 0;
      if (buffer_.empty() || file_.read(at_, buffer_.data(), buffer_.size()) != buffer_.size())
        throw StoreError(Code::ioFailed, "The scratch file of a statement is cut short. Try again.");
    }
    const std::size_t part = std::min(size, buffer_.size() - used_);
    std::memcpy(out, buffer_.data() + used_, part);
    out += part;
    size -= part;
    used_ += part;
    at_ += part;
  }
}

}  // namespace quillon::store::sql
