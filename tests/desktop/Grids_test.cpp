// Grids as they are seen, and as they are read out to who does not see them.
#include <gtest/gtest.h>

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include "desktop/GridView.h"
#include "desktop/Text.h"
#include "desktop/Window.h"
#include "form/Grid.h"
#include "form/Table.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "tests_desktop/DeskWork.h"

namespace quillon::desktop {
namespace {

class Grids : public testing::Test {
 protected:
  Grids() { QAccessible::setActive(true); }
  ~Grids() override { QAccessible::setActive(false); }

  GridArea& area(const char* screen, const QString& grid = {}) {
    const QWidget& window = *work_.front().windowOf(*work_.app().find(screen));
    return dynamic_cast<GridArea&>(*window.findChild<QAbstractScrollArea*>(grid));
  }
  static QAccessibleInterface* reading(QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget); }
  static std::string nameOf(QAccessibleInterface* some) { return some ? typed(some->text(QAccessible::Name)) : "none"; }
  // The cell that was told last: its heading, its row and its text.
  std::string toldOf(const char* screen) {
    const ToldCell& told = area(screen).told();
    return typed(area(screen).heading(told.column)) + " " + std::to_string(told.row) + ": " + typed(told.text);
  }

  void addAccounts(int from, int to) {
    store::Cursor accounts(work_.company(), "GLAccnt");
    accounts.open();
    const store::Database::BulkScope bulk(work_.company());
    for (int number = from; number < to; ++number) {
      accounts.append();
      accounts["GLAccountID"] = number;
      accounts["GLAccount"] = std::to_string(number);
      accounts["AccountName"] = "Account " + std::to_string(number);
      accounts["AccountType"] = 1;
      accounts.post();
    }
  }

  sim::DeskWork work_;
};

// The first column in which something is drawn, within a part of a picture.
int leftInk(const QImage& picture, QRect part) {
  for (int x = part.left(); x <= part.right(); ++x)
    for (int y = part.top(); y <= part.bottom(); ++y)
      if (picture.pixel(x, y) != picture.pixel(part.topLeft())) return x;
  return -1;
}

TEST_F(Grids, OfAWideListTheFirstColumnStaysAndFiguresStandByTheirPoints) {
  addAccounts(6000, 6004);
  const char* const amounts[] = {"1.25", "1.255", "-1.25", "-1.255"};
  for (int i = 0; i < 4; ++i)
    work_.run("INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal) VALUES (" +
              std::to_string(6000 + i) + ", 2026, 'A', " + amounts[i] + ")");
  Window* window = work_.front().windowOf(work_.open("TfrmGLBalances"));
  window->resize(620, 400);
  work_.keys({"Down"});
  QAbstractScrollArea& rows = area("frmGLBalances");
  QAccessibleTableInterface* table = reading(rows)->tableInterface();
  const auto rect = [&](int row, int column) {
    return table->cellAt(row, column)->rect().translated(-rows.viewport()->mapToGlobal(QPoint()));
  };
  const auto picture = [&] {
    QApplication::processEvents();
    return rows.viewport()->grab().toImage();
  };
  ASSERT_EQ(table->rowCount(), 6);
  int opening = 0;
  while (table->columnDescription(opening) != "Opening Balance") ++opening;
  ASSERT_LT(opening, table->columnCount());

  const QRect first = rect(2, 0);
  const QImage before = picture();
  work_.keys({"Right", "Right", "Right"});
  const QImage after = picture();
  ASSERT_GT(rows.horizontalScrollBar()->value(), first.width());
  EXPECT_EQ(rect(2, 0), first);
  EXPECT_TRUE(table->cellAt(2, 1)->rect().isNull() || rect(2, 1).left() >= first.right());
  const QRect staying = first.adjusted(0, 0, -2, 0);
  EXPECT_EQ(before.copy(staying), after.copy(staying));
  EXPECT_NE(before.copy(staying.translated(first.width(), 0)), after.copy(staying.translated(first.width(), 0)));
  QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, rect(4, 0).center());
  EXPECT_TRUE(table->isRowSelected(4));

  // One more decimal stands behind the others, and so does the parenthesis.
  std::vector<int> left;
  for (int row = 2; row < 6; ++row) left.push_back(leftInk(after, rect(row, opening).adjusted(1, 1, -1, -2)));
  EXPECT_GT(left[0], 0);
  EXPECT_EQ(left[0], left[1]);
  EXPECT_EQ(left[2], left[3]);
  EXPECT_LT(left[2], left[0]);
}

// In the lines of a document the cell that is worked in is never below the column that stays.
TEST_F(Grids, OfLinesTheCellThatIsWorkedInComesOnView) {
  work_.open("TfrmJVs");
  work_.keys({"Ctrl+N"});
  work_.front().windowOf(*work_.app().find("frmJV"))->resize(420, 400);
  work_.tabTo("frmJV.grdJVDet");
  work_.keys({"=5000", "Enter"});
  QAbstractScrollArea& rows = area("frmJV");
  ASSERT_GT(rows.horizontalScrollBar()->maximum(), 0);
  QAccessibleInterface* grid = reading(rows);
  const int edge = grid->tableInterface()->cellAt(0, 0)->rect().right();
  for (const char* key : {"Tab", "Tab", "Tab", "Tab", "Shift+Tab", "Shift+Tab", "Shift+Tab"}) {
    work_.keys({key});
    QAccessibleInterface* cell = grid->focusChild();
    ASSERT_NE(cell, nullptr);
    EXPECT_GT(cell->rect().left(), edge) << nameOf(cell->tableCellInterface()->columnHeaderCells().at(0));
    EXPECT_LE(cell->rect().right(), rows.viewport()->mapToGlobal(QPoint(rows.viewport()->width(), 0)).x());
  }
  // Scrolled away, and typed into: it is there again, and what is typed is seen.
  work_.tabTo("frmJV.grdJVDet.GLAmount");
  rows.horizontalScrollBar()->setValue(0);
  work_.keys({"=7"});
  auto* editor = rows.viewport()->findChild<QLineEdit*>();
  EXPECT_TRUE(editor->isVisible());
  EXPECT_EQ(editor->text(), "7");
  EXPECT_GT(editor->width(), editor->fontMetrics().horizontalAdvance("1,000.00"));
}

