#include "support/CursorModel.h"

#include <algorithm>

#include "base/Text.h"
#include "support/SeededRandom.h"

namespace quillon::sim {

using store::CursorState;
using store::FieldType;
using store::IndexOptions;
using store::LocateOptions;
using store::RowId;
using store::TableDef;
using store::Value;

namespace {

int compareValues(const Value& a, const Value& b, bool folded) {
  if (a.isNull() || b.isNull()) return static_cast<int>(b.isNull()) - static_cast<int>(a.isNull());
  if (a.kind() == Value::Kind::text) {
    return folded ? compareFolded(a.asText(), b.asText()) : a.asText().compare(b.asText());
  }
  return a.asInt64() < b.asInt64() ? -1 : a.asInt64() > b.asInt64() ? 1 : 0;
}

}  // namespace

TableDef ModelStore::randomDefinition(std::uint64_t seed) {
  SeededRandom random(seed);
  const char* const second[] = {"Name", "Name;Level", "Name;Code"};
  const char* const third[] = {"Level", "Level;Name", "Level;Code"};
  TableDef definition = TableDef::of("Model",
                                     {{"ID", FieldType::autoInc},
                                      {"Code", FieldType::integer},
                                      {"Name", FieldType::string, 8},
                                      {"Level", FieldType::smallint}},
                                     {{"", random.oneIn(2) ? "ID" : "Code", IndexOptions::unique},
                                      {"ByName", second[random.below(3)], IndexOptions::caseInsensitive},
                                      {"ByLevel", third[random.below(3)], IndexOptions::none, "Level"}});
  return definition;
}

int ModelStore::compare(int index, const CursorRow& a, const CursorRow& b, bool whole) const {
  if (index >= 0) {
    const store::IndexDef& order = definition.indexes[static_cast<std::size_t>(index)];
    for (const store::IndexPart& part : order.parts) {
      const auto field = static_cast<std::size_t>(part.field);
      const int result = compareValues(a.values[field], b.values[field], order.caseInsensitive);
      if (result != 0) return part.descending ? -result : result;
    }
  }
  return !whole || a.row == b.row ? 0 : a.row < b.row ? -1 : 1;
}

int ModelStore::compare(int index, const CursorRow& row, const std::vector<Value>& values) const {
  const store::IndexDef& order = definition.indexes[static_cast<std::size_t>(index)];
  for (std::size_t i = 0; i < values.size(); ++i) {
    const store::IndexPart& part = order.parts[i];
    const int result =
        compareValues(row.values[static_cast<std::size_t>(part.field)], values[i], order.caseInsensitive);
    if (result != 0) return part.descending ? -result : result;
  }
  return 0;
}

bool ModelStore::violates(const CursorRow& row) const {
  for (std::size_t i = 0; i < definition.indexes.size(); ++i) {
    if (!definition.indexes[i].unique) continue;
    for (const auto& [id, other] : rows) {
      if (id != row.row && compare(static_cast<int>(i), row, other, false) == 0) return true;
    }
  }
  return false;
}

bool ModelCursor::inView(const CursorRow& row) const {
  if (filtered_ && !((!handled || isEven(row)) && kModelFilter[filter_].passes(row))) return false;
  return (!low_ || store_.compare(index_, row, *low_) >= 0) && (!high_ || store_.compare(index_, row, *high_) <= 0);
}

std::vector<CursorRow> ModelCursor::rowsInView() const {
  std::vector<CursorRow> view;
  for (const auto& [id, row] : store_.rows) {
    if (inView(row)) view.push_back(row);
  }
  std::sort(view.begin(), view.end(),
            [this](const auto& a, const auto& b) { return store_.compare(index_, a, b) < 0; });
  return view;
}

const CursorRow& ModelCursor::shown() const { return state_ == CursorState::browse ? at_ : buffer_; }

bool ModelCursor::standsInView() const {
  const auto found = store_.rows.find(at_.row);
  return there_ && found != store_.rows.end() && inView(found->second) && inView(at_) &&
         store_.compare(index_, found->second, at_) == 0;
}

std::int64_t ModelCursor::number() const {
  std::int64_t number = 1;
  for (const CursorRow& row : rowsInView()) number += store_.compare(index_, row, at_) < 0;
  return number;
}

void ModelCursor::stand(const CursorRow& row) {
  at_ = row;
  there_ = placed_ = true;
}

bool ModelCursor::standFirst() {
  const auto view = rowsInView();
  there_ = placed_ = !view.empty();
  if (there_) stand(view.front());
  return there_;
}

bool ModelCursor::standLast() {
  const auto view = rowsInView();
  there_ = placed_ = !view.empty();
  if (there_) stand(view.back());
  return there_;
}

bool ModelCursor::step(bool forward) {
  auto view = rowsInView();
  if (!forward) std::reverse(view.begin(), view.end());
  for (const CursorRow& row : view) {
    const int order = store_.compare(index_, row, at_);
    if (forward ? order <= 0 : order >= 0) continue;
    stand(row);
    return true;
  }
  return false;
}

const CursorRow* ModelCursor::present() {
  const auto found = store_.rows.find(at_.row);
  return there_ && found != store_.rows.end() ? &found->second : nullptr;
}

void ModelCursor::findAgain(const CursorRow& from, bool any) {
  const CursorRow place = from;
  if (const CursorRow* row = present(); row && inView(*row)) {
    stand(*row);
    return;
  }
  bof_ = !any;
  there_ = false;
  for (const CursorRow& row : rowsInView()) {
    if (any && store_.compare(index_, row, place) < 0) continue;
    stand(row);
    break;
  }
  eof_ = !there_;
  if (eof_ && !standLast()) bof_ = true;
}

void ModelCursor::synchronise() {
  if (!findAgain_ || state_ != CursorState::browse) return;
  findAgain_ = false;
  findAgain(at_, placed_);
}

void ModelCursor::toBrowse() {
  if (state_ == CursorState::edit) store_.locked.erase(at_.row);
  if (state_ == CursorState::insert) {
    there_ = keptThere_;
  }
  state_ = CursorState::browse;
}

int ModelCursor::leaveRow() {
  if (state_ == CursorState::browse) return 0;
  return modified_ ? post() : cancel();
}

void ModelCursor::open() {
  index_ = 0;
  standFirst();
  bof_ = true;
  eof_ = !there_;
}

int ModelCursor::first() {
  if (const int code = leaveRow()) return code;
  synchronise();
  standFirst();
  bof_ = true;
  eof_ = !there_;
  return 0;
}

int ModelCursor::last() {
  if (const int code = leaveRow()) return code;
  synchronise();
  standLast();
  eof_ = true;
  bof_ = !there_;
  return 0;
}

int ModelCursor::next() {
  if (const int code = leaveRow()) return code;
  synchronise();
  answer = there_ && step(true);
  if (answer != 0)
    bof_ = eof_ = false;
  else
    eof_ = true;
  return 0;
}

int ModelCursor::prior() {
  if (const int code = leaveRow()) return code;
  synchronise();
  answer = there_ && step(false);
  if (answer != 0)
    bof_ = eof_ = false;
  else
    bof_ = true;
  return 0;
}

int ModelCursor::moveBy(std::int64_t rows) {
  if (const int code = leaveRow()) return code;
  synchronise();
  answer = 0;
  if (!there_ || rows == 0) return 0;
  for (; answer < rows && step(true); ++answer) {
  }
  for (; answer > rows && step(false); --answer) {
  }
  if (answer != 0) bof_ = eof_ = false;
  if (answer < rows) eof_ = true;
  if (answer > rows) bof_ = true;
  return 0;
}

int ModelCursor::goTo(std::int64_t number) {
  if (const int code = leaveRow()) return code;
  synchronise();
  const auto view = rowsInView();
  answer = number >= 1 && number <= static_cast<std::int64_t>(view.size());
  if (answer == 0) return 0;
  stand(view[static_cast<std::size_t>(number - 1)]);
  bof_ = eof_ = false;
  return 0;
}

int ModelCursor::goToRow(RowId row) {
  if (const int code = leaveRow()) return code;
  synchronise();
  const auto found = store_.rows.find(row);
  answer = found != store_.rows.end() && inView(found->second);
  if (answer == 0) return 0;
  stand(found->second);
  bof_ = eof_ = false;
  return 0;
}

int ModelCursor::findKey(const std::vector<Value>& values) {
  if (const int code = leaveRow()) return code;
  synchronise();
  answer = 0;
  for (const CursorRow& row : rowsInView()) {
    if (store_.compare(index_, row, values) != 0) continue;
    stand(row);
    bof_ = eof_ = false;
    answer = 1;
    break;
  }
  return 0;
}

int ModelCursor::findNearest(const std::vector<Value>& values) {
  if (const int code = leaveRow()) return code;
  synchronise();
  bof_ = eof_ = there_ = false;
  for (const CursorRow& row : rowsInView()) {
    if (store_.compare(index_, row, values) < 0) continue;
    stand(row);
    break;
  }
  if (!there_) {
    eof_ = true;
    if (!standLast()) bof_ = true;
  }
  answer = there_;
  return 0;
}

bool ModelCursor::matches(const CursorRow& row, const std::vector<int>& fields, const std::vector<Value>& values,
                          LocateOptions options) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Value& mine = row.values[static_cast<std::size_t>(fields[i])];
    if (mine.kind() != Value::Kind::text || values[i].kind() != Value::Kind::text) {
      if (!(mine == values[i])) return false;
      continue;
    }
    const bool partial = options.partialKey && i + 1 == fields.size();
    const std::string text = options.caseInsensitive ? foldCase(mine.asText()) : mine.asText();
    const std::string wanted = options.caseInsensitive ? foldCase(values[i].asText()) : values[i].asText();
    if (partial ? !text.starts_with(wanted) : text != wanted) return false;
  }
  return true;
}

