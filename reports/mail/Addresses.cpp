#include "reports/mail/Addresses.h"

#include <algorithm>

#include "base/Errors.h"
#include "base/Text.h"
#include "reports/mail/Encodings.h"

namespace quillon::reports {
namespace {

constexpr std::string_view kBetween = ",;";

// What is between the separators and not empty.
std::vector<std::string_view> parts(std::string_view text) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = std::min(text.find_first_of(kBetween), text.size());
    if (const std::string_view part = trim(text.substr(0, end)); !part.empty()) parts.push_back(part);
    if (end == text.size()) return parts;
    text.remove_prefix(end + 1);
  }
}

// Of "Ben <ben@oak.example>" what is in the brackets.
std::string_view withoutName(std::string_view part) {
  const std::size_t open = part.rfind('<');
  if (open == std::string_view::npos || part.back() != '>') return part;
  return trim(part.substr(open + 1, part.size() - open - 2));
}

bool isAddress(std::string_view text) {
  const std::size_t at = text.rfind('@');
  return at != std::string_view::npos && at > 0 && at + 1 < text.size() &&
         std::ranges::none_of(text, [](unsigned char c) {
           return c <= ' ' || c == 0x7F ||
                  std::string_view("<>()[]\"\\:").find(static_cast<char>(c)) != std::string_view::npos;
         });
}

}  // namespace

std::vector<std::string> addressesIn(std::string_view text) {
  std::vector<std::string> addresses;
  for (const std::string_view part : parts(text)) {
    addresses.emplace_back(withoutName(part));
    if (!isAddress(addresses.back())) throw Error("'" + std::string(part) + "' is not an e-mail address");
  }
  return addresses;
}

// An address that is none spoils only itself: the person sees it in the mail program.
std::string mailLink(const std::vector<std::string>& addresses) {
  constexpr std::size_t kMost = 200002, kBeside = 15;
  std::string joined;
  for (const std::string& record : addresses)
    for (const std::string_view part : parts(record)) {
      if (!joined.empty()) joined += ',';
      joined += percentEncoded(withoutName(part), "@");
    }
  if (joined.size() + kBeside >= kMost)
    throw Error("Email feature could not run because there are too many email addresses...\r\rTry filtering the list.");
  return "mailto:?cc=&bcc=" + joined;
}

}  // namespace quillon::reports
