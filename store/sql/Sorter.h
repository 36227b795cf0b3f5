#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/sql/ScratchReader.h"

namespace quillon::store::sql {

// Sorts pairs of key and payload by the bytes of the key; equal keys keep the order in which they were added. Beyond
// `memory` bytes it writes sorted runs to a scratch file and merges them.
class Sorter {
 public:
  Sorter(Scratch scratch, std::size_t memory);
  ~Sorter();

  void add(std::string_view key, std::string_view payload);
  // Once, after all adds. False from the callback ends it.
  void forEach(const std::function<bool(std::string_view payload)>& payload);

 private:
  struct Entry {
    std::size_t at;
    std::uint32_t keySize, payloadSize;
  };
  class Run;
  std::string_view keyOf(const Entry& entry) const { return std::string_view(bytes_).substr(entry.at, entry.keySize); }
  std::string_view payloadOf(const Entry& entry) const {
    return std::string_view(bytes_).substr(entry.at + entry.keySize, entry.payloadSize);
  }
  void sortEntries();
  void writeRun();

  Scratch scratch_;
  std::size_t memory_;
  std::string bytes_;
  std::vector<Entry> entries_;
  std::unique_ptr<File> file_;
  std::uint64_t fileEnd_ = 0;
  std::vector<std::unique_ptr<Run>> runs_;
};

}  // namespace quillon::store::sql
