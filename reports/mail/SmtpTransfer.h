#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "reports/mail/SendMail.h"

namespace quillon::reports {

enum class SmtpEnd { sent, cancelled, nobodyListens };

// One message to one port of a server. What it is given must outlive it.
class SmtpTransfer {
 public:
  SmtpTransfer(const MailServer& server, const Message& message, const std::string& wire, form::Person& person);

  // Once. Error in words for the person.
  SmtpEnd run();

 private:
  template <auto kFree>
  struct By {
    void operator()(auto* thing) const { (void)kFree(thing); }
  };

  static std::size_t read(char* into, std::size_t size, std::size_t count, void* self);
  static std::size_t heard(const char* line, std::size_t size, std::size_t count, void* self);
  static int opened(void* self, curl_socket_t socket, curlsocktype) noexcept;
  static int closed(void* self, curl_socket_t socket) noexcept;
  static int moved(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

  template <typename T>
  void set(CURLoption option, T value);
  void setServer();
  void setMessage(const Message& message);
  void keepReply(std::string_view line);
  bool goesOn();
  void stopListening();
  CURLcode perform();
  SmtpEnd ended(CURLcode code);
  std::string wordsFor(CURLcode code) const;

  const MailServer& server_;
  const std::string& wire_;
  form::Person& person_;
  std::vector<curl_socket_t> sockets_;  // that are open
  std::unique_ptr<curl_slist, By<curl_slist_free_all>> receivers_;
  std::array<char, CURL_ERROR_SIZE> details_ = {};
  std::unique_ptr<CURL, By<curl_easy_cleanup>> easy_;
  std::size_t read_ = 0;  // bytes of the message that were taken
  std::string reply_;     // the server's latest, whole: "550 No such user"
  bool replyEnded_ = true;
  bool cancelled_ = false;
  std::exception_ptr fault_;  // raised by the person
  std::chrono::steady_clock::time_point told_;
};

}  // namespace quillon::reports
