#pragma once

#include <string>
#include <vector>

namespace quillon::reports {

// An e-mail with a file. Texts are UTF-8; addresses are as addressesIn gives them.
struct Message {
  std::string fromName, fromAddress;
  std::vector<std::string> to, cc, bcc;
  std::string subject;
  std::string body;      // lines end with LF
  std::string fileName;  // as the receiver sees it, without folders
  std::string fileType;  // "application/pdf"
  std::string file;      // its bytes
};

// The message as it goes over the wire, dated now and unlike any other; lines end with CRLF, and all is ASCII but for
// addresses that are not. `bcc` is not told.
std::string wireForm(const Message& message);

}  // namespace quillon::reports
