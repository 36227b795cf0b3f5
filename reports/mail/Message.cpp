#include "reports/mail/Message.h"

#include <array>
#include <ctime>
#include <random>

#include "reports/mail/Encodings.h"

namespace quillon::reports {
namespace {

// This moment, in local time: "Tue, 17 Mar 2026 09:30:00 +0100". The words are English in
// every country, so they are not the C library's.
std::string dateNow() {
  constexpr std::array kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  ::localtime_r(&now, &local);
  std::array<char, 40> day = {}, rest = {};
  (void)std::strftime(day.data(), day.size(), "%d ", &local);
  (void)std::strftime(rest.data(), rest.size(), " %Y %H:%M:%S %z", &local);
  return std::string(kDays.at(static_cast<std::size_t>(local.tm_wday))) + ", " + day.data() +
         kMonths.at(static_cast<std::size_t>(local.tm_mon)) + rest.data();
}

// Letters and digits that no other message has.
std::string newToken() {
  std::random_device random;
  std::string token;
  for (int word = 0; word < 4; ++word) token += std::to_string(random()) + (word < 3 ? "x" : "");
  return token;
}

}  // namespace

std::string wireForm(const Message& message) {
  const std::string token = newToken();
  const std::string boundary = "=_" + token;  // neither of the encodings can write this
  std::string out = "Date: " + dateNow() + "\r\nFrom: " + headerName(message.fromName) + "\r\n <" +
                    message.fromAddress + ">\r\nTo: " + headerList(message.to) + "\r\n";
  if (!message.cc.empty()) out += "Cc: " + headerList(message.cc) + "\r\n";
  out += "Subject: " + headerText(message.subject) + "\r\nMessage-ID: <" + token +
         message.fromAddress.substr(message.fromAddress.rfind('@')) +
         ">\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed;\r\n boundary=\"" + boundary + "\"\r\n\r\n--" +
         boundary +
         "\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n" +
         quotedPrintable(message.body) + "\r\n--" + boundary + "\r\nContent-Type: " + message.fileType +
         headerParameter("name", message.fileName) + "\r\nContent-Disposition: attachment" +
         headerParameter("filename", message.fileName) + "\r\nContent-Transfer-Encoding: base64\r\n\r\n";
  return out + base64Lines(message.file) + "--" + boundary + "--\r\n";
}

}  // namespace quillon::reports
