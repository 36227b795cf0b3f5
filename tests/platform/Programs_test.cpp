// Printing and opening through programs that stand first on the path and write down how they were called.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>

#include "base/Errors.h"
#include "platform/LinuxDesktop.h"
#include "platform/Program.h"
#include "support/Refusal.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"

namespace quillon::platform {
namespace {

using sim::readFile;
using sim::refusalOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Programs : public testing::Test {
 protected:
  // A program that writes its arguments, one a line in <>, and then does this.
  void install(const std::string& name, const std::string& script) const {
    const std::string path = folder_.path() + "/" + name;
    sim::writeFile(path, "#!/bin/sh\nfor a in \"$@\"; do printf '<%s>\\n' \"$a\"; done >> " + folder_.path() +
                             "/calls\n" + script + "\n");
    ::chmod(path.c_str(), 0755);
  }
  std::string calls() const {
    const std::string path = folder_.path() + "/calls";
    std::string text = readFile(path);
    std::filesystem::remove(path);
    return text;
  }

  sim::TempFolder folder_;
  sim::ScopedVariable path_{"PATH", folder_.path()};
  LinuxDesktop desktop_;
};

TEST_F(Programs, ThePrinterAndItsPaper) {
  EXPECT_FALSE(desktop_.defaultPrinter()) << "no print service";
  EXPECT_THAT(desktop_.printerNames(), IsEmpty());
  install("lpstat", "case $1 in -d) echo 'no system default destination';; esac");
  EXPECT_FALSE(desktop_.defaultPrinter());

  install("lpstat",
          "[ \"$LC_ALL\" = C.UTF-8 ] || exit 1\n"
          "case $1 in -d) echo 'system default destination: Office/draft';; -e) printf 'Shop\\nOffice\\n';; esac");
  const struct {
    const char* options;
    const char* choices;
    Paper paper;
  } cases[] = {
      {"copies=1 media=iso_a4_210x297mm", "PageSize/Media Size: *Letter A4", Paper::a4},
      {"media=na_letter_8.5x11in sides=one-sided", "PageSize/Media Size: Letter *A4", Paper::other},
      {"copies=1", "Duplex/Sides: *A4\nPageSize/Media Size: Letter *A4.Fullbleed", Paper::a4},
      {"PageSize=A4", "", Paper::a4},
      {"copies=1", "PageSize/Media Size: Letter *A4Extra A4", Paper::other},
      {"copies=1", "", Paper::other},
      {"media=A5", "", Paper::other},
  };
  for (const auto& c : cases) {
    install("lpoptions",
            "if [ \"$3\" = -l ]; then echo '" + std::string(c.choices) + "'; else echo '" + c.options + "'; fi");
    const auto printer = desktop_.defaultPrinter();
    ASSERT_TRUE(printer);
    EXPECT_EQ(printer->name, "Office/draft");
    EXPECT_EQ(printer->paper, c.paper) << c.options << " / " << c.choices;
  }
  EXPECT_THAT(desktop_.printerNames(), ElementsAre("Office", "Shop"));
}

TEST_F(Programs, AJobIsSentOnceForEachCopy) {
  const std::string file = folder_.path() + "/a b.pdf";
  PrintJob job{.file = file, .title = "$(x) 'Inv' 7", .printer = "Shop", .fromPage = 2, .toPage = 3, .copies = 2};
  EXPECT_THAT(refusalOf([&] { desktop_.print(job, {}); }), HasSubstr(file));
  sim::writeFile(file, "%PDF");
  EXPECT_THAT(refusalOf([&] { desktop_.print(job, {}); }), HasSubstr("'lp', which is not installed"));

  install("lp", "");
  std::string between;
  desktop_.print(job, [&] { between += calls(); });
  const std::string sent = "<-d>\n<Shop>\n<-P>\n<2-3>\n<-n>\n<1>\n<-t>\n<$(x) 'Inv' 7>\n<" + file + ">\n";
  EXPECT_EQ(between, sent) << "one copy before the pause";
  EXPECT_EQ(calls(), sent) << "and one behind it";

  EXPECT_THROW(desktop_.print(job, [] { throw Abort(); }), Abort);
  EXPECT_EQ(calls(), sent) << "the other copy is left out";

  desktop_.print({.file = file, .title = "", .printer = ""}, {});
  EXPECT_EQ(calls(), "<-P>\n<1-1>\n<-n>\n<1>\n<" + file + ">\n");
  install("lp", "echo 'lp: Error - The printer is on fire.' >&2; exit 1");
  EXPECT_THAT(refusalOf([&] { desktop_.print(job, {}); }), HasSubstr("on fire"));
  calls();
  job.toPage = 1;
  EXPECT_NE(refusalOf([&] { desktop_.print(job, {}); }), "");
  job = {.file = file, .title = "t", .printer = "", .copies = 0};
  EXPECT_NE(refusalOf([&] { desktop_.print(job, {}); }), "");
  EXPECT_EQ(calls(), "");
}

TEST_F(Programs, FilesAndLinksAreOpenedByTheDesktop) {
  const std::string file = folder_.path() + "/-a; rm b.pdf";
  sim::writeFile(file, "%PDF");
  EXPECT_THAT(refusalOf([&] { desktop_.openOutside(file); }), HasSubstr("'xdg-open' is needed"));
  install("xdg-open", "");
  for (const std::string& target : {file, std::string("https://a.example/?b=c&d"), std::string("MAILTO:a@b.example")}) {
    desktop_.openOutside(target);
    EXPECT_EQ(calls(), "<" + target + ">\n");
  }
  for (const char* target : {"ftp://a.example", "javascript:x", "/no/such/file", "", "http://a b", "-h"})
    EXPECT_NE(refusalOf([&] { desktop_.openOutside(target); }), "") << target;
  EXPECT_EQ(calls(), "");
  std::string longest = "mailto:" + std::string(131071 - 7, 'x');
  desktop_.openOutside(longest);
  EXPECT_EQ(calls(), "<" + longest + ">\n");
  EXPECT_THAT(refusalOf([&] { desktop_.openOutside(longest += 'x'); }), HasSubstr("at most 131071"));

  install("xdg-open", "exit 3");
  EXPECT_THAT(refusalOf([&] { desktop_.openOutside(file); }), HasSubstr("could not be opened"));

  // One that stays, as a browser started by it does, holds nobody up and outlives the call.
  const std::string go = folder_.path() + "/go", done = folder_.path() + "/done";
  install("xdg-open", "until [ -e " + go + " ]; do /bin/sleep 0.05; done; : > " + done);
  desktop_.openOutside(file);
  EXPECT_FALSE(std::filesystem::exists(done));
  sim::writeFile(go, "");
  for (int i = 0; i < 300 && !std::filesystem::exists(done); ++i) ::usleep(10'000);
  EXPECT_TRUE(std::filesystem::exists(done));
}

TEST_F(Programs, OneThatDoesNotAnswerIsEndedWithItsChildren) {
  install("slow", "(/bin/sleep 1; : > " + folder_.path() + "/late) & wait");
  EXPECT_THAT(refusalOf([] { run({"slow"}, std::chrono::milliseconds(200)); }), HasSubstr("'slow' does not answer"));
  ::usleep(1'200'000);
  EXPECT_FALSE(std::filesystem::exists(folder_.path() + "/late"));
}

}  // namespace
}  // namespace quillon::platform
