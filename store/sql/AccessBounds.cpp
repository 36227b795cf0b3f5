// What of an index the conditions on a source leave.
#include <algorithm>
#include <cmath>
#include <limits>

#include "store/Errors.h"
#include "store/KeyCodec.h"
#include "store/sql/Access.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

bool isRange(Op op) { return op == Op::less || op == Op::lessEqual || op == Op::greater || op == Op::greaterEqual; }

// False: a field cannot hold its value.
bool encode(const KeyCodec& codec, const std::vector<Value>& values, std::string& out) {
  try {
    codec.encodePrefix(values, out);
    return true;
  } catch (const StoreError& error) {
    if (error.code() != Code::badValue) throw;
    return false;
  }
}

template <typename Whole>
Value clamped(double number) {
  if (number < static_cast<double>(std::numeric_limits<Whole>::min()))
    return std::int64_t{std::numeric_limits<Whole>::min()};
  if (number >= -static_cast<double>(std::numeric_limits<Whole>::min()))
    return std::int64_t{std::numeric_limits<Whole>::max()};
  return static_cast<std::int64_t>(std::floor(number));
}

// What a field can hold beside a limit that it cannot hold. No value of the field lies between the two, so a value
// beyond the limit lies beyond this one or is the same. Null where it is not known.
Value nearest(const FieldDef& field, const Datum& limit) {
  constexpr double kMostMoney = 922'337'203'685'478;
  constexpr double kExact = 549'755'813'888;  // amounts up to it are exact as floats
  if (field.type == FieldType::date && limit.type == Type::dateTime) return valueOf(limit).asDateTime().date;
  if (!isNumber(limit.type) || (limit.type == Type::real && !std::isfinite(limit.real))) return {};
  const double number = limit.type == Type::real    ? limit.real
                        : limit.type == Type::money ? Money::fromRaw(limit.whole).toDouble()
                                                    : static_cast<double>(limit.whole);
  switch (field.type) {
    case FieldType::smallint:
      return clamped<std::int16_t>(number);
    case FieldType::integer:
    case FieldType::autoInc:
      return clamped<std::int32_t>(number);
    case FieldType::largeInt:
      return clamped<std::int64_t>(number);
    case FieldType::currency:
      if (std::fabs(number) > kExact && std::fabs(number) < kMostMoney) return {};
      return Money::fromRaw(clamped<std::int64_t>(number * Money::kScale).asInt64());
    case FieldType::floating:
      return number;
    default:
      return {};
  }
}

}  // namespace

bool Access::isText(int field) const {
  return table_.definition().fields[static_cast<std::size_t>(field)].type == FieldType::string;
}

int Access::equalities(int index, bool& range) const {
  const IndexDef& definition = table_.definition().indexes[static_cast<std::size_t>(index)];
  int count = 0;
  range = false;
  for (const IndexPart& part : definition.parts) {
    const auto of = [&](bool wanted) {
      return std::any_of(terms_.begin(), terms_.end(), [&](const Term& term) {
        return term.field == part.field && term.value && (wanted ? term.op == Op::equal : isRange(term.op));
      });
    };
    if (of(true)) {
      ++count;
      continue;
    }
    range = of(false) && !(definition.caseInsensitive && isText(part.field));
    break;
  }
  return count;
}

bool Access::bounds(int index, Frame& frame, std::string& low, std::string& high) const {
  const IndexDef& definition = table_.definition().indexes[static_cast<std::size_t>(index)];
  const KeyCodec& codec = table_.codec(index);
  std::vector<Value> values;
  bool range = false;
  const auto equal = static_cast<std::size_t>(equalities(index, range));
  for (std::size_t i = 0; i < equal; ++i)
    for (const Term& term : terms_)
      if (term.field == definition.parts[i].field && term.op == Op::equal && term.value) {
        values.push_back(valueOf(term.value->eval(frame)));
        break;
      }
  if (!encode(codec, values, low)) return false;  // no row has a value that its field cannot hold
  high = KeyCodec::successor(low);
  if (!range) return true;
  const IndexPart& part = definition.parts[equal];
  for (const Term& term : terms_) {
    if (term.field != part.field || !isRange(term.op)) continue;
    const Datum limit = term.value->eval(frame);
    if (limit.isNull()) return false;
    values.resize(equal);
    values.push_back(valueOf(limit));
    std::string bound;
    if (!encode(codec, values, bound)) {
      values.back() = nearest(table_.layout().field(part.field), limit);
      if (values.back().isNull() || !encode(codec, values, bound)) continue;  // left to the test of the rows
    }
    const bool from = (term.op == Op::greater || term.op == Op::greaterEqual) != part.descending;
    if (from) {
      low = std::max(low, bound);
    } else if (bound = KeyCodec::successor(bound); !bound.empty()) {
      high = high.empty() ? bound : std::min(high, bound);
    }
  }
  return true;
}

std::uint64_t Access::countBetween(int index, const std::string& low, const std::string& high) const {
  Tree& tree = table_.index(index);
  const std::uint64_t above = high.empty() ? tree.count() : tree.rank(high);
  return above - std::min(above, tree.rank(low));
}

}  // namespace quillon::store::sql
