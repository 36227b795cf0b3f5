// A wizard's way through its pages: told by the page on view, the focus, the button that Enter presses, and what is
// heard.
#include "form/WizardScreen.h"

#include <gtest/gtest.h>

#include "form/Input.h"
#include "support/ScriptedPerson.h"
#include "support/ToyScreens.h"

namespace quillon::form {
namespace {

class WizardTest : public testing::Test {
 protected:
  // Works the wizard until it is closed, in a modal run of it; what came of it.
  bool play(const std::function<void()>& hands) {
    person_.modals.push_back([this, hands](Screen& screen) {
      wizard_ = &static_cast<sim::TfrmToyWizard&>(screen);
      hands();
      if (screen.visible()) click("btnCancel");
    });
    return app_.runModal("TfrmToyWizard").confirmed;
  }
  Ended click(const char* name) { return input_.click(*wizard_, *wizard_->find(name)); }
  Ended key(const char* name) { return input_.key(*wizard_, name); }
  Ended set(const char* name, const char* text) { return input_.set(*wizard_, *wizard_->find(name), text); }
  // "Two editSecond btnNext": the page, the focus, the default button.
  std::string stand() {
    std::string text;
    for (const auto& page : wizard_->find("stpPages")->children())
      if (wizard_->isVisible(*page)) text += page->caption();
    text += " " + wizard_->focused()->name();
    for (const char* name : {"btnBack", "btnNext", "btnFinish", "btnCancel"})
      if (wizard_->find(name)->isDefault()) text += std::string(" ") + name;
    return text;
  }

  sim::ScriptedPerson person_;
  Registry registry_ = [] {
    Registry registry;
    sim::registerToys(registry);
    return registry;
  }();
  App app_{person_,
           registry_,
           {.date = ShortDateFormat("MM/dd/yyyy"), .numbers = {}, .today = [] { return Date(2026, 3, 5); }},
           "Toys"};
  Input input_{app_};
  sim::TfrmToyWizard* wizard_ = nullptr;
};

TEST_F(WizardTest, GoesThroughItsPagesAndBackAndFinishesOnTheLast) {
  EXPECT_TRUE(play([&] {
    EXPECT_EQ(stand(), "One editFirst btnNext");
    EXPECT_THROW(click("btnBack"), Error) << "the first page";
    EXPECT_THROW(click("btnFinish"), Error) << "not the last page";
    set("editFirst", "a");
    EXPECT_TRUE(key("Enter").ok);
    EXPECT_EQ(stand(), "Two editSecond btnNext");
    EXPECT_EQ(wizard_->second.value.toText(), "from a");
    set("editSecond", "b");
    EXPECT_TRUE(key("Enter").ok);
    EXPECT_EQ(stand(), "Three chkAll btnFinish");
    EXPECT_THROW(click("btnNext"), Error) << "the last page";
    EXPECT_TRUE(click("btnBack").ok);
    EXPECT_EQ(stand(), "Two editSecond btnNext");
    EXPECT_EQ(wizard_->second.value.toText(), "b") << "going back enters no page";
    click("btnNext");
    EXPECT_TRUE(key("Enter").ok);
    EXPECT_EQ(wizard_->done, "done with b");
  }));
}

TEST_F(WizardTest, APageRefusesToBeLeftAndFinishAsksAllOfThem) {
  EXPECT_FALSE(play([&] {
    set("editFirst", "bad");
    EXPECT_EQ(click("btnNext").error, "This is bad");
    EXPECT_EQ(stand(), "One editFirst btnNext");
    EXPECT_FALSE(set("editFirst", "longer than nine").ok);
    EXPECT_FALSE(click("btnNext").ok) << "with a text that the field refuses";
    EXPECT_EQ(stand(), "One editFirst btnNext");
    key("Esc");
    set("editFirst", "full");
    click("btnNext");
    click("btnNext");
    wizard_->second.reset();
    EXPECT_EQ(click("btnFinish").error, "This is missing");
    EXPECT_EQ(stand(), "Two editSecond btnNext") << "the page that refuses comes on view";
    set("editSecond", "x");
    click("btnNext");
    EXPECT_EQ(click("btnFinish").error, "The disk is full");
    EXPECT_EQ(stand(), "Three chkAll btnFinish");
    EXPECT_EQ(wizard_->done, "");
  }));
}

TEST_F(WizardTest, PassesOverPagesBothWaysAndBeginsAnewWhenItIsAskedForAgain) {
  EXPECT_TRUE(play([&] {
    click("btnNext");
    EXPECT_EQ(stand(), "Three chkAll btnFinish");
    click("btnBack");
    EXPECT_EQ(stand(), "One editFirst btnNext");
    click("btnNext");
    click("btnFinish");
    EXPECT_EQ(wizard_->done, "done with null") << "what is passed over is not asked";
  }));
  EXPECT_FALSE(play([&] {
    EXPECT_EQ(stand(), "One editFirst btnNext");
    EXPECT_TRUE(key("Esc").ok);
    EXPECT_FALSE(wizard_->visible());
  }));
  EXPECT_FALSE(play([&] {
    set("editFirst", "bad");
    EXPECT_TRUE(click("btnCancel").ok);
  }));
}

}  // namespace
}  // namespace quillon::form
