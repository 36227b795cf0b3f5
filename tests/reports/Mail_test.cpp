// E-mail against real servers on this machine, each for one session (smtp_server), which read a message with another
// library than the one that wrote it.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "reports/mail/Addresses.h"
#include "reports/mail/EmailDocument.h"
#include "reports/mail/SendMail.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/Refusal.h"
#include "support/TempFolder.h"
#include "support/Workplace.h"

namespace quillon::reports {
namespace {

// Servers, one after the other, each for one session.
class SmtpServer {
 public:
  explicit SmtpServer(const std::string& arguments)
      : output_(::popen(("'" QUILLON_SMTP_SERVER "' " + arguments).c_str(), "r")) {
    if (output_ == nullptr) throw Error("no server");
    std::istringstream ports(line());
    for (int port = 0; ports >> port;) ports_.push_back(port);
  }
  ~SmtpServer() { (void)::pclose(output_); }
  SmtpServer(const SmtpServer&) = delete;
  SmtpServer& operator=(const SmtpServer&) = delete;

  int port() const { return ports_.at(0); }
  // What the session heard, when it has ended; the next one begins.
  std::string told() {
    std::string all, next;
    while ((next = line()) != "--\n" && !next.empty()) all += next;
    ports_.erase(ports_.begin());
    return all;
  }

 private:
  std::string line() {
    std::string line;
    for (int c = 0; !line.ends_with('\n') && (c = std::fgetc(output_)) != EOF;) line += static_cast<char>(c);
    return line;
  }

