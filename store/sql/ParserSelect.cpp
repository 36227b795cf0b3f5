#include <algorithm>

#include "store/sql/ParserParts.h"

namespace quillon::store::sql {
namespace {

constexpr int kMaxUnion = 500;  // SELECTs in one chain, which is walked by calls

// What may follow a select list where there is no FROM.
constexpr std::string_view kAfterList[] = {"WHERE", "GROUP", "HAVING", "UNION", "ORDER", "TOP", ")", ";"};

void raise(int& height, const ExprPtr& expr) {
  if (expr) height = std::max(height, expr->height);
}

int heightOf(const Select& select) {
  int height = 0;
  for (const SelectItem& item : select.items) raise(height, item.expr);
  for (const Source& source : select.from) {
    raise(height, source.on);
    if (source.select) height = std::max(height, source.select->height);
  }
  raise(height, select.where);
  for (const ExprPtr& expr : select.groupBy) raise(height, expr);
  raise(height, select.having);
  for (const OrderItem& item : select.orderBy) raise(height, item.expr);
  return height;
}

}  // namespace

std::unique_ptr<Select> Parser::select(bool ofStatement) {
  const Nesting nesting(*this);
  std::unique_ptr<Select> head = selectCore(ofStatement);
  Select* last = head.get();
  int height = last->height;
  for (int count = 1; at("UNION"); ++count) {
    if (count == kMaxUnion) fail(token().place, "more than " + std::to_string(kMaxUnion) + " SELECTs in a UNION.");
    advance();
    last->unionAll = accept("ALL");
    last->unionWith = selectCore(false);
    last = last->unionWith.get();
    height = std::max(height, last->height);
  }
  selectTail(*head);
  for (const OrderItem& item : head->orderBy) raise(height, item.expr);
  head->height = height;
  return head;
}

std::unique_ptr<Select> Parser::selectCore(bool head) {
  auto select = std::make_unique<Select>();
  select->place = token().place;
  expect("SELECT");
  select->distinct = accept("DISTINCT");
  if (!select->distinct) accept("ALL");
  do {
    select->items.push_back(selectItem());
  } while (accept(","));
  if (at("INTO")) {
    if (!head) fail(token().place, "INTO can only stand in the first SELECT of a statement.");
    advance();
    select->intoPlace = token().place;
    select->into = name("a table");
  }
  if (accept("FROM")) {
    sources(select->from);
  } else if (token().kind != TokenKind::end &&
             std::ranges::none_of(kAfterList, [this](auto word) { return at(word); })) {
    expected("FROM");
  }
  if (accept("WHERE")) select->where = expression();
  if (accept("GROUP")) {
    expect("BY");
    select->groupBy = expressions();
  }
  if (accept("HAVING")) select->having = expression();
  select->height = heightOf(*select);
  return select;
}

void Parser::selectTail(Select& select) {
  if (accept("ORDER")) {
    expect("BY");
    do {
      OrderItem item;
      item.expr = expression();
      item.descending = accept("DESC");
      if (!item.descending) accept("ASC");
      select.orderBy.push_back(std::move(item));
    } while (accept(","));
    select.nocase = accept("NOCASE");
  }
  if (accept("TOP")) select.top = rowCount();
}

SelectItem Parser::selectItem() {
  SelectItem item;
  if (at("*") || (atName() && at(".", 1) && at("*", 2))) {
    item.expr = star();
    return item;
  }
  const std::size_t first = position_;
  item.expr = expression();
  if (item.expr->kind != ExprKind::column) item.expr->text = textBetween(first, position_);  // with its parentheses
  item.alias = aliasOrNone();
  return item;
}

void Parser::sources(std::vector<Source>& from) {
  do {
    source(from, from.empty() ? JoinKind::first : JoinKind::cross);
    joins(from);
  } while (accept(","));
}

void Parser::joins(std::vector<Source>& from) {
  while (true) {
    JoinKind kind = JoinKind::inner;
    if (accept("LEFT")) {
      kind = JoinKind::left;
      accept("OUTER");
    } else if (accept("CROSS")) {
      kind = JoinKind::cross;
    } else if (!accept("INNER") && !at("JOIN")) {
      return;
    }
    expect("JOIN");
    source(from, kind);
    if (kind == JoinKind::cross) continue;
    expect("ON");
    from.back().on = expression();
  }
}

// Joins are done from left to right, so parentheses around some of them say nothing new where nothing or a plain
// product stands before them. Elsewhere they are not understood.
void Parser::source(std::vector<Source>& from, JoinKind join) {
  const bool mayEnclose = join == JoinKind::first || join == JoinKind::cross;
  if (at("(") && !at("SELECT", 1) && mayEnclose) {
    const Nesting nesting(*this);
    advance();
    source(from, join);
    joins(from);
    expect(")");
    return;
  }
  Source result;
  result.join = join;
  result.place = token().place;
  if (accept("(")) {
    result.select = select(false);
    expect(")");
    accept("AS");
    result.alias = name("a name for the SELECT");
  } else {
    result.table = name("a table");
    result.alias = aliasOrNone();
  }
  from.push_back(std::move(result));
}

ExprPtr Parser::rowCount() {
  if (token().kind == TokenKind::parameter) return parameter();
  const std::size_t first = position_;
  if (token().kind != TokenKind::number) expected("a number of rows");
  ExprPtr count = numberLiteral(false);
  if (count->value.kind() != Value::Kind::whole) {
    position_ = first;
    expected("a whole number of rows");
  }
  return count;
}

std::vector<ExprPtr> Parser::expressions() {
  std::vector<ExprPtr> list;
  do {
    list.push_back(expression());
  } while (accept(","));
  return list;
}

}  // namespace quillon::store::sql
