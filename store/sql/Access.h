#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/sql/Expression.h"
#include "store/table/RowReader.h"
#include "store/tree/Tree.h"

namespace quillon::store::sql {

// How the rows of one source are found for the rows of the sources before it. An index only narrows: every condition is
// tested on the row again, so that the choice never changes the result.
class Access {
 public:
  enum class Kind { scan, index, list, hash };

  // One condition that can be searched for: column OP value, the value known before this source is read.
  struct Term {
    int field;
    Op op;
    const Expression* value;                           // of a comparison, otherwise null
    const std::vector<ExpressionPtr>* list = nullptr;  // of IN: alternatives from [1] on
    const Expression* column = nullptr;
    const Expression::Members* members = nullptr;  // of IN (SELECT)
    std::size_t condition = 0;                     // the number of the one it comes from
  };

  // `conditions`: how many the source's rows must meet; terms are those of them that can be searched for.
  Access(Table& table, int source, std::vector<Term> terms, std::size_t conditions)
      : table_(table), source_(source), terms_(std::move(terms)), conditions_(conditions) {}

  Table& table() const { return table_; }
  // Chooses the way, given how many rows the sources before it are thought to have. Returns how many this one will
  // have.
  double choose(double outerRows, Frame& frame);
  // Calls for every row that may match, in row-id order; frame.rows[source] is the row. False from the callback ends
  // it.
  bool forEach(Frame& frame, const std::function<bool()>& row);

  // An index that gives the rows in an order asked for; rows equal in it come by row id.
  struct Order {
    int index = -1;
    bool backward = false;
    std::size_t fields = 0;  // leading ones that rows equal in the order have alike
    bool whole = false;      // these are all: the index has equal rows by row id itself
    bool plain = false;      // key by key is the order, or that of equal rows does not matter
    bool present = false;    // only rows in which the last of these fields is not null
  };
  struct Wanted {
    int field;
    bool descending, text;
  };
  // The indexes that give this order, where the conditions' equalities hold other leading fields fixed.
  std::vector<Order> orders(const std::vector<Wanted>& wanted, bool folded) const;
  // The one that costs less than the chosen way and a sort, for `most` rows; null: none. Instead of `choose`, which it
  // calls where that matters.
  const Order* chooseOrder(const std::vector<Order>& orders, std::uint64_t most, Frame& frame);
  bool forEachInOrder(Frame& frame, const Order& order, const std::function<bool()>& row);
  std::string explain(const Order& order) const;
  std::string explain() const;
  void letGo() { built_.reset(); }  // what was read for one run

  // The keys of an index between which rows matching the terms lie; false: there can be none.
  bool bounds(int index, Frame& frame, std::string& low, std::string& high) const;
  // How many leading fields of the index have an equality; whether a range follows.
  int equalities(int index, bool& range) const;

 private:
  struct Built {  // of a hash: rows by the identity of their key
    std::string records;
    std::vector<std::size_t> starts;  // of the records, and the end of the last
    std::vector<RowId> ids;
    std::string_view record(std::uint32_t place) const {
      return std::string_view(records).substr(starts[place], starts[place + 1] - starts[place]);
    }
    std::unordered_map<std::string, std::vector<std::uint32_t>> byKey;
  };
  bool stand(Frame& frame, RowId row, std::string_view record, const std::function<bool()>& callback);
  bool scan(Frame& frame, const std::function<bool()>& row);
  bool byIndex(Frame& frame, const std::function<bool()>& row);
  bool byList(Frame& frame, const std::function<bool()>& row);
  bool byHash(Frame& frame, const std::function<bool()>& row);
  double chooseList(Frame& frame, double best);
  void forEachListed(Frame& frame, const Term& term, const std::function<void(const Datum& value)>& each) const;
  bool encodeListed(int index, const Datum& value, std::string& prefix) const;
  std::uint64_t countBetween(int index, const std::string& low, const std::string& high) const;
  bool fetch(Frame& frame, std::vector<RowId>& ids, const std::function<bool()>& row);
  void build(Frame& frame);
  bool isText(int field) const;
  bool narrowsByAll(int index) const;
  double cost(double found) const;
  double costOfRow(int index, const std::string& low, double inside) const;
  bool orderBounds(const Order& order, Frame& frame, std::string& low, std::string& high) const;
  bool forEachFrom(int index, const std::string& group, RowReader& rows, const RowReader::Each& give);
  std::string nameOf(int index) const;

  Table& table_;
  int source_;
  std::vector<Term> terms_;
  std::size_t conditions_;
  Kind kind_ = Kind::scan;
  int index_ = -1;
  std::size_t listTerm_ = 0;
  std::vector<std::size_t> hashTerms_;
  std::unique_ptr<Built> built_;
  std::string scratch_;
};

}  // namespace quillon::store::sql
