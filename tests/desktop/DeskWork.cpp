#include "tests_desktop/DeskWork.h"

#include <unistd.h>

#include <QApplication>
#include <QKeySequence>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "desktop/Text.h"
#include "desktop/Window.h"
#include "form/Grid.h"
#include "ledger/Screens.h"
#include "store/Database.h"
#include "store/Query.h"
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

DeskWork::DeskWork() : session_(environmentOn(disk_), person_, desktop_) {
  {
    store::Database company(session_.store(), company_.path());
    store::createCompanyTables(company);
    for (const char* row : kRows) store::Query(company, row).execute();
  }
  shell::registerScreens(session_);
  ledger::registerScreens(session_);
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

void DeskWork::keys(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    QApplication::processEvents();
    desktop::Window* window = front_->active();
    QWidget* target = window == nullptr ? nullptr : window->focusWidget() ? window->focusWidget() : window;
    if (target == nullptr) throw std::logic_error("no window takes the key " + name);
    const bool known = name.size() > 1 && (name.find('+') != std::string::npos || name[0] != '=');
    if (known) {
      const QString text = desktop::shown(name == "Enter" ? "Return" : name);
      const int key = name == "Shift+Tab" ? static_cast<int>(Qt::Key_Backtab) | static_cast<int>(Qt::SHIFT)
                                          : QKeySequence(text)[0].toCombined();
      QTest::keyClick(target, static_cast<Qt::Key>(key & ~Qt::KeyboardModifierMask),
                      Qt::KeyboardModifiers(key & static_cast<int>(Qt::KeyboardModifierMask)));
    } else {
      for (const QChar one : desktop::shown(name[0] == '=' ? name.substr(1) : name)) {
        QApplication::processEvents();
        QWidget* now = front_->active()->focusWidget();
        QTest::keyClick(now ? now : front_->active(), one.toLatin1());
      }
    }
  }
  QApplication::processEvents();
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
  const bool same = widget != nullptr && (widget->objectName() == desktop::shown(screen->focused()->name()) ||
                                          screen->focused()->grid() != nullptr);
  if (!same) name += " but the window: " + desktop::typed(widget ? widget->objectName() : "nothing");
  if (screen->focused()->grid() && screen->target()) name += "." + screen->target()->name();
  return name;
}

std::string DeskWork::title() { return desktop::typed(front_->active()->windowTitle()); }

std::vector<std::string> DeskWork::rows(const std::string& statement) {
  store::Query query(session_.database(), statement);
  query.open();
  std::vector<std::string> all;
  for (query.first(); !query.eof(); query.next()) {
    std::string row;
    for (int i = 0; i < query.fieldCount(); ++i) row += (i > 0 ? "|" : "") + query.field(i).value().toText();
    all.push_back(row);
  }
  return all;
}

}  // namespace quillon::sim
