#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "store/Environment.h"

namespace quillon::store {

class Database;
class File;
class MemoryFileSystem;
class PageCache;
class SpillFile;

enum class LockProtocol { pessimistic };
enum class SessionType { local, remote };

// The engine's settings, made once at start.
struct Settings {
  int lockRetryCount = 15;  // tries of a lock before it fails
  int lockWaitTime = 100;   // milliseconds between tries
  LockProtocol lockProtocol = LockProtocol::pessimistic;
  int progressSteps = 20;              // progress callbacks of a long operation
  bool strictChangeDetection = false;  // true: cursors look for other processes' changes at every move
  std::size_t maxTableIndexBufferSize =
      196608;  // bytes; kept for its place in the settings: the page cache serves all tables
  bool createTempTablesInDatabase = true;  // scratch of transactions goes to the company folder, not privateDir
  std::string privateDir;                  // the user's scratch folder
  SessionType sessionType = SessionType::local;
  std::string remoteHost, remoteAddress;
  std::size_t cacheBytes = std::size_t{64} << 20;
  std::uint64_t journalBytes = std::uint64_t{32} << 20;  // the journal is emptied when it is longer
};

// The store of one process: its settings, its page cache, and the database of tables in memory.
class Session {
 public:
  explicit Session(const Environment& environment, Settings settings = {});
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  const Environment& environment() const { return environment_; }
  Settings& settings() { return settings_; }
  PageCache& cache() { return *cache_; }
  // Tables named "\Memory\Name"; they end with the session.
  Database& memory();
  // Scratch for transactions larger than memory, made when first needed in `folder` or the private folder.
  SpillFile* spill(const std::string& folder);
  // A scratch file of its own, for what a statement cannot keep in memory: in the folder that is open, or in the
  // private folder, as the settings say; in memory where there is neither.
  std::unique_ptr<File> scratch();
  void setScratchFolder(std::string folder) { scratchFolder_ = std::move(folder); }  // empty: none
  const std::string& scratchFolder() const { return scratchFolder_; }

 private:
  std::string scratchPlace() const;  // empty: none

  Environment environment_;
  Settings settings_;
  std::string scratchFolder_;
  std::unique_ptr<PageCache> cache_;
  std::unique_ptr<MemoryFileSystem> memoryFiles_;
  std::unique_ptr<Database> memory_;
  std::unique_ptr<SpillFile> spill_;
};

}  // namespace quillon::store
