#include "store/sql/Sorter.h"

#include <algorithm>

#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kRunBuffer = 256 * 1024;

}  // namespace

// A sorted run in the scratch file, read through a buffer: u32 key size, u32 payload size, key, payload, ...
class Sorter::Run {
 public:
  Run(File& file, std::uint64_t start, std::uint64_t end) : reader_(file, start, end) {}
  bool next() {
    if (reader_.atEnd()) return false;
    std::uint32_t sizes[2];
    reader_.read(sizes, sizeof sizes);
    key_.resize(sizes[0]);
    payload_.resize(sizes[1]);
    reader_.read(key_.data(), key_.size());
    reader_.read(payload_.data(), payload_.size());
    return true;
  }
  const std::string& key() const { return key_; }
  const std::string& payload() const { return payload_; }

 private:
  ScratchReader reader_;
  std::string key_, payload_;
};

Sorter::Sorter(Scratch scratch, std::size_t memory) : scratch_(std::move(scratch)), memory_(memory) {}
Sorter::~Sorter() = default;

void Sorter::add(std::string_view key, std::string_view payload) {
  entries_.push_back(
      {bytes_.size(), static_cast<std::uint32_t>(key.size()), static_cast<std::uint32_t>(payload.size())});
  bytes_ += key;
  bytes_ += payload;
  if (bytes_.size() + entries_.size() * sizeof(Entry) > memory_) writeRun();
}

void Sorter::sortEntries() {
  std::stable_sort(entries_.begin(), entries_.end(),
                   [&](const Entry& a, const Entry& b) { return keyOf(a) < keyOf(b); });
}

void Sorter::writeRun() {
  sortEntries();
  if (!file_) file_ = scratch_();
  const std::uint64_t start = fileEnd_;
  std::string buffer;
  const auto flush = [&] {
    file_->write(fileEnd_, std::as_bytes(std::span(buffer)));
    fileEnd_ += buffer.size();
    buffer.clear();
  };
  for (const Entry& entry : entries_) {
    const std::uint32_t sizes[2] = {entry.keySize, entry.payloadSize};
    buffer.append(reinterpret_cast<const char*>(sizes), sizeof sizes);
    buffer += keyOf(entry);
    buffer += payloadOf(entry);
    if (buffer.size() > kRunBuffer) flush();
  }
  flush();
  runs_.push_back(std::make_unique<Run>(*file_, start, fileEnd_));
  entries_.clear();
  bytes_.clear();
}

void Sorter::forEach(const std::function<bool(std::string_view)>& payload) {
  if (runs_.empty()) {
    sortEntries();
    for (const Entry& entry : entries_)
      if (!payload(payloadOf(entry))) return;
    return;
  }
  writeRun();
  // The smallest key on top; among equals the earlier run, which was added earlier.
  std::vector<std::size_t> heap;
  const auto later = [&](std::size_t a, std::size_t b) {
    const int order = runs_[a]->key().compare(runs_[b]->key());
    return order > 0 || (order == 0 && a > b);
  };
  for (std::size_t i = 0; i < runs_.size(); ++i)
    if (runs_[i]->next()) heap.push_back(i);
  std::make_heap(heap.begin(), heap.end(), later);
  while (!heap.empty()) {
    std::pop_heap(heap.begin(), heap.end(), later);
    Run& run = *runs_[heap.back()];
    if (!payload(run.payload())) return;
    if (run.next())
      std::push_heap(heap.begin(), heap.end(), later);
    else
      heap.pop_back();
  }
}

}  // namespace quillon::store::sql
