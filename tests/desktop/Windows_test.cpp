// A bookkeeper's work in real windows, by keys alone; and the same through the calls that a script makes.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include "desktop/Text.h"
#include "desktop/Window.h"
#include "form/Grid.h"
#include "form/Table.h"
#include "tests_desktop/DeskWork.h"

namespace quillon::desktop {
namespace {

const char* const kVouchers =
    "SELECT GLYear, GLPeriod, JVNumber, TransDate, TransDescription, JVAmount FROM JV ORDER BY JVNumber";
const char* const kLines = "SELECT Seq, GLAccountID, GLAmount FROM JVDet ORDER BY Seq";

class Windows : public testing::Test {
 protected:
  // Two lines that balance, from the first cell on. An account is picked as it is typed.
  void typeLines() {
    work_.keys({"=5000", "Enter", "Enter", "Enter", "Enter", "Enter", "=250.5", "Enter"});
    work_.keys({"=1000", "Enter", "Enter", "Enter", "Enter", "Enter", "=-250.5", "Enter"});
  }
  sim::DeskWork work_;
};

TEST_F(Windows, AVoucherIsEnteredRefusedUndoneSavedAndFoundByKeys) {
  work_.open("TfrmJVs");
  work_.keys({"Ctrl+N"});
  ASSERT_EQ(work_.title(), "New Journal Voucher");
  EXPECT_EQ(work_.focus(), "frmJV.editGLPeriod");

  // Nothing is there to save.
  work_.keys({"=3", "Tab", "=26", "Tab"});
  EXPECT_EQ(work_.focus(), "frmJV.editJVNumber");
  work_.keys({"Tab"});
  EXPECT_EQ(work_.focus(), "frmJV.editTransDate");
  work_.willAnswer("OK");
  work_.keys({"=31/31/26", "Tab"});
  EXPECT_EQ(work_.focus(), "frmJV.editTransDate") << "what cannot be read stays to be mended";
  EXPECT_NE(work_.heard(), "");
  work_.keys({"Esc"});
  EXPECT_EQ(work_.title(), "New Journal Voucher") << "the field is undone, not the screen";

  work_.tabTo("frmJV.editTransDescription");
  work_.keys({"=Rent"});
  work_.tabTo("frmJV.grdJVDet");
  typeLines();
  EXPECT_EQ(work_.rows(kLines).size(), 2u);

  // Undone: Esc asks, and No leaves nothing behind.
  work_.tabTo("frmJV.btnOK");
  work_.willAnswer("No");
  work_.keys({"Esc"});
  EXPECT_EQ(work_.heard(), "Do you want to save changes?");
  EXPECT_EQ(work_.title(), "Journal Vouchers");
  EXPECT_TRUE(work_.rows(kVouchers).empty());
  EXPECT_TRUE(work_.rows(kLines).empty());
}

TEST_F(Windows, ASavedVoucherIsTheOneThatAScriptEnters) {
  work_.open("TfrmJVs");
  work_.keys({"Ctrl+N", "=3", "Tab", "=26"});
  work_.tabTo("frmJV.editTransDescription");
  work_.keys({"=Rent"});
  work_.tabTo("frmJV.grdJVDet");
  typeLines();
  work_.tabTo("frmJV.btnOK");
  work_.keys({"Enter"});
  ASSERT_EQ(work_.title(), "Journal Vouchers") << work_.heard();
  ASSERT_EQ(work_.rows(kVouchers).size(), 1u);
  // Found again by typing in the list.
  work_.keys({"=Re", "?", "Enter", "Enter"});
  EXPECT_EQ(work_.heard(), "frmJVsFind.editTransDescription");
  EXPECT_EQ(work_.title(), "JV 1001");
  work_.keys({"Esc"});

  sim::DeskWork script;
  form::Input& input = script.front().input();
  const auto set = [&](const char* control, const char* text) {
    form::Screen& voucher = *script.app().find("frmJV");
    EXPECT_TRUE(input.set(voucher, *voucher.find(control), text).ok) << control;
  };
  form::Screen& list = script.open("TfrmJVs");
  EXPECT_TRUE(input.click(list, *list.find("mnuNew")).ok);
  set("editGLPeriod", "3");
  set("editGLYear", "26");
  set("editTransDescription", "Rent");
  form::Screen& voucher = *script.app().find("frmJV");
  form::Control& lines = *voucher.find("grdJVDet");
  for (const auto& [row, account, amount] : {std::tuple(0U, "5000", "250.5"), std::tuple(1U, "1000", "-250.5")}) {
    EXPECT_TRUE(input.grid(voucher, lines, "append").ok);
    EXPECT_TRUE(input.setCell(voucher, lines, row, "GLAccount", account).ok);
    EXPECT_TRUE(input.setCell(voucher, lines, row, "GLAmount", amount).ok);
  }
  EXPECT_TRUE(input.click(voucher, *voucher.find("btnOK")).ok);
  EXPECT_EQ(script.rows(kVouchers), work_.rows(kVouchers));
  EXPECT_EQ(script.rows(kLines), work_.rows(kLines));
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
  window->close();
  QApplication::processEvents();
  EXPECT_EQ(work_.app().find("frmGLAccounts"), nullptr);
  EXPECT_EQ(work_.front().windowOf(list), nullptr);
}

}  // namespace
}  // namespace quillon::desktop
