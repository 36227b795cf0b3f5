#include "reports/mail/EmailDocument.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/Errors.h"
#include "base/Text.h"
#include "form/App.h"
#include "platform/SystemError.h"
#include "reports/FileName.h"
#include "reports/mail/Addresses.h"
#include "reports/mail/SendMail.h"
#include "shell/Printer.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::reports {
namespace {

// Without these nothing can be sent; in the order of "Your Company".
constexpr std::array kNeeded = {"EmailHost", "EmailUserID", "EmailPassword", "EmailFromName", "EmailFromAddress"};

class Company {
 public:
  explicit Company(shell::Session& session) : row_(session.tblCompany()) { row_.refresh(); }

  std::string asTyped(const char* field) const { return row_.isEmpty() ? std::string() : row_[field].asText(); }
  std::string text(const char* field) const { return std::string(trim(asTyped(field))); }
  // The first of the needed fields that is empty; null when none is.
  const char* missing() const {
    const auto* const field = std::ranges::find_if(kNeeded, [&](const char* some) { return text(some).empty(); });
    return field == kNeeded.end() ? nullptr : *field;
  }

 private:
  store::Cursor& row_;
};

void requireSettings(shell::Session& session, const Company& company) {
  const char* missing = company.missing();
  if (missing == nullptr) return;
  if (session.person().confirm("Info required for sending emails has not yet been entered on \"Your "
                               "Company\".\r\rWould you like to enter it "
                               "now?"))
    session.app().open("TfrmCompany", {.focus = missing});
  form::abort();
}

std::string chooseFile(form::Person& person, const EmailedDocument& document) {
  const auto path = person.chooseFile({.title = "Create " + document.kind + " PDF for email",
                                       .filter = "PDF files (*.pdf)|*.pdf",
                                       .name = fileNameOf(document.title),
                                       .extension = "pdf",
                                       .saving = true});
  if (!path) form::abort();
  return *path;
}

void writePdf(form::Person& person, const EmailedDocument& document, const std::string& path) {
  person.hourglass(true);
  document.writePdf(path);
  person.hourglass(false);
}

std::string bytesOf(const std::string& path) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) throw platform::systemError("read", path, errno == 0 ? EIO : errno);
  return bytes;
}

Message messageOf(const Company& company, const EmailedDocument& document, const std::string& path) {
  Message message;
  message.fromName = company.text("EmailFromName");
  const auto from = addressesIn(company.text("EmailFromAddress"));
  if (from.size() != 1) throw Error("The From Address has to be one e-mail address");
  message.fromAddress = from.front();
  message.to = addressesIn(document.address);
  message.cc = addressesIn(company.text("EmailCCAddress"));
  message.bcc = addressesIn(company.text("EmailBCCAddress"));
  message.subject = document.title;
  message.body = "Hi " + document.contact + ",\n\nPlease see attachment.\n\nThank you,\n" + message.fromName + "\n" +
                 company.text("CompanyName") + "\n\n";
  message.fileName = std::filesystem::path(path).filename().string();
  message.fileType = "application/pdf";
  message.file = bytesOf(path);
  return message;
}

MailServer serverOf(const Company& company) {
  MailServer server = MailServer::named(company.text("EmailHost"));
  server.user = company.text("EmailUserID");
  server.password = company.asTyped("EmailPassword");
  return server;
}

bool agree(form::Person& person, const std::string& question) {
  return person.ask({.tone = form::Tone::confirmation,
                     .text = question,
                     .buttons = {form::Button::ok, form::Button::cancel}}) == form::Button::ok;
}

void send(form::Person& person, const Company& company, const EmailedDocument& document, const std::string& path) {
  if (!agree(person, "Send email?\r\rSubject: " + document.title + "\rTo: " + document.address)) return;
  try {
    sendMail(serverOf(company), messageOf(company, document, path), person);
  } catch (const Error& error) {
    person.show(form::Tone::error, "Email could not be sent...\r\r" + std::string(error.what()) +
                                       "\rCheck email settings (Host, UserID, Password) in Your Company.");
  }
}

void offerToDelete(form::Person& person, const std::string& path) {
  if (!agree(person, "Delete PDF file?")) return;
  std::error_code error;
  std::filesystem::remove(path, error);
  if (error) throw platform::systemError("delete", path, error.value());
}

}  // namespace

void emailDocument(shell::Session& session, const EmailedDocument& document) {
  shell::requirePrinter(session);
  const Company company(session);
  requireSettings(session, company);
  if (addressesIn(document.address).empty()) form::refuse(document.partner + "'s Email Address has not been entered");
  form::Person& person = session.person();
  const std::string path = chooseFile(person, document);
  writePdf(person, document, path);
  send(person, company, document, path);
  offerToDelete(person, path);
}

}  // namespace quillon::reports
