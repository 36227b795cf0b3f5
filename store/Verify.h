#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::store {

class Database;
struct Environment;

// A fault that a check found, in words that name file and page where there is one.
struct Finding {
  std::string table;  // empty: of the folder or its journal
  std::string text;
};

struct TableReport {
  std::string table;
  std::uint64_t rows = 0;   // that could be met
  std::uint64_t pages = 0;  // over the three files
};

struct VerifyReport {
  std::vector<TableReport> tables;  // that could be opened
  std::vector<Finding> findings;
  bool clean() const { return findings.empty(); }
};

using VerifyProgress = std::function<void(std::string_view table, int percent)>;

// Checks a company from the pages up and tells every fault: checksums, numbers and stamps of all pages, every tree and
// count, every record, that each index has exactly the keys of the rows, uniqueness, counters, every content of a memo
// or blob field, and that each page and block is used exactly once. What only follows from a fault already told is left
// out where that can be known, and after a hundred findings a table's others are only counted.
//
// Opens the folder as any process does, which brings an interrupted publish to its end; otherwise it changes nothing.
// Holds each table steady while it checks it: others can read, and wait with saving to it. Files left behind by an
// operation that was broken off ("~new") are no faults. Raises noSuchFolder; everything else is a finding.
VerifyReport verifyFolder(const Environment& environment, const std::string& folder,
                          const VerifyProgress& progress = {});
// The same for a database that is open, as it sees the tables itself: a cached page that differs from the disk is a
// fault too. Publishes what was gathered. badTransaction while a transaction is open.
VerifyReport verifyOpen(Database& database, const VerifyProgress& progress = {});

}  // namespace quillon::store
