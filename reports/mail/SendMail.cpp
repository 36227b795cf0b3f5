#include "reports/mail/SendMail.h"

#include <algorithm>
#include <charconv>

#include "base/Errors.h"
#include "base/Text.h"
#include "reports/mail/SmtpTransfer.h"

namespace quillon::reports {
namespace {

constexpr int kTlsPort = 465, kHandInPort = 587, kOldPort = 25;

bool isHostName(std::string_view name) {
  return !name.empty() && name.front() != '-' && std::ranges::all_of(name, [](unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
           c == '_' || c >= 0x80;
  });
}

// In brackets.
bool isNumericHost(std::string_view name) {
  return name.size() > 2 && name.front() == '[' && name.back() == ']' &&
         name.find_first_not_of("0123456789abcdefABCDEF:.", 1) == name.size() - 1;
}

}  // namespace

MailServer MailServer::named(const std::string& text) {
  const std::string_view all = trim(text);
  const std::size_t colon = all.find(':', all.starts_with('[') ? std::min(all.find(']'), all.size()) : 0);
  MailServer server;
  server.host = all.substr(0, colon);
  bool sound = isHostName(server.host) || isNumericHost(server.host);
  if (colon != std::string_view::npos) {
    const std::string_view digits = all.substr(colon + 1);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), server.port);
    sound = sound && error == std::errc() && end == digits.data() + digits.size() && server.port > 0 &&
            server.port <= 65535;
  }
  if (!sound) throw Error("'" + std::string(all) + "' is not a mail server: it takes a name, or a name:port.");
  server.tlsFromStart = server.port == kTlsPort;
  return server;
}

bool sendMail(const MailServer& server, const Message& message, form::Person& person) {
  const std::string wire = wireForm(message);
  MailServer tried = server;
  if (server.port == 0) {
    tried.port = kHandInPort;
    const SmtpEnd end = SmtpTransfer(tried, message, wire, person).run();
    if (end != SmtpEnd::nobodyListens) return end == SmtpEnd::sent;
    tried.port = kOldPort;
  }
  const SmtpEnd end = SmtpTransfer(tried, message, wire, person).run();
  if (end == SmtpEnd::nobodyListens)
    throw Error("Nobody answers at '" + server.host + "', port " +
                (server.port == 0 ? "587 or 25" : std::to_string(server.port)) + ".");
  return end == SmtpEnd::sent;
}

}  // namespace quillon::reports
