#pragma once

#include <unistd.h>

#include <string>

#include "store/Database.h"
#include "store/Session.h"
#include "store/vfs/DiskFileSystem.h"

namespace quillon::bench {

inline constexpr std::size_t kCacheBytes = std::size_t{64} << 20;  // of both sides where nothing else is said

// Our side: a session of its own with one folder open.
struct Ours {
  explicit Ours(const std::string& folder, std::size_t cacheBytes = kCacheBytes)
      : session(store::Environment{files, store::systemClock(), "bench", "local", ::getpid()},
                settingsWith(cacheBytes)),
        database(session, folder) {}

  static store::Settings settingsWith(std::size_t cacheBytes) {
    store::Settings settings;
    settings.cacheBytes = cacheBytes;
    return settings;
  }

  store::DiskFileSystem files;
  store::Session session;
  store::Database database;
};

}  // namespace quillon::bench
