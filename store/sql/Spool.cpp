#include "store/sql/Spool.h"

#include <cstring>

#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kMemory = std::size_t{16} << 20;

}  // namespace

Spool::Spool(Scratch scratch) : scratch_(std::move(scratch)) {}
Spool::~Spool() = default;

void Spool::add(std::string_view record) {
  const auto size = static_cast<std::uint32_t>(record.size());
  bytes_.append(reinterpret_cast<const char*>(&size), sizeof size);
  bytes_ += record;
  if (bytes_.size() < kMemory) return;
  if (!file_) file_ = scratch_();
  file_->write(fileEnd_, std::as_bytes(std::span(bytes_)));
  fileEnd_ += bytes_.size();
  bytes_.clear();
}

void Spool::forEach(const std::function<void(std::string_view)>& each) {
  std::uint32_t size;
  if (fileEnd_ > 0) {
    std::string record;
    for (ScratchReader reader(*file_, 0, fileEnd_); !reader.atEnd();) {
      reader.read(&size, sizeof size);
      record.resize(size);
      reader.read(record.data(), size);
      each(record);
    }
  }
  for (std::size_t at = 0; at < bytes_.size(); at += size) {
    std::memcpy(&size, bytes_.data() + at, sizeof size);
    at += sizeof size;
    each(std::string_view(bytes_).substr(at, size));
  }
}

void Spool::clear() {
  bytes_.clear();
  fileEnd_ = 0;
}

}  // namespace quillon::store::sql
