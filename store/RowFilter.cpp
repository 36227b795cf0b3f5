#include "store/RowFilter.h"

#include <algorithm>

#include "store/Cursor.h"
#include "store/Errors.h"
#include "store/sql/Binder.h"
#include "store/sql/Compiler.h"
#include "store/sql/Parser.h"
#include "store/sql/SelectCore.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

using sql::Expr;
using sql::ExpressionPtr;
using sql::ExprKind;
using sql::Op;
using sql::Type;

void conjuncts(const Expr& condition, std::vector<const Expr*>& out) {
  if (condition.kind != ExprKind::binary || condition.op != Op::both) return out.push_back(&condition);
  for (const sql::ExprPtr& operand : condition.operands) conjuncts(*operand, out);
}

void refuseSelects(const Expr& expr) {
  if (expr.select)
    sql::refuse(expr.place, Code::badStatement, "a filter reads no other table: SELECT cannot stand here.");
  for (const sql::ExprPtr& operand : expr.operands) refuseSelects(*operand);
}

// Whether working it out can fail for some row.
bool canRaise(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::literal:
    case ExprKind::column:
      return false;
    case ExprKind::call:
      if ((expr.name != "UPPER" && expr.name != "LOWER") || expr.operands[0]->kind != ExprKind::column) return true;
      break;
    case ExprKind::unary:
      if (expr.op == Op::negate) return true;
      break;
    case ExprKind::binary:
      if (expr.op < Op::equal) return true;
      break;
    case ExprKind::between:
    case ExprKind::inList:
      break;
    default:
      return true;
  }
  return std::any_of(expr.operands.begin(), expr.operands.end(),
                     [](const sql::ExprPtr& operand) { return canRaise(*operand); });
}

}  // namespace

// A field that the bytes of a record do not hold: calculated, looked up, or the content of a memo or blob field.
class RowFilter::CursorField final : public sql::Expression {
 public:
  CursorField(RowFilter& filter, int position, const FieldDef& field, bool content)
      : Expression(sql::typeOf(field.type), field.size), filter_(filter), position_(position), content_(content) {
    sources = 1;
  }
  sql::Datum eval(sql::Frame& frame) const override {
    if (content_ && filter_.reading_) {
      const RecordView& view = *frame.rows[0].view;
      if (view.isNull(position_)) return {};
      return sql::Datum::ofText(frame.texts.keep(filter_.table_.readBlob(view.blobRef(position_))), type);
    }
    Value value = filter_.cursor_.field(position_).value();
    if (type == Type::text && !value.isNull()) value = value.toText();
    try {
      return sql::convert(sql::datumOf(value, frame.texts), type, frame.texts);
    } catch (const StoreError& error) {
      sql::refuse(place, error.code(), error.what());
    }
  }

 private:
  RowFilter& filter_;
  int position_;
  bool content_;
};

RowFilter::RowFilter(Cursor& cursor, std::string_view text) : cursor_(cursor), table_(cursor.table()) {
  const sql::ExprPtr condition = sql::parseFilter(text);
  refuseSelects(*condition);
  const std::map<std::string, Value, std::less<>> noParameters;
  sql::Compiler compiler(table_.database(), noParameters);
  sql::Scope scope;
  scope.sources.push_back({table_.name(), &table_});
  scope.field = [this](const Expr& expr) { return bindField(expr); };
  sql::Binder binder(compiler, &scope);
  frame_.rows.resize(1);
  frame_.rows[0].table = &table_;
  std::vector<const Expr*> parts;
  conjuncts(*condition, parts);
  ExpressionPtr searchable;
  bool inRecord = true, searches = true;
  for (const Expr* part : parts) {
    readsExtra_ = false;
    ExpressionPtr bound = binder.bind(*part);
    if (bound->type != Type::boolean && bound->type != Type::null)
      sql::refuse(part->place, Code::typeMismatch,
                  "expected a condition, found " + std::string(sql::nameOf(bound->type)) + ".");
    inRecord = inRecord && !readsExtra_;
    searches = searches && inRecord && !canRaise(*part);
    if (searches) {
      ExpressionPtr again = binder.bind(*part);
      searchable =
          searchable ? sql::makeBinary(Op::both, std::move(searchable), std::move(again), *part) : std::move(again);
    }
    (inRecord ? inRecord_ : behind_).push_back(std::move(bound));
  }
  if (searchable) prepareSearch(std::move(searchable));
}

RowFilter::~RowFilter() = default;

void RowFilter::prepareSearch(ExpressionPtr searchable) {
  searchable_ = std::move(searchable);
  std::vector<sql::Level> levels(1);
  levels[0].table = &table_;
  std::vector<const sql::Expression*> constants;
  std::vector<ExpressionPtr> ons(1);
  sql::placeConditions(levels, searchable_.get(), ons, constants);
  access_ = std::move(levels[0].access);
}

// Null for a field that a record holds.
ExpressionPtr RowFilter::bindField(const Expr& expr) {
  if (!expr.table.empty() && !sql::Scope::SourceName{table_.name(), &table_}.isCalled(expr.table)) return nullptr;
  const int position = cursor_.fieldPosition(expr.name);
  if (position < 0) return nullptr;
  const bool extra = position >= table_.layout().fieldCount();
  const FieldDef& field = cursor_.field(position).definition();
  if (!extra && !isBlobType(field.type)) return nullptr;
  readsExtra_ = readsExtra_ || extra;
  readsContents_ = readsContents_ || !extra;
  auto bound = std::make_unique<CursorField>(*this, position, field, !extra);
  bound->place = expr.place;
  return bound;
}

bool RowFilter::holds(const std::vector<ExpressionPtr>& conditions, sql::Frame& frame, RowId row,
                      std::string_view record) {
  frame.texts.clear();
  frame.rows[0].row = row;
  frame.rows[0].view.emplace(table_.layout(), record);
  return std::all_of(conditions.begin(), conditions.end(),
                     [&](const ExpressionPtr& condition) { return condition->eval(frame).isTrue(); });
}

bool RowFilter::passes(RowId row, std::string_view record) {
  if (behind_.empty() && !readsContents_) return holds(inRecord_, frame_, row, record);
  // A look-up may ask this very filter about another row.
  sql::Frame frame;
  frame.rows.resize(1);
  frame.rows[0].table = &table_;
  return holds(inRecord_, frame, row, record) && holds(behind_, frame, row, record);
}

bool RowFilter::mayPass(RowId row, std::string_view record) {
  reading_ = true;
  try {
    const bool result = holds(inRecord_, frame_, row, record);
    reading_ = false;
    return result;
  } catch (...) {
    reading_ = false;
    throw;
  }
}

const RowFilter::Range& RowFilter::range(int index) {
  ranges_.resize(table_.definition().indexes.size());
  std::optional<Range>& known = ranges_[static_cast<std::size_t>(index)];
  if (known) return *known;
  known.emplace();
  bool ranged = false;
  if (!access_ || (access_->equalities(index, ranged) == 0 && !ranged)) return *known;
  known->narrowed = true;
  known->nothing = !access_->bounds(index, frame_, known->low, known->high);
  return *known;
}

}  // namespace quillon::store
