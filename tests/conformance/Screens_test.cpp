// What holds of every screen, whatever it is about: each that this version has is opened on an empty company and on one
// with rows, looked through, and left.
//
// Method: the program's own registry with all its folders, on a simulated disk. A screen is opened as its menu, its
// list or its document opens it; whatever it asks is answered by leaving. The rows of every table are compared before
// and after, but for the control tables, whose numbers are spent by a document that is only begun.
#include "ledger/Screens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/Text.h"
#include "form/Grid.h"
#include "form/Input.h"
#include "form/Table.h"
#include "ledger/VoucherLines.h"
#include "maintenance/Screens.h"
#include "reports/Screens.h"
#include "shell/Session.h"
#include "shell/Start.h"
#include "store/Query.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "support/ScriptedPerson.h"
#include "support/SimDesktop.h"
#include "support/SimProcess.h"

namespace quillon {
namespace {

using form::Control;
using form::Kind;

// Everything that the screens read, once.
constexpr const char* kRows[] = {
    "INSERT INTO Company (CompanyNo, CompanyName, FiscalYear, DefaultCurrencyID) "
    "VALUES (1, 'Pine Street Books', 2026, 1)",
    "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)",
    "INSERT INTO GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'N', 'North')",
    "INSERT INTO GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'P', 'Pine')",
    "INSERT INTO GLAcSub3 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'R', 'Retail')",
    "INSERT INTO Currency (CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, "
    "ARDiscGLAccountID) VALUES (1, 'Home', 1, 1, 1, 1)",
    "INSERT INTO Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Main', 1, 1)",
    "INSERT INTO GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount3) VALUES (1, 1, 2026, 'A', 10)",
    "INSERT INTO GLBudget (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount3) VALUES (1, 1, 2026, 'B', 10)",
    "INSERT INTO GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, JVID) "
    "VALUES (1, 2026, 3, 'GL', 'JV', 1900, '2026-03-02', 10, 900)",
    "INSERT INTO JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, JVAmount, Posted) "
    "VALUES (900, 2026, 3, 1900, 'GL', 'JV', '2026-03-02', 10, false)",
    "INSERT INTO JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (900, 1, 1, 10)",
    "INSERT INTO JVDet (JVID, Seq, GLAccountID, SubAccount1ID, GLAmount) VALUES (900, 2, 1, 1, -10)",
    "INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (1, 'Balance Sheet', 'Balance: Simple')",
    "INSERT INTO FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (1, 1, 2, 'Cash', 'Detail')",
    "INSERT INTO FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (1, 2, 1, 'All', 'Total')",
    "INSERT INTO FStmtLAc (StmtID, Seq, AccountFrom, SubAccount1ID) VALUES (1, 1, '1', 1)",
    "INSERT INTO FStmtLTo (StmtID, Seq, TotalLineSeq) VALUES (1, 1, 2)"};

class Screens : public testing::TestWithParam<bool> {
 protected:
  Screens() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    process_.open();
    store::createCompanyTables(process_.database());
    if (GetParam())
      for (const char* row : kRows) run(row);
    session_ =
        std::make_unique<shell::Session>(store::Environment{*files_, clock_, "BEN", "PC", 99}, person_, desktop_);
    desktop_.given().today = Date(2026, 3, 5);
    shell::registerScreens(*session_);
    reports::registerScreens(*session_);
    ledger::registerScreens(*session_);
    maintenance::registerScreens(*session_);
    shell::prepareStart(*session_);
    session_->attach(sim::kSharedFolder);
    main_ = &app().open("TfrmQuillon");
  }
  ~Screens() override { session_->detach(); }

  form::App& app() { return session_->app(); }
  void run(const std::string& statement) { store::Query(process_.database(), statement).execute(); }

  form::Screen* onView(const std::string& name) {
    form::Screen* screen = app().find(name);
    return screen != nullptr && screen->visible() ? screen : nullptr;
  }

  // How the rest of the program opens a screen of this kind.
  form::Open asked(const form::ScreenEntry& entry) {
    form::Open open;
    open.values["level"] = store::Value(1);
    open.values["year"] = store::Value(2026);
    if (GetParam()) open.values["StmtID"] = store::Value(1);
    open.draft = static_cast<ledger::VoucherLineTaker*>(&lines_);
    const std::map<std::string, std::string> keys = {
        {"TfrmGLAccount", "GLAccountID"},       {"TfrmGLAccountSub", "SubAccountID"}, {"TfrmJV", "JVID"},
        {"TfrmGLBudgetAccount", "GLAccountID"}, {"TfrmCurrency", "CurrencyID"},       {"TfrmBank", "BankID"},
        {"TfrmFinancialStmt", "StmtID"}};
    const auto key = keys.find(entry.className);
    if (key == keys.end()) return open;
    if (GetParam())
      open.locate[key->second] = store::Value(key->second == "JVID" ? 900 : 1);
    else
      open.newRow = true;
    return open;
  }

