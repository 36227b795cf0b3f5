// What hands do to a screen: typing, leaving, saving, closing, keys; told by what the person hears and where the focus
// stands.
#include "form/Input.h"

#include <gtest/gtest.h>

#include "form/Transaction.h"
#include "support/ScriptedPerson.h"
#include "support/SimProcess.h"
#include "support/ToyScreens.h"

namespace quillon::form {
namespace {

class InputTest : public testing::Test {
 protected:
  InputTest() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    process_.open();
    sim::createToyTables(process_.database());
    sim::registerToys(registry_);
    app_.setDatabase(&process_.database());
    toy_ = &app_.open("TfrmToy");
  }
  ~InputTest() override { app_.dropScreens(); }

  Control& control(const std::string& name) { return *toy_->find(name); }
  Ended set(const std::string& name, const std::string& text) { return input_.set(*toy_, control(name), text); }
  Ended click(const std::string& name) { return input_.click(*toy_, control(name)); }
  Ended cell(std::uint64_t row, const char* column, const char* text) {
    return input_.setCell(*toy_, lines(), row, column, text);
  }
  Ended key(const char* name) { return input_.key(*toy_, name); }
  Control& lines() { return control("grdToyLine"); }
  std::string focus() {
    return toy_->focused()->name() + (toy_->target() != toy_->focused() ? "." + toy_->target()->name() : "");
  }
  std::string value(const std::string& name) { return control(name).binding()->text(); }
  // "bolt 1.00|nut 2.00": all lines as shown, the active one in brackets.
  std::string shownLines() {
    std::string all;
    for (const Grid::Row& row : lines().grid()->rows(0, 50).rows) {
      const std::string text = row.texts[0] + " " + row.texts[1];
      all += (all.empty() ? "" : "|") + (row.active ? "[" + text + "]" : text);
    }
    return all;
  }
  // As another process sees it.
  std::string stored(const char* table, const char* field) {
    store::Cursor rows(process_.database(), table);
    std::string all;
    rows.open();
    for (rows.first(); !rows.eof(); rows.next()) all += rows[field].value().toText() + " ";
    return all;
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess process_{disk_, clock_, {}};
  sim::ScriptedPerson person_;
  Registry registry_;
  App app_{person_,
           registry_,
           {.date = ShortDateFormat("MM/dd/yyyy"), .numbers = {}, .today = [] { return Date(2026, 3, 5); }},
           "Toys"};
  Input input_{app_};
  Screen* toy_ = nullptr;
};

TEST_F(InputTest, AFieldIsTakenWhenItIsLeftAndKeptWhereItCannotBeRead) {
  EXPECT_EQ(focus(), "editCode");
  EXPECT_TRUE(set("editDay", "2026-03-04").ok);
  EXPECT_EQ(value("editDay"), "04 Mar 26");
  EXPECT_FALSE(set("editDay", "never").ok);
  EXPECT_EQ(focus(), "editDay");
  EXPECT_EQ(toy_->typed(), "never");
  EXPECT_FALSE(set("editCode", "C").ok) << "the field that cannot be left";
  EXPECT_EQ(value("editCode"), "A");
  EXPECT_FALSE(click("btnOK").ok);
  person_.takeHeard();
  EXPECT_TRUE(key("Esc").ok);
  EXPECT_FALSE(toy_->typed());
  EXPECT_EQ(value("editDay"), "04 Mar 26");
  EXPECT_TRUE(click("btnOK").ok);
  EXPECT_EQ(person_.takeHeard(), "");
  EXPECT_FALSE(app_.find("frmToy"));
}

TEST_F(InputTest, RefusalsTellTheirWordsAndStandWhereTheyBelong) {
  set("editCode", "B");
  const Ended twice = click("btnOK");
  EXPECT_EQ(twice.error, "This code is there already");
  EXPECT_EQ(focus(), "editCode");
  set("editCode", "bad");
  EXPECT_EQ(click("btnOK").error, "This code is bad");
  EXPECT_EQ(focus(), "editDay");
  set("editCode", "ask");
  person_.answers = {Button::no, Button::yes};
  EXPECT_TRUE(click("btnOK").aborted) << "a question in the middle of a save";
  EXPECT_EQ(focus(), "editCode");
  EXPECT_EQ(stored("ToyDoc", "Code"), "A B ");
  person_.takeHeard();
  EXPECT_TRUE(click("btnOK").ok);
  EXPECT_EQ(person_.takeHeard(), "confirmation: Is this meant?");
  EXPECT_EQ(stored("ToyDoc", "Code"), "ask B ");
}

TEST_F(InputTest, ReadOnlyFieldsExplainAndOthersRefuseBeforeAnythingHappens) {
  EXPECT_TRUE(set("editTotal", "5").aborted);
  EXPECT_EQ(person_.takeHeard(), "information: Lines make the total");
  EXPECT_EQ(value("editTotal"), "");
  EXPECT_EQ(control("pagAll").page, 1) << "the page is turned to the field";
  EXPECT_THROW(click("btnMore"), Error) << "disabled";
  EXPECT_THROW(click("editCode"), Error);
  EXPECT_THROW(set("btnOK", "x"), Error);
  EXPECT_THROW(input_.choose(*toy_, lines(), true), Error);
  EXPECT_THROW(cell(0, "Colour", "x"), Error);
  EXPECT_FALSE(cell(7, "Amount", "1").ok) << "no such row";
  EXPECT_EQ(person_.takeHeard(), "error: Row 7 does not exist");
}

TEST_F(InputTest, ClosingLosesNothingWithoutAQuestion) {
  set("editCode", "C");
  cell(0, "Amount", "1");  // there is no line
  input_.grid(*toy_, lines(), "append");
  cell(0, "Amount", "1");
  cell(0, "Part", "bolt");
  person_.takeHeard();
  person_.answers = {Button::cancel, Button::no};
  EXPECT_TRUE(input_.close(*toy_).aborted);
  EXPECT_EQ(value("editCode"), "C");
  EXPECT_TRUE(input_.close(*toy_).ok);
  EXPECT_EQ(person_.takeHeard(),
            "confirmation: Do you want to save changes?\nconfirmation: Do you want to save changes?");
  EXPECT_EQ(stored("ToyDoc", "Code") + stored("ToyLine", "Amount"), "A B ");
  toy_ = &app_.open("TfrmToy");
  EXPECT_TRUE(input_.close(*toy_).ok) << "nothing changed";
  EXPECT_EQ(person_.takeHeard(), "");
  toy_ = &app_.open("TfrmToy");
  person_.answers = {Button::cancel, Button::yes};
  input_.type(*toy_, "Q");
  EXPECT_TRUE(input_.close(*toy_).aborted) << "typed and not taken is a change, too";
  EXPECT_EQ(toy_->typed(), "Q");
  EXPECT_TRUE(input_.close(*toy_).ok);
  EXPECT_EQ(stored("ToyDoc", "Code"), "Q B ");
}

TEST_F(InputTest, CancelPutsSavedLinesBack) {
  input_.grid(*toy_, lines(), "append");
  cell(0, "Amount", "1");
  EXPECT_TRUE(click("btnOK").ok);
  toy_ = &app_.open("TfrmToy");
  cell(0, "Amount", "2");
  input_.grid(*toy_, lines(), "append");
  cell(1, "Amount", "3");
  input_.grid(*toy_, lines(), "up");
  EXPECT_EQ(stored("ToyLine", "Amount"), "2 3 ") << "lines are saved as they are left";
  EXPECT_TRUE(click("btnCancel").ok);
  EXPECT_EQ(stored("ToyLine", "Amount"), "1 ");
}

TEST_F(InputTest, CodesResolveExactlyFirstAndThenWithoutCase) {
  input_.grid(*toy_, lines(), "append");
  for (const auto& [typed, shown] : {std::pair("nut", "nut"), std::pair("Nut", "Nut"), std::pair("BOLT", "bolt")}) {
    EXPECT_TRUE(cell(0, "Part", typed).ok);
    EXPECT_EQ(toy_->target()->binding()->text(), shown);
  }
  EXPECT_EQ(cell(0, "Part", "NUT").error, "There is no such part") << "two differ in case";
  EXPECT_EQ(toy_->typed(), "NUT");
  EXPECT_TRUE(cell(0, "Part", "").ok);
  EXPECT_TRUE(toy_->target()->binding()->data().isNull());
}

TEST_F(InputTest, EnterWalksTheCellsAndAddsLinesEscUndoesThem) {
  input_.focus(*toy_, lines());
  EXPECT_TRUE(key("Insert").ok);
  EXPECT_EQ(focus(), "grdToyLine.Part");
  EXPECT_TRUE(key("Enter").ok);
  EXPECT_EQ(focus(), "grdToyLine.Amount");
  input_.type(*toy_, "1.5");
  EXPECT_TRUE(key("Enter").ok);
  EXPECT_EQ(shownLines(), " 1.50|[ ]");
  EXPECT_EQ(focus(), "grdToyLine.Part");
  EXPECT_TRUE(key("Right").ok);
  EXPECT_EQ(focus(), "grdToyLine.Amount");
  EXPECT_TRUE(key("Enter").ok) << "an untouched new line is not left behind";
  EXPECT_EQ(shownLines(), " 1.50|[ ]");
  EXPECT_TRUE(key("Home").ok);
  person_.modals = {[this](Screen& pick) { input_.key(pick, "Enter"); }};
  person_.answers = {Button::yes};
  EXPECT_TRUE(input_.keys(*toy_, "nu").ok) << "a character opens the picker with it";
  EXPECT_EQ(shownLines(), " 1.50|[nut ]");
  person_.takeHeard();
  EXPECT_FALSE(key("Up").ok) << "the line is refused and keeps the person";
  EXPECT_EQ(person_.takeHeard(), "error: An amount is missing");
  EXPECT_EQ(focus(), "grdToyLine.Amount");
  input_.type(*toy_, "9");
  EXPECT_TRUE(key("Esc").ok);
  EXPECT_EQ(shownLines(), " 1.50|[nut ]") << "the field is undone";
  EXPECT_TRUE(key("Esc").ok);
  EXPECT_EQ(shownLines(), "[ 1.50]") << "then the line";
  EXPECT_TRUE(key("Delete").ok);
  EXPECT_EQ(shownLines(), "");
  set("editCode", "C");
  person_.answers = {Button::cancel};
  EXPECT_TRUE(key("Esc").aborted) << "then it asks about the screen";
}

TEST_F(InputTest, AScreenOpensAtThePageThatIsAskedFor) {
  app_.open("TfrmToy", {.page = "Rest"});
  EXPECT_EQ(control("pagAll").page, 1);
  EXPECT_EQ(focus(), "editTotal");
  app_.open("TfrmToy", {.page = "Head"});
  EXPECT_EQ(control("pagAll").page, 0);
  EXPECT_EQ(focus(), "editCode");
}

TEST_F(InputTest, KeysReachEverything) {
  EXPECT_TRUE(key("ctrl+f").ok);
  EXPECT_EQ(person_.takeHeard(), "information: Found");
  EXPECT_TRUE(key("Tab").ok);
  EXPECT_EQ(focus(), "editDay");
  EXPECT_TRUE(key("Shift+Tab").ok);
  EXPECT_TRUE(key("Shift+Tab").ok);
  EXPECT_EQ(focus(), "btnCancel") << "a disabled button is left out";
  EXPECT_TRUE(key("Alt+D").ok);
  EXPECT_EQ(focus(), "editDay");
  EXPECT_TRUE(key("5").ok);
  EXPECT_TRUE(key("x").ok);
  EXPECT_EQ(toy_->typed(), "5x");
  EXPECT_TRUE(key("Backspace").ok);
  EXPECT_EQ(toy_->typed(), "5");
  EXPECT_TRUE(key("Esc").ok);
  EXPECT_TRUE(key("Alt+R").ok);
  EXPECT_EQ(control("pagAll").page, 1);
  input_.focus(*toy_, control("chkDone"));
  EXPECT_TRUE(key("Space").ok);
  EXPECT_EQ(value("chkDone"), "Yes");
  EXPECT_TRUE(key("F5").ok);
  EXPECT_EQ(value("chkDone"), "No") << "read again";
  for (const char* none : {"F2", "F13", "Alt+Z", "Alt+", "", "Ctrl+", "Insert"}) EXPECT_THROW(key(none), Error) << none;
  EXPECT_TRUE(key("Enter").ok);
  EXPECT_FALSE(app_.find("frmToy"));
}

TEST_F(InputTest, AModalScreenIsServedFirst) {
  set("editDay", "5/6/26");
  person_.answers = {Button::no, Button::yes};
  person_.modals = {[this](Screen& pick) {
    EXPECT_THROW(set("editCode", "C"), Error);
    EXPECT_THROW(click("btnMore"), Error);
    EXPECT_TRUE(input_.key(pick, "Enter").aborted);
    EXPECT_TRUE(pick.visible());
    EXPECT_TRUE(input_.key(pick, "Enter").ok);
  }};
  EXPECT_EQ(click("btnMore").error, "There is no more");
  EXPECT_EQ(person_.takeHeard(),
            "modal: frmToyPick\nconfirmation: Take bolt?\nconfirmation: Take bolt?\nerror: There is no more");
  person_.modals = {[this](Screen& pick) { input_.close(pick); }};
  EXPECT_TRUE(click("btnMore").aborted);
  EXPECT_TRUE(set("editCode", "C").ok);
}

TEST_F(InputTest, AScriptThatBreaksOffLeavesTheProgramUsable) {
  set("editDay", "5/6/26");
  EXPECT_THROW(click("btnMore"), std::logic_error);  // nobody serves the modal screen
  EXPECT_EQ(app_.modal(), nullptr);
  EXPECT_TRUE(set("editCode", "C").ok);
}

class TfrmTwice final : public Screen {
 public:
  using Screen::Screen;
  std::string title() override { return "Twice"; }
  static inline bool named = true;

