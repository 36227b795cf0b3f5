#include "ledger/AccountRange.h"

#include "form/FilterScreen.h"

namespace quillon::ledger {
namespace {

constexpr int kNumberSize = 10;

std::string bound(const std::string& field, const char* comparison, const store::Value& number) {
  if (number.isNull()) return {};
  return "(UPPER(" + field + ")" + comparison + "UPPER(" + quoted(number.asText()) + "))";
}

}  // namespace

std::string quoted(const std::string& text) {
  std::string all = "'";
  for (const char c : text) all += c == '\'' ? "''" : std::string(1, c);
  return all + "'";
}

form::Control& AccountRange::told(form::Layout& l) {
  form::Control& first = l.edit("editAccountFrom", "&Account no. from:", from, form::textConverter(kNumberSize));
  form::Control& last = l.edit("editAccountTo", "t&o:", to, form::textConverter(kNumberSize));
  return l.row(first.wide(kNumberSize), last.wide(kNumberSize));
}

std::string AccountRange::condition(const std::string& field) const {
  return form::allOf({bound(field, " >= ", from.value), bound(field, " <= ", to.value)});
}

}  // namespace quillon::ledger
