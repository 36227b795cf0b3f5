#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/RandomExpression.h"

namespace quillon::sim {

// A statement in both dialects. Both give the same rows in the same order; what ours gives for `columns[i]` is of that
// kind or null.
struct QueryPair {
  std::string ours, theirs;
  std::vector<Kind> columns;
  std::map<std::string, store::Value> parameters;
  std::string changed;  // the table that it changes; empty for a SELECT
};

// Statements by chance over tables that have in SQLite a whole number `rid` that ascends in the order of entry.
class RandomQuery {
 public:
  // With accents, nothing is made whose outcome hangs on which letters differ in case only.
  RandomQuery(SeededRandom& random, std::vector<QueryTable> tables, bool accents)
      : random_(random), tables_(std::move(tables)), accents_(accents), expressions_(random, tables_, accents) {}

  QueryPair select();
  QueryPair change();

 private:
  struct Key {
    std::string ours, theirs;  // theirs over c1, c2, ... when it names a column of the result
    bool descending = false, text = false, ofResult = false;
  };
  // One SELECT: ours up to HAVING; theirs as a table of c1.., the sort keys k1.. and `o`, its place in the order.
  struct Core {
    std::string ours, theirs;
    std::vector<Kind> kinds;
    std::vector<Key> keys;
  };
  struct Joined {
    QueryScope scope;
    std::string ours, theirs, order;
    std::size_t rows = 1;
  };

  Core core(const std::vector<Kind>* wanted, bool withKeys, bool simple);
  Joined from(bool simple);
  void addSource(Joined& joined, bool simple);
  std::string derived(const std::string& alias, QueryScope& scope, std::string& theirs);
  std::vector<Twin> groupLeaves(std::vector<Twin>& groupBy);
  std::vector<Twin> items(const std::vector<Kind>* wanted, const Joined& joined, bool simple, std::string& star);
  std::vector<Key> keys(const std::vector<Twin>& items, const std::vector<std::string>& names, bool plainStar);
  QueryPair query(const std::vector<Kind>* wanted, bool simple, std::size_t most);
  QueryPair update(const QueryTable& table);
  QueryPair remove(const QueryTable& table);
  QueryPair insert(const QueryTable& table);

  SeededRandom& random_;
  std::vector<QueryTable> tables_;
  bool accents_;
  RandomExpression expressions_;
};

}  // namespace quillon::sim
