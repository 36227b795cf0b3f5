#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "store/Value.h"
#include "support/SeededRandom.h"

// Expressions by chance, each written twice: in our dialect, and in that of SQLite so that it must give the same.
//
// Theirs keeps amounts as whole ten-thousandths, dates as ISO texts and truth as 0 and 1; a condition of theirs is
// always 0 or 1, since ours never are unknown.
namespace quillon::sim {

enum class Kind : std::uint8_t { whole, money, real, text, date, truth };
inline constexpr std::size_t kKinds = 6;

struct Twin {
  Kind kind = Kind::whole;
  std::string ours, theirs;
};

struct QueryColumn {
  std::string name;
  Kind kind = Kind::whole;
};
struct QueryTable {
  std::string name;
  std::vector<QueryColumn> columns;
  std::size_t rows = 0;
};
// One table or SELECT of a FROM, by the name that columns are qualified with.
struct QuerySource {
  std::string alias;
  std::vector<QueryColumn> columns;
};
using QueryScope = std::vector<QuerySource>;

// What a table's field and a literal of either dialect hold for a value; null too.
std::string theirLiteral(const store::Value& value);

// Theirs of `twin`, as a value of the wider kind of number.
std::string widened(const Twin& twin, Kind kind);

class RandomExpression {
 public:
  // With accents, nothing is made whose outcome hangs on which letters differ in case only.
  RandomExpression(SeededRandom& random, const std::vector<QueryTable>& tables, bool accents)
      : random_(random), tables_(tables), accents_(accents) {}

  std::map<std::string, store::Value> parameters;
  bool withParameters = true;
  std::string without;  // a table that sub-selects must not read

  store::Value literal(Kind kind);  // not null
  Kind anyKind() { return static_cast<Kind>(random_.below(kKinds)); }
  Twin value(Kind kind, int depth);
  Twin condition(int depth);
  Twin column(Kind kind);  // of the innermost scope mostly; a literal where no column is of the kind
  Twin columnOf(const QuerySource& source, const QueryColumn& column);
  Twin comparison(const Twin& left, const Twin& right);
  Twin aggregate(Kind kind);
  std::string newName(const char* beginning) { return beginning + std::to_string(++names_); }

  std::vector<const QueryScope*> scopes;      // the innermost last
  const std::vector<Twin>* leaves = nullptr;  // in place of columns and sub-selects: of a grouped SELECT

 private:
  Twin constant(Kind kind);
  std::string ourLiteral(const store::Value& value);
  Twin whole(int depth);
  Twin money(int depth);
  Twin real(int depth);
  Twin text(int depth);
  Twin date(int depth);
  Twin chosen(Kind kind, int depth);
  Twin scalar(Kind kind, int depth);
  Twin exists(int depth);
  Twin inSelect(int depth);
  Twin inList();
  Twin between();
  Twin like();
  Twin simpleComparison(int depth);
  // A SELECT of one table: its FROM and WHERE, with the scope pushed while `items` makes what is selected.
  template <typename Items>
  Twin subselect(int depth, Items&& items);

  SeededRandom& random_;
  const std::vector<QueryTable>& tables_;
  bool accents_;
  bool innerOnly_ = false;
  int names_ = 0;
};

}  // namespace quillon::sim
