// The promises of File.h, kept alike by the real disk, by memory and by the simulated disk.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "store/Errors.h"
#include "store/vfs/DiskFileSystem.h"
#include "store/vfs/MemoryFileSystem.h"
#include "support/CodeOf.h"
#include "support/FullDisk.h"
#include "support/SeededRandom.h"
#include "support/SimDisk.h"
#include "support/TempFolder.h"

namespace quillon::store {
namespace {

using sim::codeOf;
using sim::FullDisk;
using sim::TempFolder;

Bytes bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string text(File& file, std::uint64_t offset, std::size_t size) {
  std::string got(size, '?');
  got.resize(file.read(offset, got.data(), size));
  return got;
}

enum class Kind { disk, memory, sim };

class Vfs : public testing::TestWithParam<Kind> {
 protected:
  Vfs() {
    switch (GetParam()) {
      case Kind::disk:
        files_ = std::make_unique<DiskFileSystem>();
        break;
      case Kind::memory:
        files_ = std::make_unique<MemoryFileSystem>();
        break;
      case Kind::sim:
        files_ = simDisk_.process();
        break;
    }
    files_->makeFolder(root_);
  }
  std::string path(const std::string& name) const { return root_ + "/" + name; }
  std::unique_ptr<File> make(const std::string& name) { return files_->open(path(name), OpenMode::createNew); }

