#include "apps/ProbeCommand.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "base/Errors.h"
#include "store/Errors.h"
#include "store/locks/TableLocks.h"
#include "store/vfs/DiskFileSystem.h"

namespace quillon::apps {
namespace {

using store::LockMode;
using store::OpenMode;

// Where the store locks: beside each other, and as far out as record ids reach.
constexpr std::uint64_t kPlaces[] = {store::kOpenByte, store::kWriteByte, store::kRecordBase + 1,
                                     store::kRecordBase + store::kRecordCount - 1};

// What the other process is told to do, a letter each; it answers 'y' or 'n'.
enum Order : char { lockAll = 'l', isLocked = 'i', readBack = 'r', seesRenamed = 's', writeMore = 'w' };

std::string writtenBy(const char* who, std::uint64_t times) { return std::string(who) + std::to_string(times); }

std::string contentOf(store::File& file) {
  std::string text(file.size(), '\0');
  text.resize(file.read(0, text.data(), text.size()));
  return text;
}

void write(store::File& file, const std::string& text) {
  file.write(0, std::as_bytes(std::span(text)));
  file.truncate(text.size());
}

bool lockPlaces(store::File& file) {
  for (const std::uint64_t place : kPlaces)
    if (!file.lock(place, 1, LockMode::exclusive)) return false;
  return true;
}

// The second process, until its orders end or it is told to die with its locks.
class Companion {
 public:
  explicit Companion(const std::string& path) {
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends_) != 0 || (process_ = ::fork()) < 0)
      throw Error("a second process cannot be started");
    if (process_ == 0) {
      ::close(ends_[0]);
      serve(path);
      ::_exit(0);
    }
    ::close(ends_[1]);
  }
  ~Companion() { end(); }
  Companion(const Companion&) = delete;
  Companion& operator=(const Companion&) = delete;

  bool ask(Order order) {
    char answer = 'n';
    if (::write(ends_[0], &order, 1) != 1 || ::read(ends_[0], &answer, 1) != 1) return false;
    return answer == 'y';
  }
  void end() {
    if (process_ < 0) return;
    ::close(ends_[0]);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  void serve(const std::string& path) {
    try {
      store::DiskFileSystem files;
      const auto file = files.open(path, OpenMode::existing);
      char order = 0;
      while (::read(ends_[1], &order, 1) == 1) {
        const char answer = obey(order, files, *file, path) ? 'y' : 'n';
        if (::write(ends_[1], &answer, 1) != 1) return;
      }
    } catch (...) {
      // Its silence is the answer.
    }
  }

  static bool obey(char order, store::DiskFileSystem& files, store::File& file, const std::string& path) {
    switch (order) {
      case lockAll:
        return lockPlaces(file);
      case isLocked:
        for (const std::uint64_t place : kPlaces)
          if (!file.lockedByOther(place, 1, LockMode::shared) || file.lock(place, 1, LockMode::shared)) return false;
        return true;
      case readBack:
        return contentOf(file) == writtenBy("first", 1);
      case writeMore:
        write(file, writtenBy("second, longer than before", 2));
        return true;
      case seesRenamed:
        return !files.exists(path) && files.exists(path + "2");
      default:
        return false;
    }
  }

  int ends_[2] = {-1, -1};
  pid_t process_ = -1;
};

class Probe {
 public:
  explicit Probe(const std::string& folder)
      : folder_(folder), path_(folder + "/Quillon.probe" + std::to_string(::getpid())) {
    file_ = files_.open(path_, OpenMode::create);
  }
  ~Probe() {
    try {
      files_.remove(path_);
      files_.remove(path_ + "2");
    } catch (...) {
      // A small file stays behind; its name says whose it is.
    }
  }
  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;

  bool run() {
    {
      Companion other(path_);
      check("a lock keeps the other process out", [&] { return lockPlaces(*file_) && other.ask(isLocked); });
      check("what one process writes the other reads", [&] {
        write(*file_, writtenBy("first", 1));
        return other.ask(readBack) && other.ask(writeMore) &&
               contentOf(*file_) == writtenBy("second, longer than before", 2);
      });
      check("a lock that was given up can be had by the other", [&] {
        for (const std::uint64_t place : kPlaces) file_->unlock(place, 1);
        return other.ask(lockAll) && !file_->lock(kPlaces[0], 1, LockMode::shared);
      });
      other.end();
      check("a lock ends with its process", [&] { return lockPlaces(*file_); });
    }
    check("files and the folder can be synced", [&] {
      file_->sync();
      files_.syncFolder(folder_);
      return true;
    });
    Companion other(path_);
    check("a file that is renamed is so for the other process", [&] {
      // Its answer to an order says that it has opened the file under the old name.
      other.ask(isLocked);
      files_.rename(path_, path_ + "2");
      return other.ask(seesRenamed);
    });
    return shared_;
  }

 private:
  void check(const char* what, const std::function<bool()>& test) {
    std::string answer = "no";
    try {
      if (test()) answer = "yes";
    } catch (const store::StoreError& error) {
      // Says nothing of the folder.
      if (error.code() == store::Code::noSpace) throw;
      answer += std::string(" (") + error.what() + ")";
    }
    if (answer != "yes") shared_ = false;
    std::cout << what << ": " << answer << '\n';
  }

  store::DiskFileSystem files_;
  std::string folder_, path_;
  std::unique_ptr<store::File> file_;
  bool shared_ = true;
};

}  // namespace

ExitStatus probeCommand(Arguments arguments) {
  if (arguments.size() != 1) throw UsageError("probe takes one folder");
  const std::string folder(arguments.front());
  store::DiskFileSystem files;
  if (!files.folderExists(folder) && files.exists(folder))
    throw Error("'" + folder + "' is a file and not a folder. Name the folder that it lies in.");
  if (!files.folderExists(folder)) throw Error("The folder '" + folder + "' is not there.");
  const bool network = files.isNetwork(folder);
  const bool shared = Probe(folder).run();
  std::cout << folder << (shared ? " can be shared by the programs of this computer" : " cannot be shared") << '\n';
  if (shared && network) std::cout << "It is on another computer: probe it from each that shall use it.\n";
  if (shared) return ExitStatus::done;
  std::cerr << "quillonctl: " << folder << ": two programs that use it at once would destroy each other's work\n";
  return ExitStatus::failed;
}

}  // namespace quillon::apps
