#pragma once

#include <sqlite3.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "store/Value.h"
#include "support/RandomExpression.h"

namespace quillon::sim {

// SQLite with a database in memory, giving values as ours would be. Raises std::runtime_error with its message.
class Reference {
 public:
  Reference() {
    check(sqlite3_open(":memory:", &handle_));
    run("PRAGMA case_sensitive_like=ON");
  }
  ~Reference() { sqlite3_close(handle_); }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  void run(const std::string& statement) { check(sqlite3_exec(handle_, statement.c_str(), nullptr, nullptr, nullptr)); }

  std::vector<std::vector<store::Value>> rows(const std::string& statement, const std::vector<Kind>& kinds) {
    sqlite3_stmt* prepared = nullptr;
    check(sqlite3_prepare_v2(handle_, statement.c_str(), -1, &prepared, nullptr));
    std::vector<std::vector<store::Value>> result;
    int answer;
    while ((answer = sqlite3_step(prepared)) == SQLITE_ROW) {
      auto& row = result.emplace_back();
      for (std::size_t i = 0; i < kinds.size(); ++i) row.push_back(value(prepared, static_cast<int>(i), kinds[i]));
    }
    sqlite3_finalize(prepared);
    if (answer != SQLITE_DONE) check(answer);
    return result;
  }

 private:
  void check(int answer) {
    if (answer != SQLITE_OK) throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(handle_));
  }
  static store::Value value(sqlite3_stmt* row, int column, Kind kind) {
    if (sqlite3_column_type(row, column) == SQLITE_NULL) return {};
    switch (kind) {
      case Kind::whole:
        return static_cast<std::int64_t>(sqlite3_column_int64(row, column));
      case Kind::money:
        return Money::fromRaw(sqlite3_column_int64(row, column));
      case Kind::real:
        return sqlite3_column_double(row, column);
      case Kind::truth:
        return sqlite3_column_int64(row, column) != 0;
      default:
        break;
    }
    std::string text(reinterpret_cast<const char*>(sqlite3_column_text(row, column)),
                     static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
    if (kind == Kind::text) return text;
    return Date::parseIso(text);
  }

  sqlite3* handle_ = nullptr;
};

}  // namespace quillon::sim
