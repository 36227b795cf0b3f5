#pragma once

#include <functional>
#include <string>

namespace quillon::shell {
class Session;
}

namespace quillon::reports {

// A document that goes to a customer or vendor.
struct EmailedDocument {
  std::string kind;     // "invoice", "quote" or "purchase order"
  std::string title;    // "Invoice 1042": the subject, and the name offered for the file
  std::string partner;  // "Customer" or "Vendor"
  std::string address;  // of the partner, as on record; several between commas or semicolons
  std::string contact;  // whom the letter greets
  std::function<void(const std::string& path)> writePdf;
};

// The command of invoices, quotes and purchase orders: makes the document's PDF where the person says, asks, sends it
// with the company's e-mail settings, and asks whether the file shall stay. Whether a record is selected is the
// caller's to know.
//
// A send that fails is told and ends nothing: the question about the file follows. Settings that are missing lead to
// "Your Company" when the person likes. Refusal without a printer or an address; Error of writePdf; a silent stop when
// the person gives up before there is a file.
void emailDocument(shell::Session& session, const EmailedDocument& document);

}  // namespace quillon::reports
