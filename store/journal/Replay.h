#pragma once

#include <map>
#include <set>
#include <tuple>

#include "store/journal/CommitProtocol.h"

namespace quillon::store {

class File;

// Writes journal records into the table files they belong to, through handles of its own. Under the commit lock.
class Replay {
 public:
  explicit Replay(CommitProtocol& protocol);
  ~Replay();  // releases the apply locks

  // Records behind `from` whose pages shall be brought up; without a call all are.
  void onlyPagesOf(const JournalRecord& record);
  // Walks the journal from its start to `end`, writing the wanted pages in order. Repeating it is harmless.
  void run(const JournalSpot& end);
  void syncFiles();

 private:
  struct Target;
  Target* target(const JournalTable& table, std::uint64_t commit);
  void lockTargets(const JournalSpot& end);
  void writePage(Target& target, const JournalPage& page, std::uint64_t commit, const std::byte* data);
  bool wants(const JournalRecord& record, const JournalPage& page) const;

  CommitProtocol& protocol_;
  bool all_ = true;
  std::set<std::tuple<std::uint64_t, std::uint8_t, PageNo>> wanted_;
  std::map<std::pair<std::string, std::uint64_t>, std::unique_ptr<Target>> targets_;  // by name: the lock order
};

}  // namespace quillon::store
