// Searches by key and by value.
#include <algorithm>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Datum.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

constexpr int kMostCandidates = 2000;  // of an index in another order; with more, the walk in order is taken

bool sameText(std::string_view text, const std::string& wanted, const std::string& folded, LocateOptions options,
              bool partial) {
  if (options.caseInsensitive) {
    const std::string mine = foldCase(text);
    return partial ? mine.starts_with(folded) : mine == folded;
  }
  return partial ? text.starts_with(wanted) : text == wanted;
}

}  // namespace

bool Cursor::findKey(const std::vector<Value>& values) {
  requireOpen();
  leaveRow();
  synchronise();
  if (order_ < 0) throw StoreError(Code::noSuchIndex, "A search by key on '" + name_ + "' needs an index.");
  if (nothing_) return false;
  std::string prefix, record;
  try {
    table_->codec(order_).encodePrefix(values, prefix);
  } catch (const StoreError& error) {
    if (error.code() != Code::badValue) throw;
    return false;  // no row has a value that its field cannot hold
  }
  if (filters()) return findKeyFiltered(prefix);
  RowId row = 0;
  std::string key;
  table_->read([&] {
    row = 0;
    TreeWalk walk(table_->index(order_));
    if (!walk.seek(std::max<std::string_view>(prefix, low_)) || !walk.key().starts_with(prefix) ||
        !inBounds(walk.key()))
      return;
    row = KeyCodec::rowOf(walk.key());
    if (!table_->readRow(row, record))
      throw StoreError(Code::damaged, "An index of table '" + table_->name() +
                                          "' names a record that is not there. Run Pack/Repair on the company.");
    key = walk.key();
  });
  if (row == 0) return false;
  at_.key.swap(key);
  at_.there = true;
  at_.row = row;
  at_.record.swap(record);
  at_.version = table_->version();
  at_.expected.reset();
  at_.ownDeleted = false;
  bof_ = eof_ = false;
  arrived();
  return true;
}

bool Cursor::findKeyFiltered(const std::string& prefix) {
  std::optional<Standing> found;
  {
    const Aside aside(*this);
    const Within within(*this, prefix);
    if (firstRow()) found = at_;
  }
  if (!found) return false;
  at_ = std::move(*found);
  bof_ = eof_ = false;
  arrived();
  return true;
}

bool Cursor::findNearest(const std::vector<Value>& values) {
  requireOpen();
  leaveRow();
  synchronise();
  if (order_ < 0) throw StoreError(Code::noSuchIndex, "A search by key on '" + name_ + "' needs an index.");
  std::string prefix;
  try {
    table_->codec(order_).encodePrefix(values, prefix);
  } catch (const StoreError& error) {
    if (error.code() != Code::badValue) throw;
    return false;
  }
  window_ = {};
  bof_ = eof_ = false;
  if (prefix.empty() ? !firstRow() : !enter(true, prefix, true)) {
    eof_ = true;
    if (!lastRow()) bof_ = true;
  }
  arrived();
  return at_.there;
}

bool Cursor::locate(std::string_view fields, const std::vector<Value>& values, LocateOptions options) {
  requireOpen();
  leaveRow();
  synchronise();
  Search wanted{{}, options};
  if (!prepareSearch(fields, values, wanted)) return false;
  Standing found;
  if (!search(wanted, found)) return false;
  at_ = std::move(found);
  bof_ = eof_ = false;
  arrived();
  return true;
}

// What is looked for, in the types of the fields; false when a field cannot hold its value, so that no row has it.
bool Cursor::prepareSearch(std::string_view fields, const std::vector<Value>& values, Search& wanted) const {
  const std::vector<int> places = positions(fields);
  if (places.size() != values.size())
    throw StoreError(Code::badValue, "A search on '" + name_ + "' has another number of values than of fields.");
  const TableDef& table = table_->definition();
  sql::Texts texts;
  for (std::size_t i = 0; i < places.size(); ++i) {
    Value value = values[i];
    const auto place = static_cast<std::size_t>(places[i]);
    const FieldType type =
        place < table.fields.size() ? table.fields[place].type : extras_[place - table.fields.size()]->definition.type;
    try {
      if (sql::typeOf(type) == sql::Type::text)
        value = value.isNull() || value.kind() == Value::Kind::text ? value : Value(value.toText());
      else if (!value.isNull())
        value = sql::valueOf(sql::convert(sql::datumOf(value, texts), sql::typeOf(type), texts));
    } catch (const StoreError& error) {
      if (error.code() != Code::badValue && error.code() != Code::typeMismatch) throw;
      return false;
    }
    const std::string folded = value.kind() == Value::Kind::text ? foldCase(value.asText()) : std::string();
    wanted.terms.push_back({places[i], std::move(value), folded});
  }
  return true;
}

