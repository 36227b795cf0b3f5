// The printer and the modem, as the program asks for them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <thread>

#include "form/Input.h"
#include "platform/Descriptor.h"
#include "shell/Printer.h"
#include "shell/Session.h"
#include "support/ScriptedPerson.h"
#include "support/SimDesktop.h"
#include "support/SimProcess.h"

namespace quillon::shell {
namespace {

struct Ground {
  explicit Ground(platform::Desktop& desktop)
      : session(store::Environment{*files, clock, "BEN", "PC", 99}, person, desktop), input(session.app()) {
    registerScreens(session);
  }
  form::Screen& dialer() {
    return session.app().open("TfrmDialer", {.values = {{"number", store::Value("555-1234")}}});
  }
  // What was told, and then the status.
  std::string click(const char* button) {
    form::Screen& screen = dialer();
    input.click(screen, *screen.find(button));
    return person.takeHeard() + "|" + screen.find("lblStatus")->caption();
  }

  sim::SimDisk disk;
  sim::SimClock clock;
  std::unique_ptr<store::FileSystem> files = disk.process();
  sim::ScriptedPerson person;
  Session session;
  form::Input input;
};

TEST(Devices, APrinterThatTheDesktopDoesNotReportIsAskedForUntilThePersonHasOne) {
  sim::SimDesktop desktop;
  Ground ground(desktop);
  EXPECT_TRUE(printerInstalled(ground.session));
  EXPECT_EQ(ground.person.takeHeard(), "");
  desktop.given().printer->name.clear();
  const std::string question = "warning: No printer driver was detected. Do you have a printer installed?";
  ground.person.answers = {form::Button::no, form::Button::yes};
  EXPECT_FALSE(printerInstalled(ground.session));
  EXPECT_EQ(ground.person.takeHeard(), question);
  EXPECT_TRUE(printerInstalled(ground.session));
  EXPECT_EQ(ground.person.takeHeard(), question);
  EXPECT_TRUE(printerInstalled(ground.session));
  EXPECT_EQ(ground.person.takeHeard(), "");
  EXPECT_TRUE(ground.session.settings().flag("General", "PrinterInstalled", false));
}

TEST(Devices, TheDialerTellsWhatTheModemSays) {
  sim::SimDesktop desktop;
  Ground ground(desktop);
  const struct {
    std::deque<std::string> answers;
    std::string told;
    bool connected;
  } cases[] = {
      {{"OK"}, "|OK", true},
      {{"ATDT555-1234"}, "|Dialing 555-1234", true},
      {{"ATDT555-1234", "CONNECT 9600"}, "|CONNECT 9600", true},
      {{"ATDT555-1234", "no carrier"}, "error: The modem on port 'com1' could not dial: no carrier|", false},
      {{},
       "error: The modem on port 'com1' does not answer.\rPlease see that it is connected and switched on. The port is "
       "DialerPort in the settings.|",
       false}};
  for (const auto& some : cases) {
    desktop.answers = some.answers;
    desktop.dialled.clear();
    EXPECT_EQ(ground.click("btnDial"), some.told);
    EXPECT_EQ(desktop.dialled, std::vector<std::string>{"ATDT555-1234\r"});
    EXPECT_EQ(ground.dialer().find("btnHangUp")->enabled(), some.connected);
  }
  desktop.answers = {"OK", "OK"};
  ground.click("btnDial");
  EXPECT_EQ(ground.click("btnHangUp"), "|Hung up");
  EXPECT_EQ(desktop.dialled.back(), "ATH\r");
  form::Screen& dialer = ground.dialer();
  const std::size_t before = desktop.dialled.size();
  for (const char* number : {"", " ", "555\r+++ATZ"}) {
    ground.input.set(dialer, *dialer.find("editNumber"), number);
    EXPECT_FALSE(ground.input.click(dialer, *dialer.find("btnDial")).ok);
    EXPECT_EQ(dialer.focused(), dialer.find("editNumber"));
  }
  EXPECT_EQ(desktop.dialled.size(), before);
}

TEST(Devices, TheDialerSpeaksToTheDeviceOfTheSettings) {
  const platform::Descriptor modem(::posix_openpt(O_RDWR | O_NOCTTY));
  ASSERT_EQ(::grantpt(modem.get()), 0);
  ASSERT_EQ(::unlockpt(modem.get()), 0);
  const sim::TempFolder folder;
  platform::LinuxDesktop machine;
  platform::Given given;
  given.folder = folder.path();
  platform::GivenDesktop desktop(machine, given);
  Ground ground(desktop);
  ground.session.settings().setText("General", "DialerPort", folder.path() + "/none");
  EXPECT_TRUE(ground.click("btnDial").starts_with("error: Could not open port '" + folder.path() + "/none'"));

  ground.session.settings().setText("General", "DialerPort", ::ptsname(modem.get()));
  std::string heard;
  std::thread answering([&] {
    for (char c = 0; c != '\r' && ::read(modem.get(), &c, 1) == 1;) heard += c;
    const std::string answer = heard + "\r\n\r\nOK\r\n";
    EXPECT_EQ(::write(modem.get(), answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
  });
  EXPECT_EQ(ground.click("btnDial"), "|OK");
  answering.join();
  EXPECT_EQ(heard, "ATDT555-1234\r");
}

}  // namespace
}  // namespace quillon::shell