TEST_F(Grids, AListIsReadOutByItsCells) {
  addAccounts(600000, 607000);
  form::Screen& list = work_.open("TfrmGLAccounts");
  QAccessibleInterface* grid = reading(area("frmGLAccounts"));
  ASSERT_EQ(grid->role(), QAccessible::Table);
  QAccessibleTableInterface* table = grid->tableInterface();
  EXPECT_EQ(table->rowCount(), 7002);
  work_.keys({"Down"});
  EXPECT_EQ(toldOf("frmGLAccounts"), "Account no. 1: 5000");
  work_.keys({"Ctrl+End", "Up"});
  EXPECT_EQ(toldOf("frmGLAccounts"), "Account no. 7000: 606998");
  EXPECT_EQ(table->selectedRows(), QList<int>{7000});
  EXPECT_TRUE(table->rowDescription(7000).contains("Account no. 606998; Name Account 606998;"))
      << typed(table->rowDescription(7000));

  // Those that nobody sees, too; the list stays where it is, and few cells are kept.
  for (int row = 0; row < 7002; row += 9)
    for (int column = 0; column < 2; ++column) {
      QAccessibleInterface* cell = table->cellAt(row, column);
      const std::string number = row == 0 ? "1000" : std::to_string(600000 + row - 2);
      EXPECT_EQ(nameOf(cell), row == 0 && column == 1 ? "Cash" : column == 0 ? number : "Account " + number);
      EXPECT_EQ(cell->tableCellInterface()->rowIndex(), row);
      EXPECT_EQ(grid->child(grid->indexOfChild(cell)), cell);
      EXPECT_EQ(cell->rect().isEmpty(), cell->state().offscreen);
    }
  EXPECT_EQ(list.gridOf(*list.tables().front())->grid()->activeRow(), 7000u);
  EXPECT_EQ(table->cellAt(7002, 0), nullptr);

  table->cellAt(6999, 1)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_EQ(list.gridOf(*list.tables().front())->grid()->activeRow(), 6999u);
  EXPECT_TRUE(table->cellAt(6999, 0)->state().selected);
  EXPECT_FALSE(table->cellAt(7000, 0)->state().selected);
  EXPECT_EQ(grid->childAt(table->cellAt(6999, 1)->rect().center().x(), table->cellAt(6999, 1)->rect().center().y()),
            table->cellAt(6999, 1));

  // Under a filter its rows are not counted: the table is what is on view.
  store::Cursor& rows = *list.tables().front();
  rows.setFilter("AccountType = 1");
  rows.setFiltered(true);
  work_.front().sync();
  EXPECT_LT(table->rowCount(), 100);
  work_.keys({"Down"});
  EXPECT_EQ(toldOf("frmGLAccounts"), "Name 1: Account 600000");
}

TEST_F(Grids, LinesAreReadOutAsTheyAreTyped) {
  work_.open("TfrmJVs");
  work_.keys({"Ctrl+N"});
  work_.tabTo("frmJV.grdJVDet");
  QAccessibleInterface* grid = reading(area("frmJV"));
  work_.keys({"=5", "Enter"});
  EXPECT_EQ(toldOf("frmJV"), "Account 0: 5000");
  work_.tabTo("frmJV.grdJVDet.GLAmount");
  EXPECT_EQ(toldOf("frmJV"), "Amount 0: ");
  work_.keys({"=2"});
  EXPECT_EQ(nameOf(grid->focusChild()), "Amount") << "the field that is typed into";
  EXPECT_EQ(grid->focusChild()->text(QAccessible::Value), "2");
  work_.keys({"Enter"});
  EXPECT_EQ(toldOf("frmJV"), "Account 1: ");
  work_.keys({"Up", "Right"});
  EXPECT_EQ(grid->tableInterface()->selectedCellCount(), 1);
  EXPECT_EQ(grid->focusChild(), grid->tableInterface()->selectedCells().at(0));
  EXPECT_TRUE(grid->focusChild()->state().editable);
}

// One of a few texts is typed by its first letters, or chosen where they drop down.
TEST_F(Grids, WhatMayStandInACellIsCompletedAndDropsDown) {
  work_.app().open("TfrmFinancialStmt", {.newRow = true});
  work_.front().sync();
  work_.keys({"=Assets"});
  work_.tabTo("frmFinancialStmt.grdFStmtLin");
  work_.keys({"=Cash", "Enter", "=t"});
  const auto* editor = area("frmFinancialStmt", "grdFStmtLin").viewport()->findChild<QLineEdit*>();
  EXPECT_EQ(editor->text(), "Total");
  EXPECT_EQ(editor->selectedText(), "otal");
  work_.keys({"Backspace"});
  EXPECT_EQ(editor->text(), "T");
  work_.keys({"Backspace", "=he", "Enter"});
  EXPECT_EQ(work_.rows("SELECT LineHeading, LineType FROM FStmtLin"), std::vector<std::string>{"Cash|Heading"});
  work_.keys({"Up", "Right", "F2", "Down", "Down", "Down", "Down", "Enter", "Enter"});
  EXPECT_EQ(work_.rows("SELECT LineType FROM FStmtLin"), std::vector<std::string>{"Total"});
}

}  // namespace
}  // namespace quillon::desktop
