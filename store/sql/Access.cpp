#include "store/sql/Access.h"

#include <algorithm>

#include "store/Errors.h"
#include "store/KeyCodec.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

constexpr double kIndexShare = 0.125;         // of the rows: above it a walk over all is cheaper
constexpr double kRowCost = 0.2;              // of a row met in a walk, in microseconds; only ratios matter
constexpr double kSearchCost = 1.5;           // of a search in an index and the row behind it
constexpr double kHashCost = 0.4;             // of a row put into a hash
constexpr double kGuess = 0.01;               // share of rows that an equality leaves, where it is not known
constexpr std::uint64_t kHashedPages = 8192;  // a table up to this size (32 MiB) is hashed with its records

// The one type in which a column and a value are equal or not.
Type commonType(Type a, Type b) {
  if (a == b || b == Type::null) return a;
  if (a == Type::null) return b;
  if (isNumber(a) && isNumber(b)) return a == Type::real || b == Type::real ? Type::real : Type::money;
  return Type::dateTime;
}

}  // namespace

void Access::forEachListed(Frame& frame, const Term& term, const std::function<void(const Datum&)>& each) const {
  if (term.members) return term.members->forEach(frame, each);
  for (std::size_t i = 1; i < term.list->size(); ++i) each((*term.list)[i]->eval(frame));
}

// An index that is searched for each value of a list, where that costs less than the way chosen, which finds `best`
// rows; returns how many. The values of a sub-select are looked at for the first source only, where the search is made
// once; a sample tells how many rows they have.
double Access::chooseList(Frame& frame, double best) {
  constexpr std::size_t kSample = 16;
  const auto rows = static_cast<double>(table_.rowCount());
  const auto& indexes = table_.definition().indexes;
  for (std::size_t t = 0; t < terms_.size(); ++t) {
    const Term& term = terms_[t];
    if (term.value || (term.members && source_ > 0)) continue;
    for (std::size_t i = 0; i < indexes.size(); ++i) {
      if (indexes[i].parts[0].field != term.field) continue;
      const int index = static_cast<int>(i);
      std::size_t values = 0;
      forEachListed(frame, term, [&](const Datum&) { ++values; });
      const auto count = static_cast<double>(values);
      if (count * kSearchCost > rows * kRowCost) continue;
      double found = std::min(rows, count * rows * kGuess);
      if (source_ == 0) {
        std::size_t at = 0;
        std::size_t sampled = 0;
        std::uint64_t sum = 0;
        std::string prefix;
        forEachListed(frame, term, [&](const Datum& value) {
          if (at++ % (values / kSample + 1) != 0 || !encodeListed(index, value, prefix)) return;
          sum += countBetween(index, prefix, KeyCodec::successor(prefix));
          ++sampled;
        });
        found = sampled == 0 ? 0 : static_cast<double>(sum) * count / static_cast<double>(sampled);
      }
      if (count * kSearchCost + found * kSearchCost / 2 >= cost(best)) continue;
      kind_ = Kind::list;
      index_ = index;
      listTerm_ = t;
      best = found;
    }
  }
  return best;
}

// False: no row has a value that its field cannot hold.
bool Access::encodeListed(int index, const Datum& value, std::string& prefix) const {
  const Value wanted = valueOf(value);
  try {
    table_.codec(index).encodePrefix({&wanted, 1}, prefix);
    return true;
  } catch (const StoreError& error) {
    if (error.code() != Code::badValue) throw;
    return false;
  }
}

double Access::choose(double outerRows, Frame& frame) {
  const auto rows = static_cast<double>(table_.rowCount());
  const auto& indexes = table_.definition().indexes;
  kind_ = Kind::scan;
  double best = rows;
  bool unique = false;
  int most = 0;
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    bool range = false;
    const int index = static_cast<int>(i);
    const int equal = equalities(index, range);
    if (equal == 0 && !range) continue;
    double found = rows * (equal > 0 ? kGuess : kIndexShare);
    const bool exact = indexes[i].unique && equal == static_cast<int>(indexes[i].parts.size());
    if (exact) found = 1;
    if (source_ == 0) {
      std::string low, high;
      if (!bounds(index, frame, low, high)) {
        found = 0;
      } else {
        found = static_cast<double>(countBetween(index, low, high));
      }
      if (found > rows * kIndexShare) continue;
    } else if (exact ? unique : equal < most || (equal == most && most > 0)) {
      continue;
    }
    if (source_ == 0 && kind_ == Kind::index && found >= best) continue;
    kind_ = Kind::index;
    index_ = index;
    best = found;
    most = std::max(most, equal);
    unique = unique || exact;
  }
  if (kind_ == Kind::scan || source_ == 0) best = chooseList(frame, best);
  if (source_ == 0) return best;

  // For an inner source: is it cheaper to read it once into a hash?
  hashTerms_.clear();
  for (std::size_t t = 0; t < terms_.size(); ++t)
    if (terms_[t].op == Op::equal && terms_[t].value) hashTerms_.push_back(t);
  const double each = unique ? 1 : std::max(1.0, rows * kGuess);
  const double searching = outerRows * (kSearchCost + each * kSearchCost / 2);
  const double walking = outerRows * rows * kRowCost;
  const double hashing = rows * (kRowCost + kHashCost) + outerRows * kHashCost;
  if (!hashTerms_.empty() && hashing < (kind_ == Kind::index ? searching : walking)) kind_ = Kind::hash;
  built_.reset();
  if (kind_ == Kind::scan) return outerRows * rows;
  return outerRows * (unique || kind_ == Kind::hash ? 1 : each);
}

