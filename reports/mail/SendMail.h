#pragma once

#include <chrono>
#include <string>

#include "reports/mail/Message.h"

namespace quillon::form {
class Person;
}

namespace quillon::reports {

// Who takes e-mail from us, and as whom we log in.
struct MailServer {
  // "mail.oak.example", "mail.oak.example:587" or "[::1]:25" as a person typed it. Error when it is none of them.
  static MailServer named(const std::string& text);

  std::string host;
  int port = 0;               // 0: 587, where programs hand in mail, and 25 when nobody listens there
  bool tlsFromStart = false;  // port 465 is for that; anywhere else TLS begins when the server offers it
  std::string user, password;
  std::chrono::seconds patience{60};  // to connect and log in, for each answer, and while no byte moves
};

// Sends the message to all of `to`, `cc` and `bcc`, or to none when the server refuses one of them. False: the person
// cancelled. Error tells in the person's words what went wrong; what the server said is quoted.
//
// A server's certificate is checked by those that the system trusts and by its name, so that nobody in between can take
// the password; only on this machine itself (localhost, 127.x.x.x, ::1) is any certificate good enough, since nobody
// can stand in between and mail programs there sign their own. A server that offers no TLS is spoken to without, as one
// in the house may be. No proxy is used.
//
// The person may cancel at any time; every tenth of a second at the latest they are heard, and once a second while the
// server makes up its mind about the whole message.
bool sendMail(const MailServer& server, const Message& message, form::Person& person);

}  // namespace quillon::reports
