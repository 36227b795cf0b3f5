#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bench/Ours.h"
#include "store/Value.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quillon::bench {

// Their side: a connection to a database file with a write-ahead log, full synchronisation and pages of 4096 bytes.
// Raises Error with their words.
class Theirs {
 public:
  explicit Theirs(const std::string& file, std::size_t cacheBytes = kCacheBytes);
  ~Theirs();
  Theirs(const Theirs&) = delete;
  Theirs& operator=(const Theirs&) = delete;

  void run(const std::string& statements);
  sqlite3* handle() { return handle_; }

 private:
  sqlite3* handle_ = nullptr;
};

// A statement that is prepared once and run many times.
class Prepared {
 public:
  Prepared(Theirs& side, const std::string& statement);
  ~Prepared();
  Prepared(const Prepared&) = delete;
  Prepared& operator=(const Prepared&) = delete;

  void bind(int place, std::int64_t number);        // from 1
  void bind(int place, const store::Value& value);  // a text must live until the next reset
  bool step();                                      // whether there is a row
  std::int64_t number(int column);                  // from 0
  std::string_view text(int column);                // until the next step or reset
  std::int64_t changed();                           // rows that the last change of this side changed
  void reset();
  void once() {
    step();
    reset();
  }

 private:
  Theirs& side_;
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace quillon::bench