// Of the chosen way, once, where it finds so many rows.
double Access::cost(double found) const {
  if (kind_ == Kind::scan) return static_cast<double>(table_.rowCount()) * kRowCost;
  return kSearchCost + found * kSearchCost / 2;
}

bool Access::stand(Frame& frame, RowId row, std::string_view record, const std::function<bool()>& callback) {
  SourceRow& here = frame.rows[static_cast<std::size_t>(source_)];
  here.row = row;
  here.view.emplace(table_.layout(), record);
  return callback();
}

bool Access::forEach(Frame& frame, const std::function<bool()>& row) {
  switch (kind_) {
    case Kind::index:
      return byIndex(frame, row);
    case Kind::list:
      return byList(frame, row);
    case Kind::hash:
      return byHash(frame, row);
    default:
      return scan(frame, row);
  }
}

bool Access::scan(Frame& frame, const std::function<bool()>& row) {
  TreeWalk walk(table_.rows());
  for (bool found = walk.first(); found; found = walk.next())
    if (!stand(frame, KeyCodec::rowOf(walk.key()), table_.record(walk.payload(), scratch_), row)) return false;
  return true;
}

bool Access::fetch(Frame& frame, std::vector<RowId>& ids, const std::function<bool()>& row) {
  if (!std::is_sorted(ids.begin(), ids.end())) std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return RowReader(table_).readEach(ids,
                                    [&](RowId id, std::string_view record) { return stand(frame, id, record, row); });
}

bool Access::byIndex(Frame& frame, const std::function<bool()>& row) {
  std::string low, high;
  if (!bounds(index_, frame, low, high)) return true;
  std::vector<RowId> ids;
  {
    TreeWalk walk(table_.index(index_));
    for (bool found = walk.seek(low); found && (high.empty() || walk.key() < high); found = walk.next())
      ids.push_back(KeyCodec::rowOf(walk.key()));
  }
  return fetch(frame, ids, row);
}

bool Access::byList(Frame& frame, const std::function<bool()>& row) {
  std::vector<RowId> ids;
  std::string prefix;
  TreeWalk walk(table_.index(index_));
  forEachListed(frame, terms_[listTerm_], [&](const Datum& value) {
    if (!encodeListed(index_, value, prefix)) return;
    const bool here = walk.valid() && walk.key().starts_with(prefix);
    for (bool found = here || walk.seek(prefix); found && walk.key().starts_with(prefix); found = walk.next())
      ids.push_back(KeyCodec::rowOf(walk.key()));
  });
  return fetch(frame, ids, row);
}

// Rows that a value known before any source rules out are left aside.
void Access::build(Frame& frame) {
  built_ = std::make_unique<Built>();
  const TableMeta& meta = table_.files().meta();
  const bool withRecords = meta.space[kDat].pages <= kHashedPages;
  if (withRecords) built_->starts.push_back(0);
  std::string identity;
  Texts texts;
  const auto append = [&](const Term& term, const Expression& side, std::string& to) {
    appendIdentity(convert(side.eval(frame), commonType(term.column->type, term.value->type), texts), to);
  };
  std::vector<std::string> known;  // by hashTerms_; empty where the value is a source's
  for (const std::size_t t : hashTerms_) {
    known.emplace_back();
    if (terms_[t].value->sources == 0) append(terms_[t], *terms_[t].value, known.back());
  }
  scan(frame, [&] {
    texts.clear();
    identity.clear();
    for (std::size_t i = 0; i < hashTerms_.size(); ++i) {
      const Term& term = terms_[hashTerms_[i]];
      const std::size_t start = identity.size();
      append(term, *term.column, identity);
      if (!known[i].empty() && std::string_view(identity).substr(start) != known[i]) return true;
    }
    const SourceRow& here = frame.rows[static_cast<std::size_t>(source_)];
    built_->byKey[identity].push_back(static_cast<std::uint32_t>(built_->ids.size()));
    built_->ids.push_back(here.row);
    if (!withRecords) return true;
    built_->records.append(reinterpret_cast<const char*>(here.view->bytes().data()), here.view->bytes().size());
    built_->starts.push_back(built_->records.size());
    return true;
  });
}

bool Access::byHash(Frame& frame, const std::function<bool()>& row) {
  if (!built_) build(frame);
  std::string identity;
  for (const std::size_t t : hashTerms_) {
    const Term& term = terms_[t];
    appendIdentity(convert(term.value->eval(frame), commonType(term.column->type, term.value->type), frame.texts),
                   identity);
  }
  const auto found = built_->byKey.find(identity);
  if (found == built_->byKey.end()) return true;
  if (built_->starts.empty()) {
    std::vector<RowId> ids;
    for (const std::uint32_t place : found->second) ids.push_back(built_->ids[place]);
    return fetch(frame, ids, row);
  }
  SourceRow& here = frame.rows[static_cast<std::size_t>(source_)];
  for (const std::uint32_t place : found->second) {
    here.row = built_->ids[place];
    here.view.emplace(table_.layout(), built_->record(place));
    if (!row()) return false;
  }
  return true;
}

std::string Access::nameOf(int index) const {
  const std::string& name = table_.definition().indexes[static_cast<std::size_t>(index)].name;
  return name.empty() ? "the primary index" : "index " + name;
}

std::string Access::explain() const {
  switch (kind_) {
    case Kind::index:
      return "search " + table_.name() + " by " + nameOf(index_);
    case Kind::list:
      return "search " + table_.name() + " by " + nameOf(index_) + " for each value of a list";
    case Kind::hash:
      return "hash " + table_.name();
    default:
      return "walk " + table_.name();
  }
}

}  // namespace quillon::store::sql
