// Takes a picture of every screen on a company's data, of each of its pages and of its menus dropped down: shots FOLDER
// OUT [dark]. Adds users to the company. Needs a display with a window manager; pictures are of the windows as they
// stand there, frames and all.
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QScreen>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "apps/Program.h"
#include "desktop/Front.h"
#include "desktop/QtPerson.h"
#include "desktop/Text.h"
#include "desktop/Window.h"
#include "store/Cursor.h"
#include "store/Query.h"

namespace quillon::desktop {
namespace {

QPalette darkPalette() {
  const QColor text(0xdf, 0xe1, 0xe5), faint(0x7a, 0x7e, 0x85), window(0x32, 0x34, 0x38);
  QPalette dark(QColor(0x3c, 0x3f, 0x44), window);  // works the shades between out
  dark.setColor(QPalette::Base, QColor(0x22, 0x24, 0x27));
  dark.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2c, 0x30));
  dark.setColor(QPalette::ToolTipBase, window);
  dark.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xc0));
  dark.setColor(QPalette::PlaceholderText, faint);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    dark.setColor(role, text);
    dark.setColor(QPalette::Disabled, role, faint);
  }
  dark.setColor(QPalette::HighlightedText, Qt::white);
  return dark;
}

// Records, which the rest of the program opens on a row of their list; here on the last one.
struct Record {
  const char *screen, *table, *field;
};
constexpr Record kRecords[] = {{"TfrmBank", "Bank", "BankID"},
                               {"TfrmCurrency", "Currency", "CurrencyID"},
                               {"TfrmFinancialStmt", "FStmt", "StmtID"},
                               {"TfrmGLAccount", "GLAccnt", "GLAccountID"},
                               {"TfrmGLAccountSub", "GLAcSub1", "SubAccountID"},
                               {"TfrmJV", "JV", "JVID"},
                               {"TfrmUser", "Users", "UserName"}};

class Shooting {
 public:
  Shooting(apps::Program& program, Front& front, std::string out)
      : program_(program), app_(program.app()), front_(front), out_(std::move(out)) {}
  int all();

 private:
  void one(const form::ScreenEntry& entry);
  void addUsers();
  void runModal(const std::string& className);
  void importIntoVoucher();
  void launcher(form::Screen& screen, const std::string& name);
  void previews();
  void soon(const std::string& name);
  void picturesOf(form::Screen& screen, const std::string& name);
  void pagesOf(form::Control& holder, form::Screen& screen, const std::string& name);
  void menusOf(Window& window, const std::string& name);
  void take(const QRect& rect, const std::string& name);

  apps::Program& program_;
  form::App& app_;
  Front& front_;
  std::string out_;
  int taken_ = 0;
};

constexpr QSize kSmallDesktop(1366, 768);

// The window manager frames a window and brings it forward in its own time.
void settle() { QTest::qWait(250); }

void Shooting::take(const QRect& rect, const std::string& name) {
  const QPixmap picture =
      QGuiApplication::primaryScreen()->grabWindow(0, rect.x(), rect.y(), rect.width(), rect.height());
  if (picture.save(shown(out_ + "/" + name + ".png"))) ++taken_;
}

void Shooting::picturesOf(form::Screen& screen, const std::string& name) {
  front_.sync();
  Window* window = front_.windowOf(screen);
  if (window == nullptr || !QTest::qWaitForWindowExposed(window)) return;
  settle();
  const QSize size = window->minimumSizeHint() + (window->frameSize() - window->size());
  if (size.boundedTo(kSmallDesktop) != size)
    std::cout << name << ": " << size.width() << " x " << size.height() << " is too large for a small desktop\n";
  take(window->frameGeometry(), name);
  pagesOf(screen.root(), screen, name);
  menusOf(*window, name);
}

void Shooting::pagesOf(form::Control& holder, form::Screen& screen, const std::string& name) {
  for (const auto& control : holder.children()) {
    for (int page = 1; control->kind() == form::Kind::pages && page < static_cast<int>(control->children().size());
         ++page) {
      front_.input().turn(screen, *control, page);
      front_.sync();
      settle();
      take(front_.windowOf(screen)->frameGeometry(),
           name + "-" + form::plainCaption(control->children()[static_cast<std::size_t>(page)]->caption()));
    }
    pagesOf(*control, screen, name);
  }
}

void Shooting::menusOf(Window& window, const std::string& name) {
  for (QMenuBar* bar : window.findChildren<QMenuBar*>()) {
    for (QAction* action : bar->actions()) {
      bar->setActiveAction(action);
      settle();
      take(window.frameGeometry().united(action->menu()->geometry()),
           name + "-menu-" + form::plainCaption(typed(action->text())));
      action->menu()->close();
    }
  }
}

// Takes the pictures of the modal screen that opens now, and closes it.
void Shooting::soon(const std::string& name) {
  QTimer::singleShot(0, [this, name] {
    form::Screen* screen = app_.modal();
    if (screen == nullptr) return;
    picturesOf(*screen, name);
    app_.dismiss(*screen);
    front_.sync();
  });
}

