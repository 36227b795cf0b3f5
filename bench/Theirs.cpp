#include "bench/Theirs.h"

#include <sqlite3.h>

#include "base/Errors.h"

namespace quillon::bench {
namespace {

constexpr int kBusyTimeout = 60'000;  // milliseconds

void check(sqlite3* handle, int code) {
  if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE) throw Error(sqlite3_errmsg(handle));
}

}  // namespace

Theirs::Theirs(const std::string& file, std::size_t cacheBytes) {
  check(handle_, sqlite3_open(file.c_str(), &handle_));
  check(handle_, sqlite3_busy_timeout(handle_, kBusyTimeout));
  run("PRAGMA page_size=4096; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-" +
      std::to_string(cacheBytes >> 10));
}

Theirs::~Theirs() { sqlite3_close(handle_); }

void Theirs::run(const std::string& statements) {
  check(handle_, sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr));
}

Prepared::Prepared(Theirs& side, const std::string& statement) : side_(side) {
  check(side_.handle(),
        sqlite3_prepare_v3(side_.handle(), statement.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr));
}

Prepared::~Prepared() { sqlite3_finalize(statement_); }

void Prepared::bind(int place, std::int64_t number) { sqlite3_bind_int64(statement_, place, number); }

void Prepared::bind(int place, const store::Value& value) {
  using Kind = store::Value::Kind;
  switch (value.kind()) {
    case Kind::null:
      sqlite3_bind_null(statement_, place);
      return;
    case Kind::boolean:
      return bind(place, std::int64_t{value.asBool()});
    case Kind::whole:
      return bind(place, value.asInt64());
    case Kind::money:
      return bind(place, value.asMoney().raw());
    case Kind::date:
      return bind(place, std::int64_t{value.asDate().days()});
    case Kind::text: {
      const std::string& text = value.asText();
      sqlite3_bind_text(statement_, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
      return;
    }
    default:
      throw Error("A value that no table here has");
  }
}

bool Prepared::step() {
  const int code = sqlite3_step(statement_);
  check(side_.handle(), code);
  return code == SQLITE_ROW;
}

std::int64_t Prepared::number(int column) { return sqlite3_column_int64(statement_, column); }

std::string_view Prepared::text(int column) {
  const unsigned char* bytes = sqlite3_column_text(statement_, column);
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::int64_t Prepared::changed() { return sqlite3_changes64(side_.handle()); }

void Prepared::reset() { sqlite3_reset(statement_); }

}  // namespace quillon::bench
