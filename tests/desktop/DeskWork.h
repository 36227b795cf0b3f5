#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "desktop/Front.h"
#include "desktop/QtPerson.h"
#include "shell/Session.h"
#include "store/Query.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/SimDesktop.h"

class QWidget;

namespace quillon::sim {

// The books of a company: two accounts, or the sample company.
enum class Books { few, sample };
void makeCompany(store::Session& session, const std::string& folder, Books books);
// The rows of a statement, with "|" between their fields.
std::vector<std::string> rowsOf(store::Database& company, const std::string& statement);

// The program in windows on a small company, and a person's hands on the keys.
class DeskWork {
 public:
  explicit DeskWork(Books books = Books::few);
  ~DeskWork();

  form::App& app() { return session_.app(); }
  desktop::Front& front() { return *front_; }
  form::Screen& open(const std::string& className);
  // Keys as they are called in the program ("Tab", "Ctrl+N"), or characters to be typed behind a "=", to the window in
  // front, or to the menu that drops down in it; "?" writes down where the focus is. Returns when the commands that
  // they start have ended: modal screens have to be closed by the same keys.
  void keys(const std::vector<std::string>& names);
  // Presses Tab until the focus is there; std::logic_error when it goes round without.
  void tabTo(const std::string& control);
  // The next dialog is answered so, and what it said is written down.
  void willAnswer(const std::string& button);
  std::string heard();
  // "frmJV.editTransDate", where the program has its focus and the window in front too; both when they differ.
  std::string focus();
  std::string title();  // of the window in front
  // Whether the main window is on a company and can be used; going in again where not.
  bool isIn() { return session_.hasCompany() && session_.menusEnabled; }
  void enter();
  // Closes the company with its screens, and says what is wrong with its tables and those of every company that was
  // made meanwhile, here or below the other folders; empty: nothing.
  std::string faultsAtTheEnd(std::vector<std::string> folders = {});
  store::Database& company() { return session_.database(); }
  std::vector<std::string> rows(const std::string& statement) { return rowsOf(company(), statement); }
  void run(const std::string& statement) { store::Query(company(), statement).execute(); }

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
  int waits_ = 0;
  std::string heard_;
};

}  // namespace quillon::sim