  FILE* output_;
  std::vector<int> ports_;
};

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string somePdf() {
  std::string bytes = "%PDF-1.7\r\n.\r\n..\n";
  for (int i = 0; i < 50'000; ++i)
    bytes += static_cast<char>(static_cast<unsigned>(i) * static_cast<unsigned>(i) % 251);
  return bytes;
}

Message someMessage() {
  Message message;
  message.fromName = "Oak";
  message.fromAddress = "books@oak.example";
  message.to = {"ann@elm.example"};
  message.subject = "Invoice 7";
  message.body = "Hi\n";
  message.fileName = "Invoice 7.pdf";
  message.fileType = "application/pdf";
  message.file = somePdf();
  return message;
}

MailServer at(const SmtpServer& server, const std::string& host = "localhost") {
  MailServer there = MailServer::named(host + ":" + std::to_string(server.port()));
  there.user = "oak";
  there.password = "s3 cret";
  there.patience = std::chrono::seconds(30);
  return there;
}

// What the person would be told; "sent" or "cancelled" when nothing.
std::string outcome(const MailServer& server, sim::ScriptedPerson& person) {
  bool sent = false;
  const std::string told = sim::refusalOf([&] { sent = sendMail(server, someMessage(), person); });
  return !told.empty() ? told : sent ? "sent" : "cancelled";
}

double secondsOf(const std::function<void()>& work) {
  const auto begun = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

TEST(Mail, ArrivesWholeWhateverIsInIt) {
  const sim::TempFolder folder;
  const std::string saved = folder.path() + "/saved";
  SmtpServer server("starttls SAVE " + saved);
  Message message = someMessage();
  const std::string longName = "Türe \"Grün\" & Söhne, Straße der Träume 12, Zürich, Ελλάδα, Москва";
  message.fromName = longName;
  message.to = addressesIn("ann@elm.example; Ben <ben@elm.example>");
  message.cc = addressesIn("cc@oak.example");
  message.bcc = addressesIn("b1@oak.example,b2@oak.example");
  message.subject = longName + " =?UTF-8?B?eA==?=";
  message.body =
      "Hi Jürgen,\n.\n..\n.hidden\n= 100% \n\n" + std::string(300, 'x') + "\n" + std::string(74, 'y') + "é \n";
  message.fileName = longName + ".pdf";
  sim::ScriptedPerson person;
  long last = 0;
  person.onProgress = [&](const form::Progress& progress) {
    EXPECT_GE(progress.done, last);
    EXPECT_LE(progress.done, progress.total);
    last = progress.done;
    return true;
  };
  EXPECT_TRUE(sendMail(at(server), message, person));
  EXPECT_EQ(server.told(),
            "TLS\nlogin oak s3 cret\nMAIL FROM:<books@oak.example>\nRCPT TO:<ann@elm.example>\n"
            "RCPT TO:<ben@elm.example>\nRCPT TO:<cc@oak.example>\nRCPT TO:<b1@oak.example>\n"
            "RCPT TO:<b2@oak.example>\n"
            "From: " +
                longName + " <books@oak.example>\nTo: ann@elm.example, ben@elm.example\nCc: cc@oak.example\nSubject: " +
                message.subject + "\nBody: 'Hi Jürgen,\\r\\n.\\r\\n..\\r\\n.hidden\\r\\n= 100% \\r\\n\\r\\n" +
                std::string(300, 'x') + "\\r\\n" + std::string(74, 'y') + "é \\r\\n'\nFile: application/pdf " +
                message.fileName + " " + message.fileName + "\n");
  EXPECT_EQ(contents(saved), message.file);
}

TEST(Mail, TellsWhyItDidNotArrive) {
  const struct {
    std::string server, host, told;
    bool tlsFromStart = false;
    int patience = 30;
  } cases[] = {
      {"plain", "127.0.0.1", "sent"},
      {"plain OFFER 'AUTH LOGIN GSSAPI NTLM'", "localhost", "sent"},
      {"plain QUIT silent", "localhost", "sent"},
      {"tls", "localhost", "sent", true},
      {"plain AUTH '535 5.7.8 Who are you'", "localhost",
       "The server 'localhost' did not accept the user or the password. It said: 535 5.7.8 Who are you"},
      {"plain RCPT '550-No such\r\n550 user'", "localhost",
       "The server 'localhost' refused the e-mail. It said: 550 No such user"},
      {"plain CONNECT '554 go away'", "localhost", "The server 'localhost' refused the e-mail. It said: 554 go away"},
      {"plain END '552 too big'", "localhost", "The server 'localhost' refused the e-mail. It said: 552 too big"},
      {"plain CONNECT silent", "localhost", "The server 'localhost' did not answer in time.", false, 1},
      {"plain MAIL silent", "localhost", "The server 'localhost' did not answer in time.", false, 1},
      {"plain END silent", "localhost",
       "The server 'localhost' did not answer in time. It may have taken the e-mail all the same.", false, 1},
      {"plain EHLO drop", "localhost", "The connection to 'localhost' broke off."},
      {"plain END drop", "localhost",
       "The connection to 'localhost' broke off. It may have taken the e-mail all the same."},
      {"plain CONNECT 'HTTP/1.1 what'", "localhost", "What answers at 'localhost' is not a mail server.", false, 1},
      {"starttls", "mail.localhost",
       "The server 'mail.localhost' could not prove that it is the one it should be. SSL certificate problem: "
       "self-signed certificate"}};
  std::string all;
  for (const auto& some : cases) all += std::string(some.server) + " , ";
  SmtpServer server(all + "plain");
  for (const auto& some : cases) {
    SCOPED_TRACE(some.server);
    MailServer there = at(server, some.host);
    there.tlsFromStart = some.tlsFromStart;
    there.patience = std::chrono::seconds(some.patience);
    sim::ScriptedPerson person;
    const std::string told = outcome(there, person);
    EXPECT_EQ(told, some.told);
    const std::string heard = server.told();
    EXPECT_EQ(heard.find("File: ") != std::string::npos, told == "sent") << heard;
    EXPECT_TRUE(some.host != "mail.localhost" || heard.find("login") == std::string::npos) << heard;
  }
  MailServer there = at(server);
  sim::ScriptedPerson person;
  EXPECT_EQ(outcome(there, person), "sent");
  (void)server.told();
  EXPECT_EQ(outcome(there, person), "Nobody answers at 'localhost', port " + std::to_string(there.port) + ".");
  there.host = "no-such-host.invalid";
  EXPECT_EQ(outcome(there, person), "The server 'no-such-host.invalid' was not found.");
}

TEST(Mail, BreaksOffInTheMiddle) {
  SmtpServer server("plain BODY drop");
  sim::ScriptedPerson person;
  Message message = someMessage();
  message.file.assign(20'000'000, 'x');
  EXPECT_EQ(sim::refusalOf([&] { sendMail(at(server), message, person); }), "The connection to 'localhost' broke off.");
}

TEST(Mail, IsCancelledAtOnce) {
  SmtpServer server(
      "plain CONNECT silent , plain EHLO silent , plain AUTH silent , plain RCPT silent , plain DATA silent , plain "
      "END silent");
  for (const char* step : {"CONNECT", "EHLO", "AUTH", "RCPT", "DATA", "END"}) {
    MailServer there = at(server);
    sim::ScriptedPerson person;
    const auto begun = std::chrono::steady_clock::now();
    person.onProgress = [&](const form::Progress& progress) {
      return !progress.cancellable || std::chrono::steady_clock::now() - begun < std::chrono::milliseconds(200);
    };
    std::string told;
    EXPECT_LT(secondsOf([&] { told = outcome(there, person); }), 5) << step;
    EXPECT_EQ(told, "cancelled") << step;
    (void)server.told();
  }
}

TEST(Mail, TakesServersAndAddressesAsTheyAreTyped) {
  const struct {
    const char *text, *host;
    int port;
    bool tls;
  } servers[] = {{"mail.oak.example", "mail.oak.example", 0, false},
                 {" mail.oak.example:587 ", "mail.oak.example", 587, false},
                 {"mail:465", "mail", 465, true},
                 {"[::1]:25", "[::1]", 25, false}};
  for (const auto& some : servers) {
    const MailServer server = MailServer::named(some.text);
    EXPECT_EQ(server.host, some.host);
    EXPECT_EQ(server.port, some.port);
    EXPECT_EQ(server.tlsFromStart, some.tls);
  }
  for (const char* wrong :
       {"", "mail:", "mail:0", "mail:70000", "mail:x", "smtp://mail", "a b", "mail/x", "u@mail", "-x"})
    EXPECT_NE(sim::refusalOf([&] { MailServer::named(wrong); }), "") << wrong;

  EXPECT_EQ(addressesIn(" a@b , Ben <c@d>;;"), (std::vector<std::string>{"a@b", "c@d"}));
  for (const char* wrong : {"ann", "@oak", "ann@", "a b@c", "a@b\r\nBcc: x@y", "<a@b> RCPT TO:<c@d", "a@b>", "\"x\"@b"})
    EXPECT_NE(sim::refusalOf([&] { addressesIn(wrong); }), "") << wrong;

  EXPECT_EQ(mailLink({"ann@elm.example", "", "Ben <ben&co@elm.example>; x y@elm"}),
            "mailto:?cc=&bcc=ann@elm.example,ben%26co@elm.example,x%20y@elm");
  const std::string most(200002 - 15 - 1, 'x');
  EXPECT_EQ(mailLink({most}).size(), most.size() + 16);
  EXPECT_EQ(sim::refusalOf([&] { mailLink({most, ""}); }), "");
  EXPECT_EQ(sim::refusalOf([&] { mailLink({most + "x"}); }),
            "Email feature could not run because there are too many email addresses...\r\rTry filtering the list.");
}

class EmailOfADocument : public testing::Test, protected sim::Workplace {
 protected:
  EmailOfADocument() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    store::createCompanyTables(other_.database());
    store::Query(other_.database(), "INSERT INTO Company (CompanyNo, CompanyName) VALUES (1, 'Oak & Söhne')").execute();
    shell::registerScreens(session_);
    session_.attach(sim::kSharedFolder);
  }
  ~EmailOfADocument() override { session_.detach(); }

  // Another process changes the company.
  void set(const std::string& fields) { store::Query(other_.database(), "UPDATE Company SET " + fields).execute(); }
  void setAll(int port) {
    set("EmailHost = 'localhost:" + std::to_string(port) +
        "', EmailUserID = 'oak', EmailPassword = 'secret', EmailFromName = 'Oak', "
        "EmailFromAddress = 'books@oak.example', EmailCCAddress = 'cc@oak.example'");
  }
  // What was told and asked.
  std::string email(const std::string& address, std::initializer_list<form::Button> answers) {
    person_.answers.assign(answers);
    person_.texts = {pdf_};
    std::string refused;
    try {
      emailDocument(session_, {.kind = "invoice",
                               .title = "Invoice 10/42",
                               .partner = "Customer",
                               .address = address,
                               .contact = "Jürgen",
                               .writePdf = [](const std::string& path) { std::ofstream(path) << "%PDF"; }});
    } catch (const Abort&) {
      refused = "stopped";
    } catch (const Error& error) {
      refused = error.what();
    }
    EXPECT_TRUE(person_.answers.empty());
    const std::string heard = person_.takeHeard();
    return heard + (heard.empty() || refused.empty() ? "" : "\n") + refused;
  }

  static constexpr auto kOk = form::Button::ok, kCancel = form::Button::cancel, kYes = form::Button::yes,
                        kNo = form::Button::no;
  static constexpr const char* kAsked =
      "file: Create invoice PDF for email\nconfirmation: Send email?\r\rSubject: Invoice 10/42\rTo: ann@elm.example\n";
  static constexpr const char* kDelete = "confirmation: Delete PDF file?";
  sim::TempFolder folder_;
  std::string pdf_ = folder_.path() + "/Invoice 10 42.pdf";
};

TEST_F(EmailOfADocument, NeedsAPrinterTheSettingsAndAnAddress) {
  const std::string question =
      "confirmation: Info required for sending emails has not yet been entered on \"Your Company\".\r\rWould you like "
      "to enter it now?\nstopped";
  EXPECT_EQ(email("ann@elm.example", {kNo}), question);
  EXPECT_EQ(session_.app().find("frmCompany"), nullptr);
  setAll(25);
  EXPECT_EQ(email(" ", {}), "Customer's Email Address has not been entered");
  EXPECT_EQ(email("ann", {}), "'ann' is not an e-mail address");
  for (const char* field : {"EmailFromAddress", "EmailFromName", "EmailPassword", "EmailUserID", "EmailHost"}) {
    set(std::string(field) + " = ' '");
    EXPECT_EQ(email("", {kYes}), question);
    form::Screen* company = session_.app().find("frmCompany");
    ASSERT_NE(company, nullptr);
    EXPECT_EQ(company->focused(), company->findField(field)) << field;
    EXPECT_TRUE(company->isVisible(*company->focused()));
  }
  desktop_.given().printer->name.clear();
  EXPECT_EQ(email("ann@elm.example", {kNo}),
            "warning: No printer driver was detected. Do you have a printer installed?\nYou do not have a default "
            "printer defined.\r\rTo preview or print reports a printer must be defined, though not necessarily "
            "attached.");
}

TEST_F(EmailOfADocument, IsSentAndItsFileStaysOrGoes) {
  SmtpServer server("plain");
  setAll(server.port());
  EXPECT_EQ(email("ann@elm.example", {kCancel, kCancel}), std::string(kAsked) + kDelete);
  EXPECT_EQ(contents(pdf_), "%PDF");
  EXPECT_EQ(person_.fileAsked.name, "Invoice 10 42");
  EXPECT_EQ(person_.fileAsked.filter, "PDF files (*.pdf)|*.pdf");
  EXPECT_TRUE(person_.fileAsked.saving && person_.fileAsked.extension == "pdf");
  EXPECT_EQ(email("ann@elm.example", {kOk, kOk}), std::string(kAsked) + kDelete);
  EXPECT_FALSE(std::filesystem::exists(pdf_));
  EXPECT_EQ(server.told(),
            "login oak secret\nMAIL FROM:<books@oak.example>\nRCPT TO:<ann@elm.example>\nRCPT TO:<cc@oak.example>\n"
            "From: \"Oak\" <books@oak.example>\nTo: ann@elm.example\nCc: cc@oak.example\nSubject: Invoice 10/42\n"
            "Body: 'Hi Jürgen,\\r\\n\\r\\nPlease see attachment.\\r\\n\\r\\nThank you,\\r\\nOak\\r\\nOak & Söhne"
            "\\r\\n\\r\\n'\nFile: application/pdf Invoice 10 42.pdf Invoice 10 42.pdf\n");
}

TEST_F(EmailOfADocument, ASendThatFailsIsToldAndTheFileIsAskedForAllTheSame) {
  SmtpServer server("plain AUTH '535 no'");
  setAll(server.port());
  const auto failed = [&](const std::string& why) {
    return kAsked + ("error: Email could not be sent...\r\r" + why) +
           "\rCheck email settings (Host, UserID, Password) in Your Company.\n" + kDelete;
  };
  EXPECT_EQ(email("ann@elm.example", {kOk, kOk}),
            failed("The server 'localhost' did not accept the user or the password. It said: 535 no"));
  EXPECT_FALSE(std::filesystem::exists(pdf_));
  set("EmailHost = 'http://x'");
  EXPECT_EQ(email("ann@elm.example", {kOk, kCancel}),
            failed("'http://x' is not a mail server: it takes a name, or a name:port."));
  EXPECT_TRUE(std::filesystem::exists(pdf_));
  setAll(server.port());
  person_.onProgress = [](const form::Progress&) { return false; };
  EXPECT_EQ(email("ann@elm.example", {kOk, kCancel}), std::string(kAsked) + kDelete);
  pdf_ = folder_.path() + "/none/x.pdf";
  EXPECT_EQ(email("ann@elm.example", {kOk, kOk}), failed("Could not read '" + pdf_ + "': No such file or directory"));
}

}  // namespace
}  // namespace quillon::reports
