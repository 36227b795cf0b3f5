#include "store/Session.h"

#include "store/Database.h"
#include "store/pages/PageCache.h"
#include "store/pages/PageFile.h"
#include "store/vfs/MemoryFileSystem.h"

namespace quillon::store {

Session::Session(const Environment& environment, Settings settings)
    : environment_(environment),
      settings_(std::move(settings)),
      cache_(std::make_unique<PageCache>(settings_.cacheBytes / kPageSize)),
      memoryFiles_(std::make_unique<MemoryFileSystem>()),
      memory_(new Database(*this, *memoryFiles_, "\\Memory")) {
  memoryFiles_->setScratch([this]() -> std::unique_ptr<File> {
    const std::string place = scratchPlace();
    return place.empty() ? nullptr : environment_.files.openScratch(place);
  });
}

Session::~Session() = default;

Database& Session::memory() { return *memory_; }

SpillFile* Session::spill(const std::string& folder) {
  if (!spill_) {
    const std::string place =
        settings_.createTempTablesInDatabase || settings_.privateDir.empty() ? folder : settings_.privateDir;
    spill_ = std::make_unique<SpillFile>(environment_.files.openScratch(place));
  }
  return spill_.get();
}

std::string Session::scratchPlace() const {
  const bool inFolder = settings_.createTempTablesInDatabase || settings_.privateDir.empty();
  return inFolder && !scratchFolder_.empty() ? scratchFolder_ : settings_.privateDir;
}

std::unique_ptr<File> Session::scratch() {
  const std::string place = scratchPlace();
  return place.empty() ? memoryFiles_->openScratch("") : environment_.files.openScratch(place);
}

}  // namespace quillon::store