  // Opens each screen that this version has, main window and splash left out, and looks at it.
  void eachScreen(const std::function<void(form::Screen&)>& look) {
    for (const form::ScreenEntry& entry : session_->registry().screens()) {
      if (!entry.make || entry.className == "TfrmQuillon" || entry.className == "TfrmSplash") continue;
      SCOPED_TRACE(entry.className);
      try {
        form::Screen& screen = app().open(entry.className, asked(entry));
        look(screen);
        if (form::Screen* left = onView(entry.instanceName())) app().dismiss(*left);
      } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
      }
    }
  }

  // Every row of every table, control tables left out.
  std::map<std::string, std::vector<std::string>> rows() {
    std::map<std::string, std::vector<std::string>> all;
    for (const auto& table : store::companyTables()) {
      if (table.name.ends_with("Ctl")) continue;
      store::Cursor cursor(process_.database(), table.name);
      cursor.open();
      for (cursor.first(); !cursor.eof(); cursor.next()) {
        std::string row;
        for (int field = 0; field < static_cast<int>(table.fields.size()); ++field)
          row += cursor.field(field).value().toText() + "\t";
        all[table.name].push_back(row);
      }
    }
    return all;
  }

  struct NoLines final : ledger::VoucherLineTaker {
    void addLine(const ledger::VoucherLine& /*line*/) override { FAIL(); }
  } lines_;
  // Deletes the first line and begins another, where lines may change.
  static void workLines(form::Input& input, form::Screen& screen, Control& grid) {
    if (!grid.grid()->mayChange()) return;
    if (!grid.grid()->cursor().isEmpty()) {
      EXPECT_TRUE(input.grid(screen, grid, "delete").ok);
    }
    EXPECT_TRUE(input.grid(screen, grid, "append").ok);
    for (const auto& column : grid.grid()->columns())
      if (!column->readOnly() && !input.setCell(screen, grid, *grid.grid()->activeRow(), column->name(), "1000").ok &&
          screen.typed())
        input.key(screen, "Esc");  // none of a list, say
    input.grid(screen, grid, "append");
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess process_{disk_, clock_, {}};
  std::unique_ptr<store::FileSystem> files_ = disk_.process();
  sim::ScriptedPerson person_;
  sim::SimDesktop desktop_;
  std::unique_ptr<shell::Session> session_;
  form::Screen* main_ = nullptr;
};

void eachControl(Control& control, const std::function<void(Control&)>& look) {
  look(control);
  if (control.grid())
    for (const auto& column : control.grid()->columns()) look(*column);
  for (const auto& child : control.children()) eachControl(*child, look);
}

bool isField(Kind kind) {
  return kind == Kind::edit || kind == Kind::memo || kind == Kind::check || kind == Kind::column ||
         kind == Kind::choice || kind == Kind::chooser || kind == Kind::list;
}

bool chooses(Kind kind) { return kind == Kind::chooser || kind == Kind::choice || kind == Kind::list; }

TEST_P(Screens, AreWhole) {
  eachScreen([](form::Screen& screen) {
    EXPECT_FALSE(screen.title().empty());
    std::set<std::string> names, shortcuts;
    int standard = 0;
    eachControl(screen.root(), [&](Control& control) {
      SCOPED_TRACE(std::string(nameOf(control.kind())) + " '" + control.name() + "' " + control.caption());
      const Kind kind = control.kind();
      if (kind != Kind::column && !control.name().empty()) {
        EXPECT_TRUE(names.insert(foldCase(control.name())).second) << "another has this name";
      }
      if (!control.shortcut().empty()) {
        EXPECT_TRUE(shortcuts.insert(control.shortcut()).second) << control.shortcut();
      }
      if (kind == Kind::button || kind == Kind::entry) {
        EXPECT_TRUE(control.command() != nullptr) << "does nothing";
        EXPECT_FALSE(control.caption().empty());
        EXPECT_FALSE(control.name().empty());
      }
      if (isField(kind)) {
        ASSERT_NE(control.binding(), nullptr) << "shows nothing";
        EXPECT_FALSE(control.name().empty());
        control.binding()->text();
        control.binding()->editText();
      }
      if (chooses(kind)) {
        EXPECT_FALSE(control.binding()->choices().empty());
      }
      if (kind == Kind::grid) {
        ASSERT_NE(control.grid(), nullptr);
        EXPECT_FALSE(control.grid()->columns().empty());
        std::set<std::string> columns;
        for (const auto& column : control.grid()->columns()) EXPECT_TRUE(columns.insert(column->name()).second);
        control.grid()->rowsAround(10, 10);
      }
      if (kind == Kind::menu || kind == Kind::pages || kind == Kind::steps || kind == Kind::row) {
        EXPECT_FALSE(control.children().empty()) << "holds nothing";
      }
      standard += control.isDefault();
    });
    EXPECT_LE(standard, 1) << "two buttons for Enter";
    ASSERT_FALSE(screen.tabOrder().empty()) << "nothing takes the focus";
    EXPECT_NE(screen.focused(), nullptr);
  });
}

// The Tab key comes past every control and back to the first.
TEST_P(Screens, TabGoesRound) {
  form::Input input(app());
  eachScreen([&](form::Screen& screen) {
    const std::vector<Control*> order = screen.tabOrder();
    // In a grid of lines it goes by cells.
    if (std::ranges::any_of(order, [](const Control* some) { return some->grid() && some->grid()->lines(); })) return;
    screen.setFocus(order.front());
    for (std::size_t i = 1; i <= order.size(); ++i) {
      EXPECT_TRUE(input.key(screen, "Tab").ok);
      EXPECT_EQ(screen.focused(), order[i % order.size()]);
    }
  });
}

// F1 opens a page that is there; the contents are that of no screen.
TEST_P(Screens, HaveTheirPageOfTheManual) {
  form::Input input(app());
  eachScreen([&](form::Screen& screen) {
    person_.heard.clear();
    EXPECT_TRUE(input.key(screen, "F1").ok);
    const std::string page = "/manual/" + std::to_string(screen.entry().help) + ".html";
    EXPECT_TRUE(person_.takeHeard().ends_with(page)) << "wants " << page;
  });
}

// Cancel, and closing without saving, leave every row as it was, also after every field was typed over.
TEST_P(Screens, CancelChangesNoRow) {
  const auto before = rows();
  form::Input input(app());
  for (const bool byButton : {true, false})
    eachScreen([&](form::Screen& screen) {
      const std::string name = screen.name();
      for (Control* control : screen.tabOrder()) {
        if (control->grid() && control->grid()->lines()) workLines(input, screen, *control);
        if (!control->binding() || control->readOnly() || !control->visible() || !control->enabled()) continue;
        person_.heard.clear();
        if (chooses(control->kind()))
          input.choose(screen, *control, control->binding()->choices().back().first);
        else if (control->kind() == Kind::check)
          input.choose(screen, *control, store::Value(!control->binding()->data().asBool()));
        else if (!input.set(screen, *control, "1").ok && screen.typed())
          input.key(screen, "Esc");  // a date, say
      }
      Control* cancel = screen.find("btnCancel");
      if (byButton && cancel != nullptr) {
        input.click(screen, *cancel);
      } else {
        person_.answers.assign(1, form::Button::no);
        input.close(screen);
        person_.answers.clear();
      }
      EXPECT_EQ(onView(name), nullptr);
    });
  EXPECT_EQ(rows(), before);
}

INSTANTIATE_TEST_SUITE_P(Company, Screens, testing::Bool(),
                         [](const auto& some) { return some.param ? "Full" : "Empty"; });

// Every entry of the menus leads to a screen of the registry, or to a command of the main window; what is not there yet
// says so.
TEST_P(Screens, MenusLeadSomewhere) {
  form::Input input(app());
  std::set<std::string> paths, names;
  for (const form::MenuRow& row : session_->registry().menu()) {
    SCOPED_TRACE(row.path);
    EXPECT_TRUE(paths.insert(row.path).second) << "twice";
    EXPECT_TRUE(names.insert(row.name).second) << "another has the name " << row.name;
    const form::ScreenEntry* entry = row.screen.empty() ? nullptr : session_->registry().find(row.screen);
    EXPECT_TRUE(row.screen.empty() || entry != nullptr) << "leads to " << row.screen;
    ASSERT_NE(main_->find(row.name), nullptr);
    EXPECT_TRUE(row.screen.empty() || main_->find(row.name)->enabled() == static_cast<bool>(entry->make));
    if (main_->find(row.name)->enabled()) continue;
    person_.heard.clear();
    EXPECT_FALSE(input.menu(*main_, row).ok);
    EXPECT_TRUE(person_.takeHeard().starts_with("error: This version does not have "));
  }
}

TEST_P(Screens, WhatIsNotBuiltSaysSo) {
  form::Input input(app());
  std::set<std::string> names;
  for (const form::ScreenEntry& entry : session_->registry().screens()) {
    SCOPED_TRACE(entry.className);
    EXPECT_TRUE(names.insert(foldCase(entry.className)).second) << "twice";
    if (entry.opening == form::Opening::filterFirst) {
      EXPECT_FALSE(entry.filterScreen.empty());
    }
    if (entry.make) continue;
    person_.heard.clear();
    EXPECT_FALSE(input.open(*main_, entry).ok);
    EXPECT_EQ(person_.takeHeard(), "error: This version does not have the screen '" + entry.className + "' yet");
  }
}

}  // namespace
}  // namespace quillon