int ModelCursor::locate(const std::vector<int>& fields, const std::vector<Value>& values, LocateOptions options) {
  if (const int code = leaveRow()) return code;
  synchronise();
  answer = 0;
  for (const CursorRow& row : rowsInView()) {
    if (!matches(row, fields, values, options)) continue;
    stand(row);
    bof_ = eof_ = false;
    answer = 1;
    break;
  }
  return 0;
}

std::optional<CursorRow> ModelCursor::lookup(const std::vector<int>& fields, const std::vector<Value>& values) {
  synchronise();
  for (const CursorRow& row : rowsInView()) {
    if (matches(row, fields, values, {})) return row;
  }
  return {};
}

int ModelCursor::setIndex(int index) {
  if (const int code = leaveRow()) return code;
  synchronise();
  index_ = index;
  low_.reset();
  high_.reset();
  placed_ = there_;
  findAgain(at_, placed_);
  return 0;
}

int ModelCursor::setRange(std::vector<Value> low, std::vector<Value> high) {
  if (const int code = leaveRow()) return code;
  // A range may name the ends of a descending field either way round.
  const auto& parts = store_.definition.indexes[static_cast<std::size_t>(index_)].parts;
  std::size_t differs = 0;
  while (differs < low.size() && differs < high.size() && low[differs] == high[differs]) ++differs;
  if (differs < std::min(low.size(), high.size()) && parts[differs].descending) {
    CursorRow row;
    for (std::size_t i = 0; i < low.size(); ++i) row.values[static_cast<std::size_t>(parts[i].field)] = low[i];
    if (store_.compare(index_, row,
                       std::vector<Value>(high.begin(), high.begin() + static_cast<std::ptrdiff_t>(differs) + 1)) > 0)
      std::swap(low, high);
  }
  low_ = std::move(low);
  high_ = std::move(high);
  findAgain_ = false;
  standFirst();
  bof_ = true;
  eof_ = !there_;
  return 0;
}

int ModelCursor::cancelRange() {
  if (const int code = leaveRow()) return code;
  low_.reset();
  high_.reset();
  findAgain(at_, placed_);
  return 0;
}

int ModelCursor::setFiltered(bool filtered) {
  if (const int code = leaveRow()) return code;
  filtered_ = filtered;
  return first();
}

int ModelCursor::setFilter(int number) {
  if (filtered_)
    if (const int code = leaveRow()) return code;
  filter_ = number;
  return filtered_ ? first() : 0;
}

}  // namespace quillon::sim
