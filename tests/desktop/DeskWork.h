#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "desktop/Front.h"
#include "desktop/QtPerson.h"
#include "shell/Session.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/SimDesktop.h"

class QWidget;

namespace quillon::sim {

// The program in windows on a small company, and a person's hands on the keys.
class DeskWork {
 public:
  DeskWork();
  ~DeskWork();

  form::App& app() { return session_.app(); }
  desktop::Front& front() { return *front_; }
  const std::string& folder() const { return company_.path(); }
  form::Screen& open(const std::string& className);
  // Keys as they are called in the program ("Tab", "Ctrl+N"), or characters to be typed behind a "=", to the window in
  // front; "?" writes down where the focus is. Returns when the commands that they start have ended: modal screens have
  // to be closed by the same keys.
  void keys(const std::vector<std::string>& names);
  // Presses Tab until the focus is there; std::logic_error when it goes round without.
  void tabTo(const std::string& control);
  // The next dialog is answered so, and what it said is written down.
  void willAnswer(const std::string& button);
  std::string heard();
  // "frmJV.editTransDate", where the program has its focus and the window in front too; both when they differ.
  std::string focus();
  std::string title();  // of the window in front
  // Closes the company with its screens, and says what is wrong with its tables; empty: nothing.
  std::string faultsAtTheEnd();
  // The rows of a table, without its ids.
  std::vector<std::string> rows(const std::string& statement);

 private:
  void answerDialog();
  void pressNext();
  void press(const std::string& name);

  TempFolder company_;
  SimDesktop desktop_;
  store::DiskFileSystem disk_;
  desktop::QtPerson person_;
  shell::Session session_;
  std::unique_ptr<desktop::Front> front_;
  std::deque<std::string> answers_, keys_;
  std::string heard_;
};

}  // namespace quillon::sim
