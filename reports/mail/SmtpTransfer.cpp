#include "reports/mail/SmtpTransfer.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

#include "base/Errors.h"
#include "base/Text.h"
#include "form/Person.h"

namespace quillon::reports {
namespace {

constexpr int kSliceMs = 50;

bool isThisMachine(const std::string& host) {
  return equalFolded(host, "localhost") || host == "[::1]" ||
         (host.starts_with("127.") && host.find_first_not_of("0123456789.") == std::string::npos);
}

void beginOnce() {
  static const CURLcode begun = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (begun != CURLE_OK)
    throw Error("E-mail cannot be sent on this machine: " + std::string(curl_easy_strerror(begun)));
}

// Of the server's words, which may be anything.
std::string shownReply(std::string_view reply) {
  constexpr std::size_t kMost = 300;
  std::string shown(firstCharacters(reply, kMost));
  const bool valid = isValidUtf8(shown);
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < ' ' || c == 0x7F || (!valid && static_cast<unsigned char>(c) >= 0x80)) c = ' ';
  return shown;
}

}  // namespace

SmtpTransfer::SmtpTransfer(const MailServer& server, const Message& message, const std::string& wire,
                           form::Person& person)
    : server_(server), wire_(wire), person_(person) {
  beginOnce();
  easy_.reset(curl_easy_init());
  if (!easy_) throw std::bad_alloc();
  set(CURLOPT_ERRORBUFFER, details_.data());
  setServer();
  setMessage(message);
}

template <typename T>
void SmtpTransfer::set(CURLoption option, T value) {
  if (const CURLcode code = curl_easy_setopt(easy_.get(), option, value); code != CURLE_OK)
    throw Error(curl_easy_strerror(code));
}

void SmtpTransfer::setServer() {
  const std::string url =
      (server_.tlsFromStart ? "smtps://" : "smtp://") + server_.host + ":" + std::to_string(server_.port) + "/";
  set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
  set(CURLOPT_URL, url.c_str());
  set(CURLOPT_PROXY, "");
  set(CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_TRY));
  if (isThisMachine(server_.host)) {
    set(CURLOPT_SSL_VERIFYPEER, 0L);
    set(CURLOPT_SSL_VERIFYHOST, 0L);
  }
  if (!server_.user.empty()) {
    set(CURLOPT_USERNAME, server_.user.c_str());
    set(CURLOPT_PASSWORD, server_.password.c_str());
    // Those that take a user and a password and nothing of the desktop's.
    set(CURLOPT_LOGIN_OPTIONS, "AUTH=PLAIN;AUTH=LOGIN;AUTH=CRAM-MD5");
  }
  const auto seconds = static_cast<long>(server_.patience.count());
  set(CURLOPT_CONNECTTIMEOUT, seconds);
  set(CURLOPT_SERVER_RESPONSE_TIMEOUT, seconds);
  set(CURLOPT_LOW_SPEED_LIMIT, 1L);
  set(CURLOPT_LOW_SPEED_TIME, seconds);
  set(CURLOPT_QUICK_EXIT, 1L);  // does not wait for a look-up of the host that nobody needs any more
}

void SmtpTransfer::setMessage(const Message& message) {
  set(CURLOPT_MAIL_FROM, ("<" + message.fromAddress + ">").c_str());
  for (const auto* list : {&message.to, &message.cc, &message.bcc})
    for (const std::string& address : *list) {
      curl_slist* longer = curl_slist_append(receivers_.get(), ("<" + address + ">").c_str());
      if (longer == nullptr) throw std::bad_alloc();
      (void)receivers_.release();
      receivers_.reset(longer);
    }
  set(CURLOPT_MAIL_RCPT, receivers_.get());
  set(CURLOPT_UPLOAD, 1L);
  set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(wire_.size()));
  set(CURLOPT_READFUNCTION, &SmtpTransfer::read);
  set(CURLOPT_READDATA, this);
  set(CURLOPT_HEADERFUNCTION, &SmtpTransfer::heard);
  set(CURLOPT_HEADERDATA, this);
  set(CURLOPT_SOCKOPTFUNCTION, &SmtpTransfer::opened);
  set(CURLOPT_SOCKOPTDATA, this);
  set(CURLOPT_CLOSESOCKETFUNCTION, &SmtpTransfer::closed);
  set(CURLOPT_CLOSESOCKETDATA, this);
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFOFUNCTION, &SmtpTransfer::moved);
  set(CURLOPT_XFERINFODATA, this);
}

// What the library calls. No exception may pass through it.

std::size_t SmtpTransfer::read(char* into, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<SmtpTransfer*>(self);
  const std::size_t bytes = transfer.wire_.copy(into, size * count, transfer.read_);
  transfer.read_ += bytes;
  return bytes;
}

std::size_t SmtpTransfer::heard(const char* line, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<SmtpTransfer*>(self);
  try {
    transfer.keepReply({line, size * count});
  } catch (...) {
    transfer.fault_ = std::current_exception();
    return 0;
  }
  return size * count;
}