  TempFolder temp_;
  sim::SimDisk simDisk_;
  std::string root_ = temp_.path() + "/deep/folder";
  std::unique_ptr<FileSystem> files_;
};

TEST_P(Vfs, ManyPartsInOneCall) {
  const auto file = make("A.DAT");
  std::string wanted;
  std::vector<std::string> texts;
  for (int i = 0; i < 300; ++i) texts.push_back(std::string(i % 7 * 100, static_cast<char>('a' + i % 26)));
  std::vector<Bytes> parts;
  for (const auto& part : texts) {
    parts.push_back(bytes(part));
    wanted += part;
  }
  file->writeParts(3, parts);
  EXPECT_EQ(text(*file, 3, wanted.size() + 1), wanted);
}

TEST_P(Vfs, OpensByMode) {
  EXPECT_EQ(codeOf([&] { files_->open(path("A.DAT"), OpenMode::existing); }), Code::noSuchTable);
  const auto file = files_->open(path("A.DAT"), OpenMode::create);
  file->write(0, bytes("x"));
  EXPECT_EQ(codeOf([&] { make("A.DAT"); }), Code::tableExists);
  EXPECT_EQ(files_->open(path("A.DAT"), OpenMode::create)->size(), 1u);
  EXPECT_EQ(text(*files_->open(path("A.DAT"), OpenMode::existing), 0, 9), "x");
  for (const auto mode : {OpenMode::create, OpenMode::createNew}) {
    EXPECT_EQ(codeOf([&] { files_->open(path("gone/A.DAT"), mode); }), Code::noSuchFolder);
  }
}

TEST_P(Vfs, NamesAreListedRenamedAndRemoved) {
  for (const char* name : {"B.DAT", "A.IDX", "A.DAT"}) make(name)->write(0, bytes(name));
  files_->makeFolder(path("sub"));
  files_->makeFolder(path("sub"));
  files_->open(path("sub/C.DAT"), OpenMode::create);
  EXPECT_EQ(files_->list(root_), (std::vector<std::string>{"A.DAT", "A.IDX", "B.DAT"}));
  const auto replaced = files_->open(path("A.DAT"), OpenMode::existing);
  files_->rename(path("B.DAT"), path("A.DAT"));
  files_->syncFolder(root_);
  EXPECT_EQ(text(*files_->open(path("A.DAT"), OpenMode::existing), 0, 9), "B.DAT");
  EXPECT_EQ(text(*replaced, 0, 9), "A.DAT");  // an open file outlives its name
  EXPECT_FALSE(files_->exists(path("B.DAT")));
  files_->remove(path("A.DAT"));
  files_->remove(path("A.DAT"));
  EXPECT_EQ(files_->list(root_), (std::vector<std::string>{"A.IDX"}));
  EXPECT_TRUE(files_->exists(path("A.IDX")));
  EXPECT_FALSE(files_->exists(path("gone/A.IDX")));
  EXPECT_EQ(codeOf([&] { files_->rename(path("A.DAT"), path("C.DAT")); }), Code::noSuchTable);
  EXPECT_EQ(codeOf([&] { files_->rename(path("A.IDX"), path("gone/C.DAT")); }), Code::noSuchFolder);
}

TEST_P(Vfs, FoldersThatAreNotThereAreNamed) {
  EXPECT_TRUE(files_->folderExists(root_));
  EXPECT_FALSE(files_->folderExists(path("gone")));
  EXPECT_EQ(codeOf([&] { files_->list(path("gone")); }), Code::noSuchFolder);
  EXPECT_EQ(codeOf([&] { files_->syncFolder(path("gone")); }), Code::noSuchFolder);
  EXPECT_EQ(codeOf([&] { files_->openScratch(path("gone")); }), Code::noSuchFolder);
  EXPECT_EQ(codeOf([&] { files_->isNetwork(path("gone")); }), Code::noSuchFolder);
}

TEST_P(Vfs, ScratchFilesHaveNoName) {
  const auto one = files_->openScratch(root_);
  const auto two = files_->openScratch(root_);
  one->write(100'000, bytes("one"));
  two->write(0, bytes("two"));
  EXPECT_EQ(text(*one, 100'000, 9), "one");
  EXPECT_TRUE(files_->list(root_).empty());
}

std::string kindName(const testing::TestParamInfo<Kind>& kind) {
  constexpr const char* kNames[] = {"Disk", "Memory", "Sim"};
  return kNames[static_cast<std::size_t>(kind.param)];
}

INSTANTIATE_TEST_SUITE_P(All, Vfs, testing::Values(Kind::disk, Kind::memory, Kind::sim), kindName);

// Method: one random history is done to all three; every answer, length and byte must agree, the kernel's being right.
class VfsAgreement : public testing::TestWithParam<std::uint64_t> {
 protected:
  static constexpr std::size_t kSystems = 3;
  static constexpr std::size_t kHandles = 3;

  VfsAgreement() {
    for (auto& system : systems_) system->makeFolder(temp_.path());
    for (std::size_t h = 0; h < kHandles; ++h) reopen(h);
  }
  void reopen(std::size_t handle) {
    for (std::size_t i = 0; i < kSystems; ++i) {
      handles_[i][handle] = systems_[i]->open(temp_.path() + "/A.DAT", OpenMode::create);
    }
  }
  // The answer of the disk, which all must give.
  template <class Call>
  auto all(std::size_t handle, Call call) {
    const auto wanted = call(*handles_[0][handle]);
    for (std::size_t i = 1; i < kSystems; ++i) EXPECT_EQ(call(*handles_[i][handle]), wanted) << "system " << i;
    return wanted;
  }

  TempFolder temp_;
  sim::SimDisk simDisk_;
  sim::SeededRandom random_{GetParam()};
  std::unique_ptr<FileSystem> systems_[kSystems] = {std::make_unique<DiskFileSystem>(),
                                                    std::make_unique<MemoryFileSystem>(), simDisk_.process()};
  std::unique_ptr<File> handles_[kSystems][kHandles];
};

TEST_P(VfsAgreement, OnLocks) {
  int granted = 0;
  for (int step = 0; step < 3000 && !HasFailure(); ++step) {
    const std::size_t handle = random_.below(kHandles);
    const std::uint64_t offset = (std::uint64_t{1} << 41) + random_.below(40);
    const std::uint64_t length = 1 + random_.below(12);
    const LockMode mode = random_.oneIn(3) ? LockMode::exclusive : LockMode::shared;
    switch (random_.below(8)) {
      case 0:
      case 1:
      case 2:
        granted += all(handle, [&](File& f) { return f.lock(offset, length, mode); });
        break;
      case 3:
      case 4:
        all(handle, [&](File& f) { return f.lockedByOther(offset, length, mode); });
        break;
      case 5:
      case 6:
        all(handle, [&](File& f) { return f.unlock(offset, length), 0; });
        break;
      default:
        if (random_.oneIn(10)) reopen(handle);
    }
  }
  EXPECT_GT(granted, 300);
}

TEST_P(VfsAgreement, OnBytes) {
  constexpr std::size_t kReach = 30'000;
  std::string data(9000, ' ');
  for (char& c : data) c = static_cast<char>(random_.next());
  for (int step = 0; step < 600 && !HasFailure(); ++step) {
    const std::size_t handle = random_.below(kHandles);
    const std::uint64_t offset = random_.below(kReach);
    const std::size_t size = random_.below(data.size());
    const Bytes part = bytes(std::string_view(data).substr(random_.below(data.size() - size), size));
    switch (random_.below(6)) {
      case 0:
      case 1:
        all(handle, [&](File& f) { return f.write(offset, part), f.size(); });
        break;
      case 2: {
        const Bytes parts[] = {part.first(size / 3), part.subspan(size / 3)};
        all(handle, [&](File& f) { return f.writeParts(offset, parts), f.size(); });
        break;
      }
      case 3:
        all(handle, [&](File& f) { return f.truncate(offset), f.size(); });
        break;
      case 4:
        all(handle, [&](File& f) { return f.reserve(offset), f.size(); });
        break;
      default:
        all(handle, [&](File& f) { return text(f, offset, size); });
    }
  }
  all(0, [&](File& f) { return text(f, 0, 2 * kReach); });
}

INSTANTIATE_TEST_SUITE_P(Seeds, VfsAgreement, testing::Range<std::uint64_t>(1, 9));

// A child process tries the lock and tells by its exit code: 1 granted, 0 refused.
int lockedInChild(const std::string& path, std::uint64_t offset, LockMode mode) {
  const pid_t child = ::fork();
  if (child == 0) {
    try {
      ::_exit(DiskFileSystem().open(path, OpenMode::existing)->lock(offset, 1, mode) ? 1 : 0);
    } catch (...) {
      ::_exit(2);
    }
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(DiskFile, LocksStandBetweenProcessesAndEndWithTheHandle) {
  const TempFolder temp;
  const std::string path = temp.path() + "/A.DAT";
  constexpr std::uint64_t kByte = std::uint64_t{1} << 40;
  auto file = DiskFileSystem().open(path, OpenMode::createNew);
  ASSERT_TRUE(file->lock(kByte, 1, LockMode::shared));
  EXPECT_EQ(lockedInChild(path, kByte, LockMode::exclusive), 0);
  EXPECT_EQ(lockedInChild(path, kByte, LockMode::shared), 1);
  EXPECT_TRUE(file->lock(kByte, 1, LockMode::exclusive));  // the child's shared lock ended with it
  DiskFileSystem().open(path, OpenMode::existing);         // closing another handle of this process must not free it
  EXPECT_EQ(lockedInChild(path, kByte, LockMode::shared), 0);
  file.reset();
  EXPECT_EQ(lockedInChild(path, kByte, LockMode::exclusive), 1);
}

// A limit on file sizes makes the system take a part of a write first and refuse the rest.
TEST(DiskFile, AShortWriteIsNoSuccess) {
  const TempFolder temp;
  const auto file = DiskFileSystem().open(temp.path() + "/A.DAT", OpenMode::createNew);
  const std::string data(5000, 'x');
  const Bytes parts[] = {bytes(data), bytes(data), bytes(data)};
  Code whole, inParts, reserved;
  {
    const FullDisk full(7000);
    whole = codeOf([&] { file->write(4000, bytes(data)); });
    inParts = codeOf([&] { file->writeParts(0, parts); });
    reserved = codeOf([&] { file->reserve(9000); });
  }
  EXPECT_EQ(whole, Code::ioFailed);
  EXPECT_EQ(inParts, Code::ioFailed);
  EXPECT_EQ(reserved, Code::ioFailed);
  EXPECT_EQ(file->size(), 7000u);
}

TEST(DiskFile, RefusalsSayWhatToDo) {
  const TempFolder temp;
  DiskFileSystem files;
  const std::string path = temp.path() + "/JV.DAT";
  files.open(path, OpenMode::createNew);
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(codeOf([&] { files.open(path, OpenMode::existing); }), Code::accessDenied);
  EXPECT_EQ(codeOf([&] { files.open(path, OpenMode::create); }), Code::accessDenied);
  EXPECT_EQ(codeOf([&] { files.open(temp.path(), OpenMode::existing); }), Code::ioFailed);
  EXPECT_EQ(codeOf([&] { files.makeFolder(path); }), Code::noSuchFolder);
  try {
    DiskFileSystem().open("/dev/full", OpenMode::existing);
    ADD_FAILURE() << "a device is no table";
  } catch (const IoError& error) {
    EXPECT_STREQ(error.what(), "Unable to open 'full': it is not a file.");
  }
  EXPECT_FALSE(files.isNetwork(temp.path()));
}

}  // namespace
}  // namespace quillon::store
