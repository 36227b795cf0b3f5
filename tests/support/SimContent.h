#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "store/vfs/ChunkedBytes.h"
#include "support/SeededRandom.h"

namespace quillon::sim {

using store::Bytes;
using store::ChunkedBytes;

// What a power cut does to one unsynced operation. The last three tear a write at 512-byte sectors.
enum class Fate : std::uint8_t {
  kept,
  lost,
  head,       // the first half of its sectors arrived, the file ends there
  tail,       // the other half; where the file grew, the rest are zeros
  scattered,  // each sector by chance
};

// The bytes of one file as the system shows them and as the platter has them.
//
// Method: every change goes to the shown bytes at once and waits in a list; a sync makes the list durable. A failed
// sync leaves the shown bytes as they are but calls them clean, as kernels do: no later sync writes them, so each of
// those operations may be found or missing after a power cut for as long as nothing newer was synced over it.
class SimContent {
 public:
  static constexpr std::uint64_t kSector = 512;

  explicit SimContent(bool tracked = true) : tracked_(tracked) {}  // a file without a name needs no history
  explicit SimContent(ChunkedBytes durable) : current_(durable), durable_(std::move(durable)) {}

  const ChunkedBytes& current() const { return current_; }
  void write(std::uint64_t offset, Bytes data);
  void truncate(std::uint64_t size);
  void reserve(std::uint64_t size);
  void sync();
  void failSync();

  // The operations that a power cut may lose, oldest first.
  std::size_t pendingCount() const;
  // How many sectors each of them touches; 0 for a change of length.
  std::vector<std::size_t> pendingSectors() const;
  // The durable bytes after a cut with one fate for each pending operation.
  ChunkedBytes afterCut(std::span<const Fate> fates, SeededRandom& random) const;

 private:
  enum class Kind : std::uint8_t { write, truncate, reserve };
  enum class State : std::uint8_t { dirty, clean, synced };
  struct Operation {
    Kind kind;
    State state;
    std::uint64_t offset;  // of a length change: the length
    std::shared_ptr<const std::vector<std::byte>> data;
    std::uint64_t end() const { return offset + (data ? data->size() : 0); }
  };

  static void apply(ChunkedBytes& bytes, const Operation& operation);
  static void tear(ChunkedBytes& bytes, const Operation& operation, Fate fate, SeededRandom& random);
  bool overtaken(std::size_t index) const;
  void record(Kind kind, std::uint64_t offset, Bytes data);

  bool tracked_ = true;
  ChunkedBytes current_;
  ChunkedBytes durable_;
  std::vector<Operation> operations_;
};

}  // namespace quillon::sim