int SmtpTransfer::moved(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<SmtpTransfer*>(self)->goesOn() ? 0 : 1;
}

int SmtpTransfer::opened(void* self, curl_socket_t socket, curlsocktype) noexcept {
  static_cast<SmtpTransfer*>(self)->sockets_.push_back(socket);
  return CURL_SOCKOPT_OK;
}

int SmtpTransfer::closed(void* self, curl_socket_t socket) noexcept {
  std::erase(static_cast<SmtpTransfer*>(self)->sockets_, socket);
  return ::close(socket);
}

// A reply's last line has a blank behind its number, the others a hyphen. That to our goodbye, 221, says nothing of the
// message.
void SmtpTransfer::keepReply(std::string_view line) {
  constexpr std::size_t kNumber = 3, kMost = 4000;
  line = trim(line);
  if (line.starts_with("221")) return;
  if (replyEnded_) reply_.clear();
  replyEnded_ = line.size() <= kNumber || line[kNumber] != '-';
  if (reply_.empty()) reply_ = line.substr(0, kNumber);
  if (line.size() > kNumber && reply_.size() < kMost) reply_ += " " + std::string(line.substr(kNumber + 1));
}

bool SmtpTransfer::goesOn() {
  const auto now = std::chrono::steady_clock::now();
  if (!cancelled_ && !fault_ && now - told_ >= std::chrono::milliseconds(kSliceMs)) {
    told_ = now;
    try {
      cancelled_ = !person_.progress({.text = "Sending e-mail...",
                                      .done = static_cast<long>(read_),
                                      .total = static_cast<long>(wire_.size()),
                                      .cancellable = true});
    } catch (...) {
      fault_ = std::current_exception();
    }
  }
  if (cancelled_ || fault_) stopListening();
  return !cancelled_ && !fault_;
}

// The library says goodbye and would wait for the answer, which is of no use to anybody.
void SmtpTransfer::stopListening() {
  for (const curl_socket_t socket : sockets_) (void)::shutdown(socket, SHUT_RD);
}

SmtpEnd SmtpTransfer::run() {
  const CURLcode code = perform();
  if (fault_) std::rethrow_exception(fault_);
  return ended(code);
}

CURLcode SmtpTransfer::perform() {
  const std::unique_ptr<CURLM, By<curl_multi_cleanup>> multi(curl_multi_init());
  if (!multi || curl_multi_add_handle(multi.get(), easy_.get()) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
  CURLcode code = CURLE_ABORTED_BY_CALLBACK;
  for (int running = 1; running > 0 && goesOn();) {
    if (curl_multi_perform(multi.get(), &running) != CURLM_OK) break;
    if (running > 0) (void)curl_multi_poll(multi.get(), nullptr, 0, kSliceMs, nullptr);
  }
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi.get(), &left))
    if (message->msg == CURLMSG_DONE) code = message->data.result;
  stopListening();
  curl_multi_remove_handle(multi.get(), easy_.get());
  return code;
}

SmtpEnd SmtpTransfer::ended(CURLcode code) {
  if (code == CURLE_OK) return SmtpEnd::sent;
  if (cancelled_) return SmtpEnd::cancelled;
  if (code == CURLE_COULDNT_CONNECT) return SmtpEnd::nobodyListens;
  throw Error(wordsFor(code));
}

std::string SmtpTransfer::wordsFor(CURLcode code) const {
  const std::string server = "'" + server_.host + "'";
  const bool refused = reply_.starts_with('4') || reply_.starts_with('5');
  const std::string said = refused ? " It said: " + shownReply(reply_) : "";
  if (code == CURLE_LOGIN_DENIED) return "The server " + server + " did not accept the user or the password." + said;
  if (refused) return "The server " + server + " refused the e-mail." + said;
  const bool foreign = !reply_.empty() && (reply_.front() < '0' || reply_.front() > '9');
  if (foreign || code == CURLE_WEIRD_SERVER_REPLY) return "What answers at " + server + " is not a mail server.";
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return "The server " + server + " was not found.";
    case CURLE_PEER_FAILED_VERIFICATION:
      return "The server " + server + " could not prove that it is the one it should be. " + details_.data();
    case CURLE_SSL_CACERT_BADFILE:
      return "The system's list of certificates cannot be read (package ca-certificates).";
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_USE_SSL_FAILED:
      return "No encrypted connection to " + server + " could be made. " + details_.data();
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE: {
      std::string words = code == CURLE_OPERATION_TIMEDOUT ? "The server " + server + " did not answer in time."
                                                           : "The connection to " + server + " broke off.";
      if (read_ == wire_.size()) words += " It may have taken the e-mail all the same.";
      return words;
    }
    default:
      return "The e-mail could not be handed to " + server + ": " +
             (details_.front() == '\0' ? curl_easy_strerror(code) : details_.data());
  }
}

}  // namespace quillon::reports