 private:
  void build(Layout& l) override {
    const CodeOf number{.table = "ToyPart", .idField = "ID", .shownField = "ID", .unknown = "?"};
    const CodeOf name{.table = "ToyPart", .idField = "ID", .shownField = "Code", .unknown = "?"};
    Control& left = l.group("Numbers", l.code("No.:", tblToyLine["PartID"], number));
    Control& right = l.group("Names", l.code("Name:", tblToyLine["PartID"], name));
    l.pages(left, right);
    Control& again = l.check("Again", tblToyDoc["Done"]);
    l.splitter(again, named ? l.check("Again", tblToyDoc["Done"]).named("chkAgain") : l.check("", tblToyDoc["Done"]));
  }

  Table tblToyDoc{*this, "ToyDoc"};
  Table tblToyLine{*this, "ToyLine"};
};

TEST_F(InputTest, ANameStandsOnceAndAScreenOpensOnThePageAskedFor) {
  registry_.add({.className = "TfrmTwice", .make = [](App& app) { return std::make_unique<TfrmTwice>(app); }});
  Screen& twice = app_.open("TfrmTwice", {.page = "names"});
  ASSERT_NE(twice.find("editPart"), nullptr);
  EXPECT_EQ(twice.focused(), twice.find("editCode")) << "the second on one id";
  EXPECT_EQ(twice.find("pagPages")->page, 1);
  EXPECT_THROW(app_.open("TfrmTwice", {.page = "Colours"}), Error);
  app_.dismiss(twice);
  TfrmTwice::named = false;
  EXPECT_THROW(app_.open("TfrmTwice"), Error);
}

TEST_F(InputTest, WindowsThatWaitForOneAnotherAreRefusedBeyondALimit) {
  TfrmTwice::named = true;
  registry_.add(
      {.className = "TfrmDeep", .many = true, .make = [](App& app) { return std::make_unique<TfrmTwice>(app); }});
  int depth = 0, refused = 0;
  std::function<void(Screen&)> deeper = [&](Screen& screen) {
    ++depth;
    person_.modals = {deeper};
    try {
      app_.runModal("TfrmDeep");
    } catch (const Error&) {
      ++refused;
    }
    app_.dismiss(screen);
  };
  person_.modals = {deeper};
  app_.runModal("TfrmDeep");
  EXPECT_EQ(depth, 20);
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(app_.modal(), nullptr);
  person_.modals = {[this](Screen& screen) { app_.dismiss(screen); }};
  EXPECT_NO_THROW(app_.runModal("TfrmDeep"));
}

TEST_F(InputTest, NobodyIsAskedWithinATransaction) {
  const auto ask = [&] { transact(process_.database(), {"ToyDoc"}, [&] { app_.runModal("TfrmToyPick"); }); };
  EXPECT_THROW(app_.run(*toy_, "ask", ask), std::logic_error);
  EXPECT_FALSE(process_.database().inTransaction());
  EXPECT_EQ(app_.modal(), nullptr);
}

// A command that opens another company stands in its own screen when the company ends.
TEST_F(InputTest, TheCompanyMayEndInsideACommand) {
  set("editCode", "C");
  app_.open("TfrmToyPick");
  EXPECT_TRUE(app_.run(*toy_, "change company", [&] { app_.dropScreens(); }).ok);
  EXPECT_EQ(app_.find("frmToyPick"), nullptr);
  ASSERT_EQ(app_.find("frmToy"), toy_);
  EXPECT_FALSE(toy_->tables().front()->isOpen());
  EXPECT_EQ(stored("ToyDoc", "Code"), "A B ") << "what was edited is undone";
  app_.dismiss(*toy_);
  EXPECT_EQ(app_.find("frmToy"), nullptr);
}

class TfrmStubborn final : public Screen {
 public:
  using Screen::Screen;
  std::string title() override { return "Stubborn"; }

 private:
  void build(Layout& l) override { l.field("Code:", tblToyDoc["Code"]); }
  void closed() override { throw Error("This has no end"); }

  Table tblToyDoc{*this, "ToyDoc"};
};

TEST_F(InputTest, WhatGoesWrongAtAnEndIsToldWhenAllHasEnded) {
  registry_.add({.className = "TfrmStubborn", .make = [](App& app) { return std::make_unique<TfrmStubborn>(app); }});
  EXPECT_EQ(input_.close(app_.open("TfrmStubborn")).error, "This has no end");
  EXPECT_EQ(person_.takeHeard(), "error: This has no end");
  EXPECT_EQ(app_.find("frmStubborn"), nullptr);
  app_.open("TfrmStubborn");
  set("editCode", "C");
  EXPECT_THROW(app_.dropScreens(), Error);
  EXPECT_TRUE(app_.screens().empty());
  store::Cursor doc(process_.database(), "ToyDoc");
  doc.setExclusive(true);
  doc.open();
}

}  // namespace
}  // namespace quillon::form
