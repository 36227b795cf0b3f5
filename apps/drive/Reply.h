#pragma once

#include <optional>
#include <string>
#include <vector>

#include "form/App.h"

namespace quillon::apps {

struct Question {
  std::string kind;  // a tone, "file", "folder", "text" or "print"
  std::string caption, text;
  std::vector<std::string> buttons;
  std::string standard;
};

// One line of answer, gathered while a request is served.
struct Reply {
  bool ready = false;  // the first
  bool ok = true;
  std::string error = {};  // why the request was refused
  int code = 0;            // of the store; 0: none
  std::vector<std::string> exists = {};
  std::vector<Question> messages = {};
  std::vector<std::string> opened = {}, closed = {}, outside = {};
  std::optional<std::string> clipboard = {};
  std::vector<form::Ended> finished = {};
  std::string members = {};  // JSON of what was asked for: "\"screens\":[...]"
};

// What the reply says of the state in which it leaves the program.
struct Standing {
  std::string focus;
  const Question* question = nullptr;
  std::string modal;
};

std::string textOf(const Reply& reply, const Standing& standing);

}  // namespace quillon::apps
