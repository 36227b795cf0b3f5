#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "store/sql/Access.h"
#include "store/sql/Binder.h"
#include "store/sql/Compiler.h"

namespace quillon::store::sql {

struct SelectColumn {
  std::string name;
  Type type = Type::null;
  int size = 0;    // of a text: its most characters; 0 when not known
  FieldDef field;  // of a plain column: its definition; otherwise what fits the type
};

// Takes a row of a result; false: enough.
using RowSink = std::function<bool(const std::vector<Datum>&)>;

// A SELECT, with its UNIONs, bound to tables: how it reads them, and what it gives.
//
// Rows come in the order of ORDER BY, and where that leaves them open, or there is none, in the row-id order of the
// first source, then the second, and so on, whatever way the rows were found.
class SelectPlan {
 public:
  static std::unique_ptr<SelectPlan> make(Compiler& compiler, const Select& select, Scope* outer);
  ~SelectPlan();

  const std::vector<SelectColumn>& columns() const { return columns_; }
  // A column of quoted texts takes the type of the field that it goes to; one with other texts in it does not.
  void adaptColumn(std::size_t column, Type wanted);
  void run(Frame* outer, const RowSink& sink);

  bool readsAround() const { return scope_.outerSources != 0 || scope_.readsBeyond; }
  bool readsBeyond() const { return scope_.readsBeyond; }
  std::uint64_t outerSources() const { return scope_.outerSources; }
  // One line a step; `outer` as in run.
  void explain(std::vector<std::string>& lines, int indent, Frame* outer = nullptr);
  // The same for those that stand in the expressions over `scope`, whose rows are those of the frame.
  static void explainInner(const Scope& scope, std::vector<std::string>& lines, int indent, Frame& frame);

  // The one table whose rows and fields are the result's; null where there is none. For live results.
  Table* liveTable() const;
  // The row ids of the result of a live SELECT, in order.
  std::vector<RowId> liveRows();

 private:
  struct Core;  // one SELECT of the chain
  struct OrderTerm {
    int column = -1;           // of the result, or
    ExpressionPtr expression;  // over the core's row
    bool descending = false;
  };
  explicit SelectPlan(Compiler& compiler);
  void bindCore(const Select& select, Scope& scope, Core& core);
  void bindFrom(const Select& select, Scope& scope, Core& core);
  void bindItems(const Select& select, Core& core, Binder& binder);
  void bindOrder(const Select& select, Binder& binder, const std::map<std::string, const Expr*>& aliases);
  void findOrders();
  void unifyUnion();
  void nameColumns();
  std::uint64_t limit(Frame* outer) const;
  static void chooseWays(Core& core, std::uint64_t most, Frame& frame);
  void runCore(Core& core, Frame& frame, std::uint64_t most, const std::function<bool(Frame&)>& row);
  void runGrouped(Core& core, Frame& frame, const std::function<bool(Frame&)>& row);
  void sortKey(Frame& frame, const std::vector<Datum>& row, std::string& key) const;

  Compiler& compiler_;
  Compiler::LetGo atRest_;
  Scope scope_;                                 // of the first core
  std::vector<std::unique_ptr<Scope>> scopes_;  // of the others
  std::vector<std::unique_ptr<Core>> cores_;
  std::vector<SelectColumn> columns_;
  std::vector<OrderTerm> order_;
  bool nocase_ = false;
  ExpressionPtr top_;
  std::vector<RowId>* liveRows_ = nullptr;
};

}  // namespace quillon::store::sql