void Shooting::runModal(const std::string& className) {
  form::Open open;
  if (className == "TfrmGLAccountSubSearch") open.values["level"] = store::Value(1);
  if (className == "TfrmFStmtValidation") open.values["StmtID"] = store::Value(5);
  if (className == "TfrmCompanyDatabase") open.values["name"] = store::Value("Hartwell Joinery");
  if (className == "TfrmYearEnd") open.values["year"] = store::Value(2025);
  soon(className);
  app_.runModal(className, open);
}

// As a person does it: from a new voucher's menu.
void Shooting::importIntoVoucher() {
  form::Screen& voucher = app_.open("TfrmJV", {.newRow = true});
  front_.sync();
  settle();
  soon("TfrmImportJVData");
  front_.input().click(voucher, *voucher.find("mnuImportJVData"));
  app_.dismiss(voucher);
}

// Every report, of the last period that something was posted into.
void Shooting::previews() {
  store::Query last(program_.session().database(),
                    "SELECT GLYear, GLPeriod FROM GLHist ORDER BY GLYear DESC, GLPeriod DESC TOP 1");
  last.open();
  for (const form::ReportEntry& report : program_.session().registry().reports()) {
    form::Open open;
    if (report.screen == "TfrmGLReports")
      open.values = {{"year", last.value("GLYear")}, {"period", last.value("GLPeriod")}};
    app_.preview(report.className, open);
    picturesOf(*app_.find("frmPreview"), report.className);
    app_.dismiss(*app_.find("frmPreview"));
  }
}

// What a launcher asks for differs with the report.
void Shooting::launcher(form::Screen& screen, const std::string& name) {
  form::Control &reports = *screen.find("lboReports"), &back = *screen.find("btnBack"), &next = *screen.find("btnNext");
  for (const auto& [value, report] : reports.binding()->choices()) {
    front_.input().set(screen, reports, report);
    for (int page = 1; next.caption() != "&Preview"; ++page) {
      front_.input().click(screen, next);
      front_.sync();
      settle();
      take(front_.windowOf(screen)->frameGeometry(), name + "-" + report + "-" + std::to_string(page));
    }
    while (back.enabled()) front_.input().click(screen, back);
  }
}

void Shooting::one(const form::ScreenEntry& entry) {
  const std::string& name = entry.className;
  if (name == "TfrmPreview") return previews();
  if (name == "TfrmImportJVData") return importIntoVoucher();
  const auto* record = std::ranges::find(kRecords, name, &Record::screen);
  const bool opened = entry.opening == form::Opening::list || entry.opening == form::Opening::plain;
  if (name != "TfrmQuillon" && record == std::end(kRecords) && !opened) return runModal(name);
  form::Open open;
  if (record != std::end(kRecords)) {
    store::Cursor rows(program_.session().database(), record->table);
    rows.open();
    rows.last();
    open.locate[record->field] = rows.value(record->field);
    if (name == "TfrmGLAccountSub") open.values["level"] = store::Value(1);
  }
  form::Screen& screen = app_.open(name, open);
  picturesOf(screen, name);
  if (screen.find("lboReports")) launcher(screen, name);
  if (name != "TfrmQuillon") app_.dismiss(screen);
}

// A company that nobody has to log in to has none.
void Shooting::addUsers() {
  store::Cursor users(program_.session().database(), "Users");
  users.open();
  if (!users.isEmpty()) return;
  for (const char* name : {"Administrator", "Ellen Marsh", "Tom Whitfield"}) {
    users.append();
    for (int field = 0; field < users.fieldCount(); ++field)
      if (users.field(field).definition().type == store::FieldType::boolean)
        users.field(field) = name[0] == 'A' || field % 2 == 0;
    users["UserName"] = name;
    users.post();
  }
}

int Shooting::all() {
  addUsers();
  app_.find("frmQuillon")->find("cboSystem")->binding()->put(store::Value("GL"));
  for (const form::ScreenEntry& entry : program_.session().registry().screens()) {
    if (!entry.make) continue;
    try {
      one(entry);
    } catch (const std::exception& error) {
      std::cout << entry.className << ": " << error.what() << '\n';
    }
  }
  return taken_;
}

}  // namespace
}  // namespace quillon::desktop

int main(int count, char** words) {
  using namespace quillon;
  if (count < 3) {
    std::cerr << "usage: shots FOLDER OUT [dark]\n";
    return 2;
  }
  const QApplication application(count, words);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (count > 3) QApplication::setPalette(desktop::darkPalette());
  const std::string out = QDir().absoluteFilePath(words[2]).toStdString();
  QDir().mkpath(desktop::shown(out));
  apps::ProgramOptions options;
  options.given.folder = out + "/settings";
  options.given.country = "United States";
  options.given.printer = platform::Printer{.name = "letter", .paper = platform::Paper::other};
  options.credentials = shell::Credentials{"Administrator", {}};  // the users that an earlier run added
  options.given.today = Date::parseIso("2026-03-16");
  desktop::QtPerson person;
  apps::Program program(options, person);
  int taken = 0;
  {
    desktop::Front front(program.app());
    person.sitBefore(front, program.session().desktop());
    program.start(words[1]);
    taken = desktop::Shooting(program, front, out).all();
  }
  program.end();
  std::cout << out << ": " << taken << " pictures\n";
  return taken > 0 ? 0 : 1;
}
