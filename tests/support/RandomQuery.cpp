#include "support/RandomQuery.h"

#include <algorithm>

namespace quillon::sim {
namespace {

constexpr std::size_t kMostJoined = 1500;  // rows of a product

std::string list(std::size_t count, const std::string& beginning) {
  std::string text;
  for (std::size_t i = 1; i <= count; ++i) text += (i > 1 ? ", " : "") + beginning + std::to_string(i);
  return text;
}

// A whole number in GROUP BY or ORDER BY would name a column of the result.
bool isPosition(const Twin& twin) {
  return std::none_of(twin.theirs.begin(), twin.theirs.end(), [](char byte) { return byte >= 'A' && byte <= 'z'; });
}

template <typename T>
T taken(T& from) {
  T result = std::move(from);
  from = {};
  return result;
}

}  // namespace

std::string RandomQuery::derived(const std::string& alias, QueryScope& scope, std::string& theirs) {
  const QueryTable& table = tables_[random_.below(tables_.size())];
  const QueryScope inner{{alias + "i", table.columns}};
  const auto outside = taken(expressions_.scopes);
  expressions_.scopes = {&inner};
  QuerySource source{alias, {}};
  std::string ours = "(SELECT ";
  theirs = "(SELECT rid";
  for (std::size_t i = 0, count = random_.below(3) + 1; i < count; ++i) {
    const Twin item = expressions_.value(static_cast<Kind>(random_.below(5)), 1);
    const std::string name = "D" + std::to_string(i + 1);
    ours += (i ? ", " : "") + item.ours + " AS " + name;
    theirs += ", " + item.theirs + " AS " + name;
    source.columns.push_back({name, item.kind});
  }
  const Twin where = expressions_.condition(1);
  expressions_.scopes = outside;
  const std::string rest = " FROM " + table.name + " " + alias + "i WHERE ";
  theirs += rest + where.theirs + ") " + alias;
  scope.push_back(source);
  return ours + rest + where.ours + ") " + alias;
}

void RandomQuery::addSource(Joined& joined, bool simple) {
  const QueryTable* table = &tables_[random_.below(tables_.size())];
  for (int i = 0; i < 6 && joined.rows * table->rows > kMostJoined; ++i)
    table = &tables_[random_.below(tables_.size())];
  if (joined.rows * table->rows > kMostJoined) return;
  joined.rows *= table->rows + 1;
  const std::string alias = expressions_.newName("t");
  const bool first = joined.scope.empty();
  const std::size_t kind = first ? 4 : random_.below(5);  // 0, 1: inner, 2, 3: left, 4: product
  constexpr const char* kWords[] = {" INNER JOIN ", " JOIN ", " LEFT OUTER JOIN ", " LEFT JOIN ", ", "};
  const bool cross = kind == 4 && random_.oneIn(2);
  std::string ours = table->name + " " + alias, theirs = ours;
  if (!simple && random_.oneIn(12))
    ours = derived(alias, joined.scope, theirs);
  else
    joined.scope.push_back({alias, table->columns});
  const std::string word = first ? "" : cross ? " CROSS JOIN " : kWords[kind];
  joined.ours += word + ours;
  joined.theirs += word + theirs;
  joined.order = joined.order.empty() ? alias + ".rid" : "(" + joined.order + ")*10000+COALESCE(" + alias + ".rid,0)";
  if (kind == 4) return;
  expressions_.scopes.push_back(&joined.scope);
  const QuerySource& mine = joined.scope.back();
  const QueryColumn& column = mine.columns[random_.below(mine.columns.size())];
  Twin on = expressions_.comparison(expressions_.columnOf(mine, column), expressions_.column(column.kind));
  if (random_.oneIn(3)) {
    const Twin other = expressions_.condition(1);
    const std::string op = random_.oneIn(4) ? " OR " : " AND ";
    on = {Kind::truth, on.ours + op + other.ours, on.theirs + op + other.theirs};
  }
  expressions_.scopes.pop_back();
  joined.ours += " ON " + on.ours;
  joined.theirs += " ON " + on.theirs;
}

RandomQuery::Joined RandomQuery::from(bool simple) {
  Joined joined;
  const std::size_t chance = random_.below(100);
  const std::size_t sources = simple || chance < 50 ? 1 : chance < 87 ? 2 : 3;
  for (std::size_t i = 0; i < sources; ++i) addSource(joined, simple);
  return joined;
}

// What the items of a grouped SELECT are made of.
std::vector<Twin> RandomQuery::groupLeaves(std::vector<Twin>& groupBy) {
  for (std::size_t i = random_.below(3); i > 0; --i)
    groupBy.push_back(random_.percent(75) ? expressions_.column(expressions_.anyKind())
                                          : expressions_.value(static_cast<Kind>(random_.below(5)), 1));
  std::erase_if(groupBy,
                [](const Twin& one) { return isPosition(one) || one.ours.find("SELECT") != std::string::npos; });
  std::vector<Twin> leaves = groupBy;
  for (std::size_t i = random_.below(3) + 1; i > 0; --i)
    leaves.push_back(expressions_.aggregate(static_cast<Kind>(random_.below(5))));
  return leaves;
}

std::vector<Twin> RandomQuery::items(const std::vector<Kind>* wanted, const Joined& joined, bool simple,
                                     std::string& star) {
  std::vector<Twin> result;
  if (!wanted && !expressions_.leaves && random_.oneIn(10)) {
    const std::size_t only = random_.below(joined.scope.size() + 1);
    star = only == joined.scope.size() ? "*" : joined.scope[only].alias + ".*";
    for (std::size_t i = 0; i < joined.scope.size(); ++i)
      for (const QueryColumn& column : joined.scope[i].columns)
        if (only == joined.scope.size() || only == i)
          result.push_back({column.kind, "", joined.scope[i].alias + "." + column.name});
    return result;
  }
  const std::size_t count = wanted ? wanted->size() : random_.below(4) + 1;
  for (std::size_t i = 0; i < count; ++i) {
    if (expressions_.leaves && !wanted && random_.percent(70))
      result.push_back((*expressions_.leaves)[random_.below(expressions_.leaves->size())]);
    else
      result.push_back(expressions_.value(wanted ? (*wanted)[i] : expressions_.anyKind(), simple ? 0 : 2));
  }
  return result;
}

std::vector<RandomQuery::Key> RandomQuery::keys(const std::vector<Twin>& items, const std::vector<std::string>& names,
                                                bool plainStar) {
  std::vector<Key> result;
  if (random_.oneIn(3)) return result;
  for (std::size_t i = random_.below(3) + 1; i > 0; --i) {
    Key key;
    key.descending = random_.oneIn(3);
    if (random_.oneIn(2)) {
      const std::size_t item = random_.below(items.size());
      const bool named = !plainStar && !names[item].empty() && random_.oneIn(2);
      key.ours = named ? names[item] : std::to_string(item + 1);
      key.theirs = "c" + std::to_string(item + 1);
      key.text = items[item].kind == Kind::text;
      key.ofResult = true;
    } else {
      const Kind kind = expressions_.anyKind();
      const Twin one = random_.percent(70) ? expressions_.column(kind) : expressions_.value(kind, 1);
      if (isPosition(one)) continue;
      // A bare name would be a column of the result first.
      if (one.ours.find('.') == std::string::npos && one.ours != one.theirs && !one.ours.ends_with(")")) continue;
      key.ours = one.ours;
      key.theirs = one.theirs;
      key.text = kind == Kind::text;
    }
    result.push_back(key);
  }
  return result;
}

RandomQuery::Core RandomQuery::core(const std::vector<Kind>* wanted, bool withKeys, bool simple) {
  const Joined joined = from(simple);
  expressions_.scopes = {&joined.scope};
  Twin where{Kind::truth, "", ""};
  if (random_.percent(75)) where = expressions_.condition(simple ? 1 : 3);
  const bool grouped = !simple && random_.percent(30);
  std::vector<Twin> groupBy, leaves;
  if (grouped) {
    leaves = groupLeaves(groupBy);
    expressions_.leaves = &leaves;
  }
  std::string star;
  const std::vector<Twin> selected = items(wanted, joined, simple, star);
  std::vector<std::string> names;
  Core result;
  const bool distinct = random_.oneIn(6);
  result.ours = std::string("SELECT ") + (distinct ? "DISTINCT " : "") + star;
  std::string inner = "SELECT ";
  for (std::size_t i = 0; i < selected.size(); ++i) {
    names.push_back(star.empty() && random_.oneIn(2) ? expressions_.newName("R") : "");
    if (star.empty()) result.ours += (i ? ", " : "") + selected[i].ours + (names[i].empty() ? "" : " AS " + names[i]);
    inner += (i ? ", " : "") + selected[i].theirs + " AS c" + std::to_string(i + 1);
    result.kinds.push_back(selected[i].kind);
  }
  const std::string selection = result.ours;
  std::vector<std::string> ofRow;
  if (withKeys) result.keys = keys(selected, names, !star.empty());
  for (Key& key : result.keys)
    if (!key.ofResult) {
      ofRow.push_back(key.theirs);
      key.theirs = "k" + std::to_string(ofRow.size());
      inner += ", " + ofRow.back() + " AS " + key.theirs;
    }
  inner += ", " + (grouped ? "MIN(" + joined.order + ")" : joined.order) + " AS o FROM " + joined.theirs;
  result.ours += " FROM " + joined.ours;
  if (!where.ours.empty()) {
    result.ours += " WHERE " + where.ours;
    inner += " WHERE " + where.theirs;
  }
  for (std::size_t i = 0; i < groupBy.size(); ++i) {
    result.ours += (i ? ", " : " GROUP BY ") + groupBy[i].ours;
    inner += (i ? ", " : " GROUP BY ") + groupBy[i].theirs;
  }
  // Without GROUP BY and an aggregate among the items only HAVING makes it grouped.
  const bool aggregates = std::any_of(leaves.begin() + static_cast<std::ptrdiff_t>(groupBy.size()), leaves.end(),
                                      [&](const Twin& leaf) { return selection.find(leaf.ours) != std::string::npos; });
  if (grouped && (random_.oneIn(3) || (groupBy.empty() && !aggregates))) {
    const Twin having = expressions_.condition(1);
    result.ours += " HAVING " + having.ours;
    inner += " HAVING " + having.theirs;
  }
  expressions_.leaves = nullptr;
  expressions_.scopes.clear();
  const std::string columns = list(selected.size(), "c");
  const std::string more = ofRow.empty() ? "" : ", " + list(ofRow.size(), "k");
  result.theirs =
      distinct ? "SELECT " + columns + more + ", MIN(o) AS o FROM (" + inner + ") GROUP BY " + columns : inner;
  return result;
}

QueryPair RandomQuery::query(const std::vector<Kind>* wanted, bool simple, std::size_t most) {
  expressions_.parameters.clear();
  QueryPair pair;
  const std::size_t cores = !simple && random_.oneIn(7) ? random_.below(2) + 2 : 1;
  Core head = core(wanted, cores == 1, simple);
  pair.columns = head.kinds;
  pair.ours = head.ours;
  const std::string columns = list(head.kinds.size(), "c");
  std::string theirs = head.theirs;
  for (std::size_t i = 1; i < cores; ++i) {
    const Core next = core(&pair.columns, false, simple);
    const bool all = random_.oneIn(2);
    pair.ours += (all ? " UNION ALL " : " UNION ") + next.ours;
    theirs = "SELECT " + columns + ", COALESCE(o,0) AS o FROM (" + theirs + ") UNION ALL SELECT " + columns + ", " +
             std::to_string(i) + "000000000000000+COALESCE(o,0) FROM (" + next.theirs + ")";
    if (!all) theirs = "SELECT " + columns + ", MIN(o) AS o FROM (" + theirs + ") GROUP BY " + columns;
  }
  if (cores > 1 && random_.oneIn(2)) {
    const std::size_t item = random_.below(pair.columns.size());
    head.keys.push_back({std::to_string(item + 1), "c" + std::to_string(item + 1), random_.oneIn(3),
                         pair.columns[item] == Kind::text, true});
  }
  const bool nocase = !accents_ && !head.keys.empty() && random_.oneIn(3);
  pair.theirs = "SELECT " + columns + " FROM (" + theirs + ") ORDER BY ";
  for (std::size_t i = 0; i < head.keys.size(); ++i) {
    const Key& key = head.keys[i];
    pair.ours += (i ? ", " : " ORDER BY ") + key.ours + (key.descending ? " DESC" : "");
    pair.theirs += key.theirs + (nocase && key.text ? " COLLATE NOCASE" : "") + (key.descending ? " DESC, " : ", ");
  }
  if (nocase) pair.ours += " NOCASE";
  pair.theirs += "o";
  if (most > 0 || random_.oneIn(4)) {
    const std::string count = std::to_string(random_.below(most > 0 ? most : 12));
    pair.ours += " TOP " + count;
    pair.theirs += " LIMIT " + count;
  }
  pair.parameters = expressions_.parameters;
  return pair;
}

QueryPair RandomQuery::select() { return query(nullptr, random_.oneIn(3), 0); }

QueryPair RandomQuery::change() {
  const QueryTable& table = tables_[random_.below(tables_.size())];
  expressions_.parameters.clear();
  QueryPair pair;
  expressions_.without = table.name;  // a sub-select of theirs would see what the statement has already written
  switch (random_.below(5)) {
    case 0:
      pair = remove(table);
      break;
    case 1:
      pair = insert(table);
      break;
    default:
      pair = update(table);
  }
  expressions_.without.clear();
  pair.changed = table.name;
  if (pair.parameters.empty()) pair.parameters = expressions_.parameters;
  return pair;
}

QueryPair RandomQuery::update(const QueryTable& table) {
  const QueryScope scope{{table.name, table.columns}};
  expressions_.scopes = {&scope};
  QueryPair pair;
  pair.ours = pair.theirs = "UPDATE " + table.name + " SET ";
  std::vector<std::string> seen;
  for (std::size_t i = 0, count = random_.below(3) + 1; i < count; ++i) {
    const QueryColumn& column = table.columns[random_.below(table.columns.size())];
    if (std::find(seen.begin(), seen.end(), column.name) != seen.end()) continue;
    Twin value = random_.oneIn(8) ? Twin{column.kind, "NULL", "NULL"} : expressions_.value(column.kind, 0);
    if (random_.oneIn(3) && (column.kind == Kind::whole || column.kind == Kind::real || column.kind == Kind::money)) {
      const Twin one{Kind::whole, "1", "1"};
      value = {column.kind, value.ours + " + 1", value.theirs + " + " + widened(one, column.kind)};
    }
    if (random_.oneIn(4) && column.kind != Kind::truth) {
      const Twin when = expressions_.condition(1);
      value = {
          column.kind, "IF(" + when.ours + " THEN " + value.ours + " ELSE " + column.name + ")",
          "CASE WHEN " + when.theirs + " THEN " + value.theirs + " ELSE " + table.name + "." + column.name + " END"};
    }
    pair.ours += (seen.empty() ? "" : ", ") + column.name + " = " + value.ours;
    pair.theirs += (seen.empty() ? "" : ", ") + column.name + " = " + value.theirs;
    seen.push_back(column.name);
  }
  if (random_.percent(85)) {
    const Twin where = expressions_.condition(2);
    pair.ours += " WHERE " + where.ours;
    pair.theirs += " WHERE " + where.theirs;
  }
  expressions_.scopes.clear();
  return pair;
}

QueryPair RandomQuery::remove(const QueryTable& table) {
  const QueryScope scope{{table.name, table.columns}};
  expressions_.scopes = {&scope};
  const Twin where = expressions_.condition(2);
  const Twin fewer = expressions_.condition(1);
  expressions_.scopes.clear();
  QueryPair pair;
  pair.ours = "DELETE FROM " + table.name + " WHERE " + where.ours + " AND " + fewer.ours;
  pair.theirs = "DELETE FROM " + table.name + " WHERE " + where.theirs + " AND " + fewer.theirs;
  return pair;
}

QueryPair RandomQuery::insert(const QueryTable& table) {
  std::vector<Kind> kinds;
  std::string names;
  for (const QueryColumn& column : table.columns)
    if (random_.percent(70) || (kinds.empty() && &column == &table.columns.back())) {
      names += (kinds.empty() ? "" : ", ") + column.name;
      kinds.push_back(column.kind);
    }
  QueryPair pair = query(&kinds, true, 8);
  pair.ours = "INSERT INTO " + table.name + " (" + names + ") " + pair.ours;
  pair.theirs = "INSERT INTO " + table.name + " (" + names + ") " + pair.theirs;
  return pair;
}

}  // namespace quillon::sim
