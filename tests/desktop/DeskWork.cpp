#include "tests_desktop/DeskWork.h"

#include <unistd.h>

#include <QApplication>
#include <QKeySequence>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "base/Text.h"
#include "desktop/Text.h"
#include "desktop/Window.h"
#include "form/Grid.h"
#include "ledger/Screens.h"
#include "maintenance/Screens.h"
#include "reports/Screens.h"
#include "shell/CountryDefaults.h"
#include "shell/SampleCompany.h"
#include "shell/Start.h"
#include "store/Database.h"
#include "store/Query.h"
#include "store/Verify.h"
#include "store/schema/CreateCompany.h"

namespace quillon::sim {
namespace {

constexpr const char* kRows[] = {
    "INSERT INTO Company (CompanyName, FiscalYear, ApplicationVersion, BackupOnExit) VALUES ('Pine', 2026, '2017.6', "
    "2)",
    "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)",
    "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '5000', 'Rent', 4)"};

store::Environment environmentOn(store::FileSystem& files) {
  return {files, store::systemClock(), "clerk", "desk", ::getpid()};
}

}  // namespace

void makeCompany(store::Session& session, const std::string& folder, Books books) {
  store::Database company(session, folder);
  store::createCompanyTables(company);
  if (books == Books::sample)
    shell::fillSampleCompany(company, shell::countryDefaults("Canada"), SimDesktop().today());
  else
    for (const char* row : kRows) store::Query(company, row).execute();
}

std::vector<std::string> rowsOf(store::Database& company, const std::string& statement) {
  store::Query query(company, statement);
  query.open();
  std::vector<std::string> all;
  for (query.first(); !query.eof(); query.next()) {
    std::string row;
    for (int i = 0; i < query.fieldCount(); ++i) row += (i > 0 ? "|" : "") + query.field(i).value().toText();
    all.push_back(row);
  }
  return all;
}

DeskWork::DeskWork(Books books) : session_(environmentOn(disk_), person_, desktop_) {
  makeCompany(session_.store(), company_.path(), books);
  shell::registerScreens(session_);
  reports::registerScreens(session_);
  ledger::registerScreens(session_);
  maintenance::registerScreens(session_);
  shell::prepareStart(session_);
  session_.attach(company_.path());
  front_ = std::make_unique<desktop::Front>(app());
  person_.sitBefore(*front_, desktop_);
  app().open("TfrmQuillon");
  front_->sync();
}

DeskWork::~DeskWork() {
  session_.detach();
  for (const auto& screen : app().screens())
    if (screen->visible()) app().dismiss(*screen);
  QApplication::processEvents();
}

form::Screen& DeskWork::open(const std::string& className) {
  form::Screen& screen = app().open(className);
  front_->sync();
  return screen;
}

void DeskWork::enter() {
  if (!session_.hasCompany()) session_.attach(company_.path());
  session_.menusEnabled = true;
  open("TfrmQuillon");
}

// A key may begin a modal screen, whose own loop then delivers those that follow.
void DeskWork::keys(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    if (name[0] != '=') keys_.push_back(name);
    for (std::size_t i = 1; name[0] == '=' && i < name.size(); ++i) keys_.push_back({'=', name[i]});
  }
  QTimer::singleShot(0, qApp, [this] { pressNext(); });
  while (!keys_.empty()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  QApplication::processEvents();
}

void DeskWork::pressNext() {
  if (keys_.empty()) return;
  // Keys go to a window that has come forward; dialogs are answered on their own.
  const desktop::Window* front = front_->active();
  const auto* dialog = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (dialog != nullptr || (front && !front->isActiveWindow())) {
    constexpr int kPatience = 4000;
    if (++waits_ > kPatience)
      throw std::logic_error("the key " + keys_.front() + " waits for " +
                             (dialog ? desktop::typed(dialog->text()) : title()));
    return QTimer::singleShot(5, qApp, [this] { pressNext(); });
  }
  waits_ = 0;
  const std::string name = keys_.front();
  keys_.pop_front();
  QTimer::singleShot(0, qApp, [this] { pressNext(); });
  press(name);
}

void DeskWork::press(const std::string& name) {
  if (name == "?") {
    heard_ += (heard_.empty() ? "" : "\n") + focus();
    return;
  }
  desktop::Window* window = front_->active();
  QWidget* target = window == nullptr ? nullptr : window->focusWidget() ? window->focusWidget() : window;
  if (QWidget* popup = QApplication::activePopupWidget()) target = popup;
  if (target == nullptr) throw std::logic_error("no window takes the key " + name);
  if (name[0] == '=') {
    QTest::keyClick(target, name[1]);
    return;
  }
  const QKeySequence sequence(desktop::shown(name == "Enter" ? "Return" : name == "PgDn" ? "PgDown" : name));
  const int key = name == "Shift+Tab" ? int{Qt::Key_Backtab} | int{Qt::SHIFT} : sequence[0].toCombined();
  QTest::keyClick(target, static_cast<Qt::Key>(key & ~Qt::KeyboardModifierMask),
                  Qt::KeyboardModifiers(key & static_cast<int>(Qt::KeyboardModifierMask)));
}

void DeskWork::tabTo(const std::string& control) {
  std::string way;
  for (int tabs = 0; tabs < 40; ++tabs) {
    const std::string here = focus();
    if (here == control || here.starts_with(control + ".")) return;
    way += here + " ";
    keys({"Tab"});
  }
  throw std::logic_error(control + " is not on the way of the Tab key: " + way);
}

void DeskWork::willAnswer(const std::string& button) {
  answers_.push_back(button);
  QTimer::singleShot(0, qApp, [this] { answerDialog(); });
}

void DeskWork::answerDialog() {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (answers_.empty()) return;
  if (box == nullptr) return QTimer::singleShot(5, qApp, [this] { answerDialog(); });
  heard_ += (heard_.empty() ? "" : "\n") + desktop::typed(box->text());
  for (QAbstractButton* button : box->buttons()) {
    if (form::plainCaption(desktop::typed(button->text())) != answers_.front()) continue;
    answers_.pop_front();
    return button->click();
  }
  throw std::logic_error("the dialog has no button " + answers_.front());
}

std::string DeskWork::heard() { return std::exchange(heard_, {}); }

std::string DeskWork::focus() {
  const form::Screen* screen = app().active();
  if (screen == nullptr || screen->focused() == nullptr) return "none";
  std::string name = screen->name() + "." + screen->focused()->name();
  const QWidget* widget = front_->active()->focusWidget();
  // One of several of a choice has the focus for it.
  while (widget != nullptr && widget->objectName().isEmpty()) widget = widget->parentWidget();
  const bool same = widget != nullptr && (widget->objectName() == desktop::shown(screen->focused()->name()) ||
                                          screen->focused()->grid() != nullptr);
  if (!same) name += " but the window: " + desktop::typed(widget ? widget->objectName() : "nothing");
  if (screen->focused()->grid() && screen->target()) name += "." + screen->target()->name();
  return name;
}

std::string DeskWork::faultsAtTheEnd(std::vector<std::string> folders) {
  namespace fs = std::filesystem;
  session_.detach();
  std::string faults;
  folders.push_back(company_.path());
  folders.push_back(*desktop_.given().folder);
  for (const std::string& folder : folders)
    for (const fs::directory_entry& file : fs::recursive_directory_iterator(folder)) {
      if (!equalFolded(file.path().filename().string(), "Company.DAT")) continue;
      const std::string company = file.path().parent_path();
      for (const store::Finding& finding : store::verifyFolder(environmentOn(disk_), company).findings)
        faults += company + ", " + finding.table + ": " + finding.text + "\n";
    }
  return faults;
}

std::string DeskWork::title() { return desktop::typed(front_->active()->windowTitle()); }

}  // namespace quillon::sim
