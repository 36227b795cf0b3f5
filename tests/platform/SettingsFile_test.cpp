#include "platform/SettingsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>

#include "base/Errors.h"
#include "base/Text.h"
#include "platform/SettingsText.h"
#include "support/ChildProcess.h"
#include "support/SeededRandom.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"

namespace quillon::platform {
namespace {

using sim::readFile;
using sim::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;

class Settings : public testing::Test {
 protected:
  sim::TempFolder folder_;
  std::string path_ = folder_.path() + "/Quillon.ini";
  SettingsFile file_{path_};
};

TEST_F(Settings, WhatAPersonWroteStaysAsItStands) {
  writeFile(path_,
            "; mine\r\n[General]\r\n  Database = /a;b  \r\nnonsense\r\n[Companies\r\nSystem=Sales\r\n\r\n"
            "[Companies]\r\n# none yet\r\n\r\n[general]\r\nToolbarText=maybe");
  EXPECT_EQ(file_.text("General", "database"), "/a;b");
  EXPECT_TRUE(file_.flag("General", "ToolbarText", true)) << "what is neither yes nor no is the fallback";
  file_.setText("GENERAL", "DATABASE", "/c");
  file_.setText("Companies", "Acme", "/acme");
  file_.setNumber("General", "LogoTop", -3);
  file_.remove("General", "System");
  file_.setFlag("General", "ToolbarText", false);
  file_.setText("Quote", "Quote", " Offer");
  EXPECT_EQ(readFile(path_),
            "; mine\r\n[General]\r\n  Database = /c\r\nnonsense\r\n[Companies\r\nLogoTop=-3\r\n\r\n"
            "[Companies]\r\n# none yet\r\nAcme=/acme\r\n\r\n[general]\r\nToolbarText=0\r\n\r\n"
            "[Quote]\r\nQuote=\" Offer\"\r\n");
  EXPECT_EQ(file_.number("General", "LogoTop", 7), -3);
  EXPECT_EQ(file_.number("General", "Database", 7), 7);
  EXPECT_THAT(file_.keys("General"), ElementsAre("Database", "LogoTop", "ToolbarText"));
  EXPECT_THROW(file_.setText("a]b", "k", "v"), Error);
}

// Whatever a key and a value hold, they come back from the text, and what is not touched keeps its place.
TEST(SettingsText, EveryKeyAndValueComesBack) {
  sim::SeededRandom random(20261);
  const std::string pieces[] = {"=",  ";",  "[", "]", "#",  "\"", "\\", " ", "\t",
                                "\n", "\r", "n", "a", "A1", "é",  "%",  "'", std::string(1, '\0')};
  const auto anyText = [&] {
    std::string text;
    for (auto count = random.below(6); count > 0; --count) text += pieces[random.below(std::size(pieces))];
    return text;
  };
  const std::string comment = "; a comment\n";
  std::string contents = comment;
  std::map<std::pair<std::string, std::string>, std::string> model;  // by section and folded key
  for (int step = 0; step < 3000; ++step) {
    const std::string section = random.oneIn(2) ? "One" : "Two";
    const std::string key = anyText(), value = anyText();
    SettingsText text(contents);
    if (random.oneIn(4)) {
      text.remove(section, key);
      model.erase({section, foldCase(key)});
    } else {
      text.set(section, key, value);
      model[{section, foldCase(key)}] = value;
    }
    contents = text.contents();
  }
  const SettingsText text(contents);
  std::size_t count = 0;
  for (const char* section : {"One", "Two"}) {
    for (const std::string& key : text.keys(section)) {
      const auto known = model.find({section, foldCase(key)});
      ASSERT_NE(known, model.end()) << key;
      EXPECT_EQ(text.find(section, key), known->second) << key;
      ++count;
    }
  }
  EXPECT_EQ(count, model.size());
  EXPECT_TRUE(contents.starts_with(comment));
}

TEST_F(Settings, ProcessesThatChangeDifferentKeysLoseNone) {
  constexpr int kProcesses = 4, kKeys = 25;
  std::vector<std::unique_ptr<sim::ChildProcess>> children;
  for (int who = 0; who < kProcesses; ++who) {
    children.push_back(std::make_unique<sim::ChildProcess>([this, who](const sim::ChildPipe&) {
      for (int i = 0; i < kKeys; ++i)
        SettingsFile(path_).setNumber("Companies", std::to_string(who) + "/" + std::to_string(i), i);
    }));
  }
  for (auto& child : children) EXPECT_TRUE(child->finish([](const auto& said) { ADD_FAILURE() << said.text; }));
  EXPECT_EQ(file_.keys("Companies").size(), std::size_t{kProcesses * kKeys});
}

TEST_F(Settings, AReaderAndAKillFindTheOldFileOrTheNewOne) {
  file_.setText("A", "First", "0");
  file_.setText("B", "Second", "0");
  for (int round = 0; round < 15; ++round) {
    sim::ChildProcess writer([this](const sim::ChildPipe&) {
      for (int i = 0;; ++i) {
        file_.change([&](SettingsText& text) {
          text.set("A", "First", std::to_string(i) + std::string(3000, 'x'));
          text.set("B", "Second", std::to_string(i) + std::string(3000, 'x'));
        });
      }
    });
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(10 + round);
    while (std::chrono::steady_clock::now() < end) {
      const SettingsText seen(readFile(path_));
      ASSERT_EQ(seen.find("A", "First"), seen.find("B", "Second"));
      ASSERT_TRUE(seen.find("A", "First"));
    }
    writer.kill([](const auto&) {});
    EXPECT_EQ(file_.find("A", "First"), file_.find("B", "Second"));
  }
  file_.setText("A", "First", "after");
  EXPECT_EQ(file_.text("A", "First"), "after");
}

TEST_F(Settings, AChangeThatFailsOrCannotBeWrittenLeavesTheFile) {
  file_.setText("General", "Database", "/a");
  ::chmod(path_.c_str(), 0640);
  EXPECT_THROW(file_.change([](SettingsText& text) {
    text.set("General", "Database", "/b");
    throw Error("no");
  }),
               Error);
  EXPECT_EQ(file_.text("General", "Database"), "/a");

  const std::string link = folder_.path() + "/link.ini";
  std::filesystem::create_symlink(path_, link);
  SettingsFile(link).setText("General", "Database", "/through the link");
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(file_.text("General", "Database"), "/through the link");
  struct stat entry {};
  ASSERT_EQ(::stat(path_.c_str(), &entry), 0);
  EXPECT_EQ(entry.st_mode & 0777, 0640u);

  // A process of its own: the one user whom no mode keeps out becomes another one.
  ::chmod(folder_.path().c_str(), 0555);
  sim::ChildProcess stranger([this](const sim::ChildPipe& pipe) {
    if (::geteuid() == 0 && ::setuid(65534) != 0) return;
    sim::ChildMessage said;
    try {
      SettingsFile(folder_.path() + "/other.ini").setText("General", "Database", "/x");
    } catch (const Error& error) {
      said.setText(error.what());
    }
    pipe.tell(said);
  });
  std::string refusal;
  stranger.finish([&](const sim::ChildMessage& said) { refusal = said.text; });
  ::chmod(folder_.path().c_str(), 0755);
  EXPECT_THAT(refusal, HasSubstr("Could not save the settings in '" + folder_.path() + "/other.ini"));
}

}  // namespace
}  // namespace quillon::platform
