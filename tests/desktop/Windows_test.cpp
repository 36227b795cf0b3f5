// A bookkeeper's work in real windows, by keys alone; and the same through the calls that a script makes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QImage>
#include <QScrollBar>
#include <QTest>
#include <cstdio>
#include <sstream>

#include "apps/Program.h"
#include "apps/drive/DrivePerson.h"
#include "desktop/Text.h"
#include "desktop/Window.h"
#include "form/Grid.h"
#include "form/PageView.h"
#include "form/Table.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Query.h"
#include "tests_desktop/DeskWork.h"

namespace quillon::desktop {
namespace {

const char* const kVouchers =
    "SELECT GLYear, GLPeriod, JVNumber, TransDate, TransDescription, JVAmount FROM JV ORDER BY JVNumber";
const char* const kLines = "SELECT Seq, GLAccountID, GLAmount FROM JVDet ORDER BY Seq";

// What stands in a company when `drive` has served these lines.
std::vector<std::string> drive(const std::string& lines, const std::vector<std::string>& statements) {
  const sim::TempFolder folder;
  store::DiskFileSystem disk;
  store::Session session({disk, store::systemClock(), "clerk", "desk", ::getpid()});
  sim::makeCompany(session, folder.path(), sim::Books::few);
  std::FILE* file = std::tmpfile();
  std::fwrite(lines.data(), 1, lines.size(), file);
  std::rewind(file);
  std::ostringstream out;
  {
    apps::Lines in(::fileno(file));
    apps::DrivePerson person(in, out);
    sim::SimDesktop desktop;
    apps::ProgramOptions options;
    options.given = desktop.given();
    apps::Program program(options, person);
    person.serve(program, folder.path());
  }
  std::fclose(file);
  store::Database company(session, folder.path());
  std::vector<std::string> rows;
  for (const std::string& statement : statements)
    for (std::string& row : sim::rowsOf(company, statement)) rows.push_back(std::move(row));
  if (rows.empty()) rows.push_back(out.str());
  return rows;
}

class Windows : public testing::Test {
 protected:
  void newVoucher() {
    work_.open("TfrmJVs");
    work_.keys({"Ctrl+N"});
    ASSERT_EQ(work_.title(), "New Journal Voucher");
  }
  // A line from its first cell on. An account is picked as it is typed.
  void typeLine(const std::string& account, const std::string& amount) {
    work_.keys({"=" + account, "Enter", "Enter", "Enter", "Enter", "Enter", "=" + amount, "Enter"});
  }
  void save() {
    work_.tabTo("frmJV.btnOK");
    work_.keys({"Enter"});
  }
  std::uint64_t total(const char* screen) {
    form::Screen& list = *work_.app().find(screen);
    return list.gridOf(*list.tables().front())->grid()->total().value();
  }
  std::uint64_t activeRow(form::Screen& list) {
    return list.gridOf(*list.tables().front())->grid()->activeRow().value();
  }
  sim::DeskWork work_;
};

TEST_F(Windows, EachRefusalOfASaveLeadsToItsFieldAndTheSaveGoesOnWhereItAsks) {
  struct Check {
    std::vector<std::string> keys;  // the last of them saves
    const char *words, *focus;
  };
  const Check checks[] = {
      {{"=13", "Enter"}, "Period must be between 1 and 12", "frmJV.editGLPeriod"},
      {{"Esc", "Tab", "Tab", "Backspace", "Enter"}, "Field 'JV no.' must have a value", "frmJV.editJVNumber"},
      {{"=1001", "Tab", "Backspace", "Enter"}, "Field 'Date' must have a value", "frmJV.editTransDate"},
      {{"=31/31/26", "Enter"}, "'31/31/26' is not a valid date", "frmJV.editTransDate"},
      {{"Esc", "=031726", "Shift+Tab", "Shift+Tab", "=25", "Enter"},
       "GL Period is prior to current fiscal year \ras defined by \"Your Company\"",
       "frmJV.editGLPeriod"},
      {{"Tab", "=26", "Enter"}, "Amounts and GL Accounts have not been entered", "frmJV.grdJVDet.GLAccount"}};
  newVoucher();
  EXPECT_EQ(work_.focus(), "frmJV.editGLPeriod");
  for (const Check& check : checks) {
    work_.willAnswer("OK");
    work_.keys(check.keys);
    EXPECT_EQ(work_.heard(), check.words);
    EXPECT_EQ(work_.focus(), check.focus) << check.words;
  }
  typeLine("5000", "250.5");
  work_.willAnswer("OK");
  save();
  EXPECT_TRUE(work_.heard().starts_with("No credits have been entered"));
  EXPECT_EQ(work_.focus(), "frmJV.grdJVDet.GLAccount");
  typeLine("1000", "-250.5");

  // The save asks, and stands still meanwhile: Cancel leaves all as it was, OK goes on.
  work_.run("UPDATE Company SET WPeriodFromYYYY = 2026, WPeriodFromPP = 5");
  work_.willAnswer("Cancel");
  save();
  EXPECT_EQ(work_.heard(), "GL Period is not within expected range \ras defined by \"Your Company\".");
  EXPECT_EQ(work_.focus(), "frmJV.editGLPeriod");
  EXPECT_TRUE(work_.rows(kVouchers).empty());
  work_.willAnswer("OK");
  save();
  EXPECT_EQ(work_.title(), "Journal Vouchers");
  EXPECT_EQ(work_.rows(kVouchers).size(), 1u);
}

TEST_F(Windows, AVoucherIsUndoneByKeys) {
  newVoucher();
  work_.tabTo("frmJV.editTransDescription");
  work_.keys({"=Rent", "Esc", "=Heat"});
  work_.tabTo("frmJV.grdJVDet");
  typeLine("5000", "250.5");
  EXPECT_EQ(work_.rows(kLines).size(), 1u);
  work_.tabTo("frmJV.btnOK");
  work_.willAnswer("No");
  work_.keys({"Esc"});
  EXPECT_EQ(work_.heard(), "Do you want to save changes?");
  EXPECT_EQ(work_.title(), "Journal Vouchers");
  EXPECT_TRUE(work_.rows(kVouchers).empty());
  EXPECT_TRUE(work_.rows(kLines).empty());
}

TEST_F(Windows, ASavedVoucherIsTheOneThatAScriptEnters) {
  newVoucher();
  work_.keys({"=3", "Tab", "=26"});
  work_.tabTo("frmJV.editTransDescription");
  work_.keys({"=Rent"});
  work_.tabTo("frmJV.grdJVDet");
  typeLine("5000", "250.5");
  typeLine("1000", "-250.5");
  save();
  ASSERT_EQ(work_.title(), "Journal Vouchers") << work_.heard();
  // Found again by typing in the list.
  work_.keys({"=Re", "?", "Enter", "Enter"});
  EXPECT_EQ(work_.heard(), "frmJVsFind.editTransDescription");
  EXPECT_EQ(work_.title(), "JV 1001");
  std::vector<std::string> byKeys = work_.rows(kVouchers);
  for (const std::string& line : work_.rows(kLines)) byKeys.push_back(line);
  EXPECT_EQ(byKeys.size(), 3u);
  EXPECT_EQ(byKeys, drive(R"({"menu":"GL > JVs"}
{"click":"frmJVs.mnuNew"}
{"set":"frmJV.editGLPeriod","value":"3"}
{"set":"frmJV.editGLYear","value":"26"}
{"set":"frmJV.editTransDescription","value":"Rent"}
{"grid":"frmJV.grdJVDet","do":"append"}
{"set":"frmJV.grdJVDet[0].GLAccount","value":"5000"}
{"set":"frmJV.grdJVDet[0].GLAmount","value":"250.5"}
{"grid":"frmJV.grdJVDet","do":"append"}
{"set":"frmJV.grdJVDet[1].GLAccount","value":"1000"}
{"set":"frmJV.grdJVDet[1].GLAmount","value":"-250.5"}
{"click":"frmJV.btnOK"}
)",
                          {kVouchers, kLines}));
}

TEST_F(Windows, PickersModalChainsMenusAndFiltersAreWorkedByKeys) {
  newVoucher();
  work_.tabTo("frmJV.editTransDate");
  work_.keys({"F2", "Left", "PgDn", "Down", "Enter", "?"});
  EXPECT_EQ(work_.heard(), "frmJV.editTransDate");
  form::Screen& voucher = *work_.app().find("frmJV");
  const auto date = [&] { return voucher.find("editTransDate")->binding()->text(); };
  EXPECT_EQ(date(), "23 Apr 26");
  // It opens on what is typed, and where that is no date on what the field holds; left without one, the text stays.
  struct Pick {
    std::vector<std::string> keys;
    const char *typed, *date;
  };
  const Pick picks[] = {{{"=050926", "F2", "Right", "Esc"}, "050926", "23 Apr 26"},
                        {{"F2", "Right", "Enter"}, "", "10 May 26"},
                        {{"=05/", "F2", "Esc"}, "05/", "10 May 26"},
                        {{"=1", "F2", "Down", "Enter"}, "", "17 May 26"}};
  for (const Pick& pick : picks) {
    work_.keys(pick.keys);
    EXPECT_EQ(work_.focus(), "frmJV.editTransDate");
    EXPECT_EQ(voucher.typed().value_or(""), pick.typed) << pick.date;
    EXPECT_EQ(date(), pick.date) << pick.keys[0];
  }
  work_.tabTo("frmJV.grdJVDet");
  // From the cell to its picker, to the list behind that, to a new account, and back with it.
  work_.keys({"F2", "?", "Alt+A", "?", "Ctrl+N", "=6000", "Tab", "=Heat", "Tab", "?", "Down", "Enter", "?", "Esc", "?",
              "Enter", "?"});
  EXPECT_EQ(work_.heard(),
            "frmGLAccountSearch.editGLAccount\nfrmGLAccounts.grdGLAccnt.GLAccount\nfrmGLAccount.radAccountType\n"
            "frmGLAccounts.grdGLAccnt.GLAccount\nfrmGLAccountSearch.editGLAccount\nfrmJV.grdJVDet.GLAccount");
  EXPECT_EQ(work_.rows("SELECT AccountName FROM GLAccnt WHERE GLAccount = '6000'"), std::vector<std::string>{"Heat"});
  EXPECT_EQ(work_.app().find("frmJV")->find("grdJVDet")->grid()->rows(0, 1).rows.at(0).texts.at(0), "6000");
  work_.willAnswer("No");
  work_.keys({"Esc", "Esc"});

  for (const char* values : {"1, 1, 2026, 3, 'GL', true", "2, 2, 2026, 3, 'GL', false", "3, 3, 2026, 3, 'GL', false"})
    work_.run(std::string("INSERT INTO JV (JVID, JVNumber, GLYear, GLPeriod, Source, Posted) VALUES (") + values + ")");
  work_.keys({"F5", "Alt+E", "=i", "Tab", "Up", "Enter"});
  EXPECT_EQ(work_.title(), "Journal Vouchers (Filtered)");
  EXPECT_EQ(total("frmJVs"), 2u);
  work_.keys({"Alt+E", "=i", "Alt+R", "Enter"});
  EXPECT_EQ(work_.title(), "Journal Vouchers");
  EXPECT_EQ(total("frmJVs"), 3u);
}

TEST_F(Windows, FiguresOfAPreviewAreFollowedByKeys) {
  for (const char* id : {"1", "2"})
    work_.run(std::string("INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget, Amount1) VALUES (") + id +
              ", 2026, 'A', 5)");
  work_.app().preview("TrptTrialBalance", {.values = {{"year", store::Value(2026)}}});
  work_.front().sync();
  form::Screen& preview = *work_.app().find("frmPreview");
  const std::vector<form::PageLink> links = preview.find("pgvPages")->pageView()->pages->links(1);
  ASSERT_GT(links.size(), 3u);
  work_.tabTo("frmPreview.pgvPages");
  // Nothing is marked yet; then the first, the third and, beyond the first, the first again.
  work_.keys({"Enter"});
  EXPECT_EQ(work_.app().find("frmGLHistory"), nullptr);
  work_.keys({"Ctrl+Down", "Ctrl+Down", "Ctrl+Up", "Ctrl+Up", "Enter", "?"});
  EXPECT_EQ(work_.heard(), "frmGLHistory.grdGLHist.GLPeriod");
}

// The lines of a picture that are no longer as they were: the first and the last; -1 for none.
std::pair<int, int> difference(const QImage& before, const QImage& after) {
  std::pair<int, int> found{-1, -1};
  for (int y = 0; y < before.height(); ++y) {
    if (std::equal(before.scanLine(y), before.scanLine(y) + before.bytesPerLine(), after.scanLine(y))) continue;
    if (found.first < 0) found.first = y;
    found.second = y;
  }
  return found;
}

TEST_F(Windows, AnOpenListShowsWhatOthersChangeWithoutAJump) {
  store::Cursor others(work_.company(), "GLAccnt");
  others.open();
  const auto add = [&](int from, int to) {
    const store::Database::BulkScope bulk(work_.company());
    for (int number = from; number < to; ++number) {
      others.append();
      others["GLAccountID"] = number;
      others["GLAccount"] = std::to_string(number);
      others["AccountName"] = "Account " + std::to_string(number);
      others["AccountType"] = 1;
      others.post();
    }
  };
  add(2000, 2200);
  form::Screen& list = work_.open("TfrmGLAccounts");
  work_.keys({"PgDn", "PgDn", "Up", "Up"});
  auto& area = *work_.front().windowOf(list)->findChild<QAbstractScrollArea*>("grdGLAccnt");
  const auto picture = [&] {
    work_.front().sync();
    return area.viewport()->grab().toImage();
  };
  const int row = area.fontMetrics().height() + 6, header = row + 4;
  const std::uint64_t active = activeRow(list);
  const QImage before = picture();
  add(1500, 1530);
  EXPECT_EQ(activeRow(list), active + 30);
  EXPECT_EQ(difference(before, picture()), std::pair(-1, -1)) << "rows above moved those on view";
  others.locate("GLAccount", {store::Value(std::to_string(2000 + static_cast<int>(active) - 2))});
  others.edit();
  others["AccountName"] = "Renamed";
  others.post();
  const auto [first, last] = difference(before, picture());
  EXPECT_GE(first, 0);
  EXPECT_LE(last - first, row) << "more than one row changed";

  // The thumb is drawn away from the active row, and what comes to pass elsewhere does not draw it back; a click is on
  // the row that was clicked.
  work_.keys({"Tab"});
  area.verticalScrollBar()->setValue(0);
  const QImage top = picture();
  EXPECT_EQ(difference(top, picture()), std::pair(-1, -1));
  QTest::mouseClick(area.viewport(), Qt::LeftButton, {}, QPoint(20, header + row * 3 / 2));
  EXPECT_EQ(activeRow(list), 1u);
}

// Once for each press, also the second one of a double click, which opens nothing here; beside it a click only moves.
TEST_F(Windows, ATickIsTurnedOverByTheMouse) {
  for (const char* row :
       {"INSERT INTO Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Main', 1, 1)",
        "INSERT INTO GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount) VALUES (1, "
        "2026, 1, 'GL', 'JV', 1, '2026-01-01', 5)",
        "INSERT INTO GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount) VALUES (1, "
        "2026, 1, 'GL', 'JV', 2, '2026-01-02', 7)",
        "UPDATE Company SET DefaultCurrencyID = 1"})
    store::Query(work_.app().database(), row).execute();
  Window* window = work_.front().windowOf(work_.open("TfrmBankRec"));
  QWidget* rows = window->findChild<QAbstractScrollArea*>()->viewport();
  const int header = rows->fontMetrics().height() + 10, second = header + (rows->fontMetrics().height() + 6) * 3 / 2;
  const auto ticks = [&] { return work_.rows("SELECT Reconciling FROM GLHist ORDER BY GLHistID"); };
  const std::vector<std::string> before = ticks();
  QTest::mouseClick(rows, Qt::LeftButton, {}, {rows->width() / 2, second});
  EXPECT_EQ(ticks(), before);
  QTest::mouseClick(rows, Qt::LeftButton, {}, {5, second});
  const std::vector<std::string> once = ticks();
  EXPECT_EQ(once[0], before[0]);
  EXPECT_NE(once[1], before[1]);
  QTest::mouseClick(rows, Qt::LeftButton, {}, {5, second});
  QTest::mouseDClick(rows, Qt::LeftButton, {}, {5, second});
  EXPECT_EQ(ticks(), once);
  EXPECT_EQ(work_.title(), "Bank Reconciliation");
}

// What is typed where nothing can be typed, a window closed with its mark, and a modal screen over another.
TEST_F(Windows, TheWindowsOfScreensComeAndGoWithThem) {
  form::Screen& list = work_.open("TfrmGLAccounts");
  Window* window = work_.front().windowOf(list);
  ASSERT_TRUE(window != nullptr && window->isVisible());
  EXPECT_EQ(window->windowTitle(), shown(list.title()));
  for (QWidget* widget : window->findChildren<QWidget*>())
    if (widget->focusPolicy() != Qt::NoFocus && !widget->isHidden() && widget->inherits("QLineEdit")) {
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << typed(widget->objectName());
    }
  work_.keys({"Down", "Down", "Up"});
  EXPECT_EQ(list.gridOf(*list.tables().front())->grid()->activeRow(), 0u);
  // Whoever turns to another window works in that one.
  work_.open("TfrmJVs");
  window->activateWindow();
  work_.keys({"Down", "?"});
  EXPECT_EQ(work_.heard(), "frmGLAccounts.grdGLAccnt.GLAccount");
  EXPECT_EQ(activeRow(list), 1u);
  window->close();
  EXPECT_FALSE(window->isVisible()) << "its screen is gone";
  QApplication::processEvents();
  EXPECT_EQ(work_.app().find("frmGLAccounts"), nullptr);
  EXPECT_EQ(work_.front().windowOf(list), nullptr);
}

}  // namespace
}  // namespace quillon::desktop
