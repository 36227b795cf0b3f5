#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "platform/GivenDesktop.h"
#include "platform/LinuxDesktop.h"
#include "support/ScopedVariable.h"
#include "support/SimDesktop.h"
#include "support/TextFile.h"

namespace quillon::platform {
namespace {

namespace fs = std::filesystem;

// Two places that are 26 hours apart never have the same date.
TEST(LinuxDesktop, TellsTheTimeOfItsPlace) {
  const auto hoursAt = [](const char* zone) {
    const sim::ScopedVariable variable("TZ", zone);
    const DateTime now = LinuxDesktop().now();
    EXPECT_TRUE(now.time.valid());
    return now.date.days() * 24.0 + now.time.milliseconds / 3.6e6;
  };
  const double west = hoursAt("WEST+12");
  EXPECT_NEAR(hoursAt("EAST-14") - west, 26, 0.01);
  EXPECT_NEAR(west, static_cast<double>(::time(nullptr)) / 3600 - 12, 0.01);
}

TEST(GivenDesktop, AnswersWhatWasGivenAndAsksTheDesktopForTheRest) {
  sim::SimDesktop desktop;
  const std::string folder = desktop.settingsFolder();
  EXPECT_TRUE(fs::is_directory(desktop.publicFolder()));
  EXPECT_TRUE(fs::is_directory(desktop.scratchFolder()));
  EXPECT_EQ(desktop.today(), Date(2026, 3, 17));

  GivenDesktop given(desktop, {.folder = {},
                               .country = "United States",
                               .today = {},
                               .dateFormat = "dd-MMM-yyyy",
                               .printer = Printer{},
                               .printTo = folder + "/jobs"});
  EXPECT_EQ(given.settingsFolder(), folder);
  EXPECT_EQ(given.countryName(), "United States");
  EXPECT_EQ(given.shortDateFormat().pattern(), "dd-MM-yyyy");
  EXPECT_EQ(given.now(), desktop.now());
  EXPECT_FALSE(given.defaultPrinter());
  EXPECT_EQ(desktop.defaultPrinter()->name, "Office");
  EXPECT_EQ(GivenDesktop(desktop, {.paper = Paper::a4}).defaultPrinter()->paper, Paper::a4);

  sim::writeFile(folder + "/a.pdf", "%PDF one");
  int pauses = 0;
  PrintJob job{
      .file = folder + "/a.pdf", .title = "A/P \xC3\xA9", .printer = {}, .fromPage = 2, .toPage = 3, .copies = 2};
  given.print(job, [&] { ++pauses; });
  given.print({.file = folder + "/a.pdf", .title = "B", .printer = {}}, {});
  EXPECT_EQ(pauses, 1);
  EXPECT_EQ(sim::readFile(folder + "/jobs/0001 A-P \xC3\xA9 pages 2-3.pdf"), "%PDF one");
  EXPECT_TRUE(fs::exists(folder + "/jobs/0002 A-P \xC3\xA9 pages 2-3.pdf"));
  EXPECT_TRUE(fs::exists(folder + "/jobs/0003 B pages 1-1.pdf"));
  EXPECT_TRUE(desktop.printed.empty());
}

}  // namespace
}  // namespace quillon::platform