std::vector<Value> Cursor::lookupAll(std::string_view keyFields, const std::vector<Value>& values,
                                     std::string_view results) {
  requireOpen();
  synchronise();
  const std::vector<int> given = positions(results);
  Search wanted;
  Standing found;
  if (nothing_ || !prepareSearch(keyFields, values, wanted)) return {};
  const Aside aside(*this);
  if (!search(wanted, found)) return {};
  at_ = std::move(found);
  view_.reset();
  calculated_ = false;
  std::vector<Value> result;
  result.reserve(given.size());
  for (const int position : given) result.push_back(fieldValue(position));
  return result;
}

Value Cursor::lookup(std::string_view keyFields, const std::vector<Value>& values, std::string_view result) {
  std::vector<Value> all = lookupAll(keyFields, values, result);
  return all.empty() ? Value() : std::move(all.front());
}

// Whether the row that the cursor stands on for the moment is wanted.
bool Cursor::matches(const Search& wanted) {
  const int own = static_cast<int>(table_->definition().fields.size());
  for (std::size_t i = 0; i < wanted.terms.size(); ++i) {
    const Search::Term& term = wanted.terms[i];
    const bool partial = wanted.options.partialKey && i + 1 == wanted.terms.size();
    const bool text = term.position < own && table_->layout().field(term.position).type == FieldType::string;
    if (text && term.value.kind() == Value::Kind::text) {
      if (view().isNull(term.position)) return false;
      if (!sameText(view().text(term.position), term.value.asText(), term.folded, wanted.options, partial))
        return false;
      continue;
    }
    const Value value = fieldValue(term.position);
    if (value.kind() == Value::Kind::text && term.value.kind() == Value::Kind::text) {
      if (!sameText(value.asText(), term.value.asText(), term.folded, wanted.options, partial)) return false;
    } else if (!(value == term.value)) {
      return false;
    }
  }
  return true;
}

bool Cursor::search(const Search& wanted, Standing& found) {
  if (nothing_) return false;
  const Aside aside(*this);
  bool usable = false;
  const bool result = searchByIndex(wanted, found, usable);
  return usable ? result : searchByWalk(wanted, found);
}

// An index whose leading fields are those of the search, in any order, finds candidates; they are tested again.
bool Cursor::searchByIndex(const Search& wanted, Standing& found, bool& usable) {
  const auto& indexes = table_->definition().indexes;
  std::vector<Value> values(wanted.terms.size());
  int chosen = -1;
  for (std::size_t i = 0; i < indexes.size() && chosen < 0; ++i) {
    const IndexDef& index = indexes[i];
    if (index.parts.size() < wanted.terms.size()) continue;
    bool fits = true;
    for (std::size_t t = 0; t < wanted.terms.size() && fits; ++t) {
      const auto part =
          std::find_if(index.parts.begin(), index.parts.begin() + static_cast<std::ptrdiff_t>(wanted.terms.size()),
                       [&](const IndexPart& p) { return p.field == wanted.terms[t].position; });
      const auto place = static_cast<std::size_t>(part - index.parts.begin());
      fits = place < wanted.terms.size();
      if (!fits) break;
      const bool text = table_->layout().field(part->field).type == FieldType::string;
      if (text && wanted.options.caseInsensitive && !index.caseInsensitive) fits = false;
      if (wanted.options.partialKey && t + 1 == wanted.terms.size())
        fits = fits && text && place + 1 == wanted.terms.size();
      values[place] = wanted.terms[t].value;
    }
    if (fits) chosen = static_cast<int>(i);
  }
  if (chosen < 0) return false;
  std::string prefix;
  try {
    table_->codec(chosen).encodePrefix(
        values, prefix, wanted.options.partialKey ? KeyCodec::LastText::beginning : KeyCodec::LastText::whole);
  } catch (const StoreError& error) {
    if (error.code() != Code::badValue) throw;
    usable = true;  // a value that the field cannot hold is in no row
    return false;
  }
  usable = true;
  bool any = false;
  std::string from = prefix, key, record;
  for (int candidates = 0;; ++candidates) {
    if (candidates > kMostCandidates) {
      usable = false;
      return false;
    }
    RowId row;
    {
      const Table::Reading reading(*table_);
      TreeWalk walk(table_->index(chosen));
      if (!walk.seek(from) || !walk.key().starts_with(prefix)) break;
      from.assign(walk.key());
      from.push_back('\0');
      row = KeyCodec::rowOf(walk.key());
      if (!table_->readRow(row, record)) continue;
    }
    keyOf(row, record, key);
    if (!inBounds(key) || (any && key >= found.key)) continue;
    stand(row, key, record);
    if (!matches(wanted) || !passes()) continue;
    found = at_;
    any = true;
    if (chosen == order_) break;
  }
  return any;
}

bool Cursor::searchByWalk(const Search& wanted, Standing& found) {
  for (bool there = firstRow(); there; there = step(true)) {
    if (!matches(wanted)) continue;
    found = at_;
    return true;
  }
  return false;
}

}  // namespace quillon::store
