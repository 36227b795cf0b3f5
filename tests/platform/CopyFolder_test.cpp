#include "platform/CopyFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <thread>

#include "base/Errors.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"

namespace quillon::platform {
namespace {

namespace fs = std::filesystem;
using sim::readFile;
using sim::writeFile;

class Copying : public testing::Test {
 protected:
  Copying() {
    fs::create_directories(from_ + "/backup/Monday");
    writeFile(from_ + "/backup/Monday/Old.DAT", "not to be copied");
    fill('a');
  }
  // Every file of the source, filled with one letter.
  void fill(char letter) const {
    for (int i = 0; i < kFiles; ++i) writeFile(from_ + "/T" + std::to_string(i) + ".DAT", std::string(100'000, letter));
  }
  // The letters that the files of the copy begin with; '-' for a file cut short.
  std::set<char> lettersIn(const std::string& folder) const {
    std::set<char> letters;
    for (int i = 0; i < kFiles; ++i) {
      const std::string text = readFile(folder + "/T" + std::to_string(i) + ".DAT");
      letters.insert(text.size() == 100'000 ? text[0] : '-');
    }
    return letters;
  }
  static std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
    return names;
  }

  static constexpr int kFiles = 12;
  sim::TempFolder temp_;
  std::string from_ = temp_.path() + "/company", to_ = from_ + "/backup/Tuesday/new";
};

TEST_F(Copying, TakesTheFilesOfOneFolderAndKeepsOthersThere) {
  fs::create_directories(to_);
  writeFile(to_ + "/T1.DAT", "older");
  writeFile(to_ + "/letter.txt", "mine");
  const auto past = fs::file_time_type::clock::now() - std::chrono::hours(100);
  fs::last_write_time(from_ + "/T3.DAT", past);
  std::uint64_t last = 0;
  std::set<std::string> told;
  copyFolder(from_, to_, [&](const CopyProgress& progress) {
    EXPECT_GE(progress.done, last);
    EXPECT_EQ(progress.total, 100'000u * kFiles);
    last = progress.done;
    told.insert(progress.file);
  });
  EXPECT_EQ(last, 100'000u * kFiles);
  EXPECT_EQ(told.size(), std::size_t{kFiles});
  EXPECT_EQ(lettersIn(to_), std::set<char>{'a'});
  EXPECT_EQ(readFile(to_ + "/letter.txt"), "mine");
  EXPECT_EQ(fs::last_write_time(to_ + "/T3.DAT"), fs::last_write_time(from_ + "/T3.DAT"));
  EXPECT_EQ(namesIn(to_).size(), std::size_t{kFiles} + 1) << "nothing else is left there";
}

TEST_F(Copying, WhatStopsItLeavesTheEarlierCopy) {
  copyFolder(from_, to_);
  fill('b');
  EXPECT_THROW(copyFolder(from_, to_,
                          [](const CopyProgress& progress) {
                            if (progress.file == "T7.DAT" && progress.done > 0) throw Abort();
                          }),
               Abort);
  EXPECT_EQ(lettersIn(to_), std::set<char>{'a'});

  sim::ChildProcess cut([this](const sim::ChildPipe& pipe) {
    copyFolder(from_, to_, [&](const CopyProgress& progress) {
      if (progress.file != "T7.DAT") return;
      pipe.tell({.kind = 1});
      std::this_thread::sleep_for(std::chrono::seconds(60));
    });
  });
  bool reached = false;
  while (!reached) cut.drain([&](const auto&) { reached = true; });
  try {
    copyFolder(from_, to_);
    ADD_FAILURE() << "two copies into one folder at once";
  } catch (const Error& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr(to_));
  }
  cut.kill([](const auto&) {});
  EXPECT_EQ(lettersIn(to_), std::set<char>{'a'});

  copyFolder(from_, to_);
  EXPECT_EQ(lettersIn(to_), std::set<char>{'b'});
  EXPECT_EQ(namesIn(to_).size(), std::size_t{kFiles}) << "what the cut left is gone";
}

TEST_F(Copying, RefusalsNameTheFolder) {
  const auto refusal = [](const std::string& from, const std::string& to) -> std::string {
    try {
      copyFolder(from, to, [](const CopyProgress& progress) {
        if (progress.done > 100'000u * kFiles) throw Error("copies what there is no room for");
      });
    } catch (const Error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(refusal(from_, from_ + "/backup/.."), testing::HasSubstr("onto itself"));
  EXPECT_THAT(refusal(temp_.path() + "/none", to_), testing::HasSubstr(temp_.path() + "/none"));
  EXPECT_THAT(refusal(from_, from_ + "/T1.DAT/in"), testing::HasSubstr(from_ + "/T1.DAT"));
  EXPECT_EQ(lettersIn(from_), std::set<char>{'a'});
  // A file with a hole asks for more than any disk has free, and takes none itself.
  std::error_code tooBig;
  fs::resize_file(from_ + "/T5.DAT", std::uintmax_t{15} << 40, tooBig);
  if (tooBig) GTEST_SKIP() << "this disk holds no file of that size";
  EXPECT_THAT(refusal(from_, to_), testing::HasSubstr("not enough space in '" + to_));
}

}  // namespace
}  // namespace quillon::platform
