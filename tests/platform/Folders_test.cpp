#include "platform/Folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>

#include "base/Errors.h"
#include "platform/HelpPages.h"
#include "support/Refusal.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"

namespace quillon::platform {
namespace {

namespace fs = std::filesystem;
using sim::refusalOf;
using sim::ScopedVariable;

const std::string kLevels = "/Marrowfield Software/Quillon Enterprise Accounting with Manufacturing/2017.6";

unsigned modeOf(const std::string& path) {
  struct stat entry {};
  return ::stat(path.c_str(), &entry) == 0 ? entry.st_mode & 0777 : 0;
}

class OwnFolders : public testing::Test {
 protected:
  sim::TempFolder temp_;
  std::string home_ = temp_.path() + "/home";
  ScopedVariable homeVariable_{"HOME", home_};
  ScopedVariable config_{"XDG_CONFIG_HOME", std::nullopt};
  ScopedVariable scratch_{"TMPDIR", temp_.path()};
};

TEST_F(OwnFolders, AreFoundAndMade) {
  EXPECT_EQ(settingsFolder(), home_ + "/.config" + kLevels);
  EXPECT_EQ(publicFolder(), home_ + "/Public" + kLevels);
  EXPECT_TRUE(fs::is_directory(publicFolder()));
  EXPECT_EQ(modeOf(settingsFolder()), 0700u);
  const ScopedVariable config("XDG_CONFIG_HOME", temp_.path() + "/conf/");
  EXPECT_EQ(settingsFolder(), temp_.path() + "/conf" + kLevels);
  for (const auto& [line, expected] :
       std::map<std::string, std::string>{{"\"$HOME/Shared \\\"x\\\"\"", home_ + "/Shared \"x\""},
                                          {"\"" + temp_.path() + "/all/\"", temp_.path() + "/all"},
                                          {"\"$HOME/\"", home_ + "/Public"},  // switched off
                                          {"\"$HOMER/x\"", home_ + "/Public"},
                                          {"relative", home_ + "/Public"}}) {
    sim::writeFile(temp_.path() + "/conf/user-dirs.dirs",
                   "# XDG_PUBLICSHARE_DIR=\"/no\"\nXDG_DESKTOP_DIR=\"/d\"\nXDG_PUBLICSHARE_DIR=" + line + "\n");
    EXPECT_EQ(publicFolder(), expected + kLevels);
  }
}

TEST_F(OwnFolders, TheLevelThatCannotBeMadeIsNamed) {
  fs::create_directories(home_ + "/.config");
  sim::writeFile(home_ + "/.config/Marrowfield Software", "a file in the way");
  EXPECT_EQ(refusalOf([] { settingsFolder(); }), "Could not create folder " + home_ + "/.config/Marrowfield Software");
}

TEST_F(OwnFolders, ScratchIsNobodyElses) {
  const std::string own = temp_.path() + "/quillon-" + std::to_string(::geteuid());
  fs::create_directory(own);
  fs::permissions(own, fs::perms::all);
  EXPECT_EQ(scratchFolder(), own + kLevels + "/Priv");
  EXPECT_EQ(modeOf(own), 0700u);

  fs::remove_all(own);
  fs::create_directory(temp_.path() + "/elsewhere");
  fs::create_directory_symlink(temp_.path() + "/elsewhere", own);
  EXPECT_THAT(refusalOf([] { scratchFolder(); }), testing::StartsWith("Could not create folder " + own));
  EXPECT_TRUE(fs::is_empty(temp_.path() + "/elsewhere"));

  fs::remove(own);
  fs::create_directory(own);
  if (::geteuid() == 0 && ::chown(own.c_str(), 65534, 65534) == 0) {
    EXPECT_THAT(refusalOf([] { scratchFolder(); }), testing::StartsWith("Could not create folder " + own));
  }
}

TEST_F(OwnFolders, TheManualIsFoundFromABuildFolderAndInstalled) {
  const std::string root = temp_.path();
  EXPECT_NE(refusalOf([&] { helpPage(root + "/build/release/bin", 0); }), "");
  fs::create_directories(root + "/docs/manual");
  sim::writeFile(root + "/docs/manual/000.html", "contents");
  sim::writeFile(root + "/docs/manual/051.html", "a page");
  EXPECT_EQ(helpPage(root + "/build/release/bin", 51), root + "/docs/manual/051.html");
  EXPECT_EQ(helpPage(root + "/build/release/bin", 510), root + "/docs/manual/000.html");
  fs::create_directories(root + "/usr/share/doc/quillon/manual");
  sim::writeFile(root + "/usr/share/doc/quillon/manual/1234.html", "a page");
  EXPECT_EQ(helpPage(root + "/usr/bin", 1234), root + "/usr/share/doc/quillon/manual/1234.html");
}

}  // namespace
}  // namespace quillon::platform
