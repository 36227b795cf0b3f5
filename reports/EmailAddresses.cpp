#include "reports/EmailAddresses.h"

namespace quillon::reports {
namespace {

bool isAlphanumeric(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isOfDomain(char c) { return isAlphanumeric(c) || c == '.' || c == '-'; }
bool isOfName(char c) { return isOfDomain(c) || c == '_' || c == '+'; }

}  // namespace

std::string_view nextEmailAddress(std::string_view text, std::size_t& at) {
  for (std::size_t sign = text.find('@', at); sign != std::string_view::npos; sign = text.find('@', sign + 1)) {
    std::size_t from = sign, to = sign + 1;
    while (from > at && isOfName(text[from - 1])) --from;
    while (from < sign && text[from] == '.') ++from;
    while (to < text.size() && isOfDomain(text[to])) ++to;
    while (to > sign && !isAlphanumeric(text[to - 1])) --to;  // the point of a sentence
    if (from == sign || to <= sign + 1) continue;
    const std::string_view domain = text.substr(sign + 1, to - sign - 1);
    if (domain.front() == '.' || domain.find('.') == std::string_view::npos) continue;
    at = to;
    return text.substr(from, to - from);
  }
  at = text.size();
  return {};
}

}  // namespace quillon::reports
