#include "support/CompanyCheck.h"

#include <algorithm>

#include "store/Errors.h"
#include "store/Verify.h"
#include "store/pages/Page.h"
#include "support/SeededRandom.h"

namespace quillon::sim {
namespace {

constexpr int kDeepest = 4;                 // cuts behind the first one
constexpr std::size_t kCutsInRecovery = 2;  // at one moment
constexpr std::size_t kMomentsPassed = 3;   // of a recovery; of so many one is cut
constexpr std::size_t kDeeperOneIn = 15;

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += "\n  " + line;
  return text;
}

// One more row in each table; Cust must go on with the number behind the last.
CompanyState writeMore(Worker& worker, const CompanyState& state) {
  CompanyState next = state;
  for (auto& [name, table] : next.tables) {
    ModelRow row{7, 7, "zz-more", {}};
    if (hasNotes(name)) row.notes = std::string(700, 'm');
    store::Cursor cursor(worker.database(), name);
    cursor.open();
    cursor.insert();
    putRow(cursor, row);
    cursor.post();
    if (hasAutoNumber(name)) row.number = ++table.autoInc;
    table.rows.push_back(row);
  }
  return next;
}

// States of the same rows may differ in the last automatic number: the row that is written tells which it was.
std::optional<std::string> checkWriting(Worker& worker, const Allowed& allowed, const CompanyState& found,
                                        CompanyState& written) {
  const CompanyState grown = writeMore(worker, found);
  std::vector<CompanyState> wanted;
  for (const CompanyState* candidate : allowed) {
    if (!candidate->sameRows(found)) continue;
    wanted.push_back(*candidate);
    for (auto& [name, table] : wanted.back().tables) {
      table.rows.push_back(grown.tables.at(name).rows.back());
      if (hasAutoNumber(name)) table.rows.back().number = ++table.autoInc;
    }
  }
  Allowed fitting;
  for (const CompanyState& state : wanted) fitting.push_back(&state);
  const CompanyState* now = nullptr;
  if (auto wrong = checkOpen(worker, fitting, &now)) return "after writing more: " + *wrong;
  written = *now;
  return std::nullopt;
}

// A table whose old files were kept must be whole again with these files in place of its own.
std::optional<std::string> checkKept(SimDisk image) {
  constexpr const char* kPlace = "/kept";
  const auto files = image.process();
  bool any = false;
  for (const std::string& dat : files->list(kModelFolder)) {
    if (!dat.ends_with(std::string(".DAT") + store::kOldSuffix)) continue;
    const std::string table = dat.substr(0, dat.find('.'));
    files->makeFolder(kPlace);
    any = true;
    for (const char* extension : {".DAT", ".IDX", ".BLB"})
      files->open(std::string(kPlace) + "/" + table + extension, store::OpenMode::createNew)
          ->write(0, image.content(std::string(kModelFolder) + "/" + table + extension + store::kOldSuffix));
  }
  if (!any) return std::nullopt;
  SimClock clock;
  const store::VerifyReport report = store::verifyFolder({*files, clock, "V", "PC", 9}, kPlace);
  return report.clean() ? std::nullopt : std::optional("the kept files: " + report.findings.front().text);
}

}  // namespace

Allowed allowedDuring(const Task& task) {
  Allowed allowed;
  if (task.gathers() && task.pauses)
    for (const CompanyState& state : task.states) allowed.push_back(&state);
  else
    allowed = {&task.before(), &task.after()};
  return allowed;
}

std::optional<std::string> checkOpen(Worker& worker, const Allowed& allowed, const CompanyState** found) {
  try {
    std::vector<std::string> faults;
    const CompanyState state = readCompany(worker.database(), faults);
    for (const store::Finding& finding : store::verifyOpen(worker.database()).findings)
      faults.push_back(finding.table + ": " + finding.text);
    if (!faults.empty()) return "faults:" + joined(faults) + "\n" + state.describe();
    for (const CompanyState* one : allowed) {
      if (!one->sameRows(state)) continue;
      if (found != nullptr) *found = one;
      return std::nullopt;
    }
    std::string text = "a state that may not be:\n" + state.describe();
    for (const CompanyState* one : allowed) text += " allowed:\n" + one->describe();
    return text;
  } catch (const store::StoreError& error) {
    return "raised " + std::to_string(error.number()) + ": " + error.what();
  }
}

std::optional<std::string> checkImage(SimDisk image, const Workload& work, const Allowed& allowed, bool deep,
                                      std::uint64_t seed) {
  SimClock clock;
  clock.advance(2 * kLaterMicroseconds + static_cast<std::int64_t>(seed % 1000 * 1'000'000));
  CompanyState written;
  try {
    if (auto wrong = checkKept(image.settled())) return wrong;
    Worker worker(image, clock, work.settings);
    worker.open();
    const CompanyState* found = nullptr;
    if (auto wrong = checkOpen(worker, allowed, &found)) return wrong;
    if (auto wrong = checkWriting(worker, allowed, *found, written)) return wrong;
    if (!deep) return std::nullopt;
    SeededRandom random(seed);
    CutChoice choice{{}, random.next()};
    for (std::size_t i = image.pendingCount(); i > 0; --i)
      choice.fates.push_back(random.oneIn(2) ? Fate::kept : Fate::lost);
    if (random.oneIn(2)) choice.fates.assign(choice.fates.size(), Fate::lost);
    SimDisk second = image.imageAfterCut(choice);
    Worker again(second, clock, work.settings);
    again.open();
    if (auto wrong = checkOpen(again, {&written})) return "after writing more and a second cut: " + *wrong;
  } catch (const store::StoreError& error) {
    return "raised " + std::to_string(error.number()) + ": " + error.what();
  }
  return std::nullopt;
}

std::uint64_t digestOf(const SimDisk& image) {
  SimDisk handle = image;
  std::uint64_t digest = 0;
  for (const std::string& name : handle.process()->list(kModelFolder)) {
    if (name.ends_with(".LCK")) continue;
    const auto bytes = handle.content(std::string(kModelFolder) + "/" + name);
    digest = store::hashBytes(name.data(), name.size(), digest);
    digest = store::hashBytes(bytes.data(), bytes.size(), digest);
  }
  return digest;
}

bool Cuts::isNew(const SimDisk& image, const Allowed& allowed) {
  const void* const where[] = {allowed.front(), allowed.back()};
  const bool fresh = seen_.insert(store::hashBytes(where, sizeof where, digestOf(image))).second;
  ++(fresh ? images_ : repeated_);
  return fresh;
}

std::optional<std::string> Cuts::at(const SimDisk& disk, const Allowed& allowed, std::size_t limit) {
  const CutChooser chooser(disk, limit, seed_ + disk.events());
  for (std::size_t i = 0; i < chooser.count(); ++i) {
    SimDisk image = disk.imageAfterCut(chooser.choice(i));
    if (!isNew(image, allowed)) continue;
    if (auto wrong = checkImage(image, work_, allowed, images_ % 8 == 0, seed_ + images_))
      return "cut at event " + std::to_string(disk.events()) + ", image " + std::to_string(i) + " of " +
             std::to_string(chooser.count()) + ": " + *wrong;
  }
  return std::nullopt;
}

std::optional<std::string> Cuts::recovering(const SimDisk& disk, const Allowed& allowed, std::size_t limit) {
  const CutChooser chooser(disk, limit, seed_ + disk.events());
  for (std::size_t i = 0; i < chooser.count(); ++i)
    if (auto wrong = recover(disk.imageAfterCut(chooser.choice(i)), allowed, kDeepest))
      return "cut at event " + std::to_string(disk.events()) + ", " + *wrong;
  return std::nullopt;
}

// The next user opens the folder, looks at it and leaves; before each change that this makes the power is cut.
std::optional<std::string> Cuts::recover(SimDisk disk, const Allowed& allowed, int depth) {
  std::optional<std::string> wrong;
  disk.beforeEvent([&](const SimEvent& event) {
    if (wrong || !changesDisk(event.call) || !random_.oneIn(kMomentsPassed)) return;
    const CutChooser chooser(disk, kCutsInRecovery, seed_ + images_ + event.number);
    for (std::size_t i = 0; i < chooser.count() && !wrong; ++i) {
      const SimDisk image = disk.imageAfterCut(chooser.choice(i));
      if (!isNew(image, allowed)) continue;
      wrong = depth > 1 && random_.oneIn(kDeeperOneIn) ? recover(image, allowed, depth - 1)
                                                       : checkImage(image, work_, allowed, false, seed_ + images_);
      if (wrong) wrong = "again at event " + std::to_string(event.number) + " of the recovery: " + *wrong;
    }
  });
  try {
    SimClock clock;
    clock.advance(2 * kLaterMicroseconds + static_cast<std::int64_t>(seed_ + images_));
    Worker worker(disk, clock, work_.settings);
    worker.open();
    if (auto seen = checkOpen(worker, allowed); seen && !wrong) wrong = "recovered: " + *seen;
  } catch (const store::StoreError& error) {
    if (!wrong) wrong = std::string("the recovery raised: ") + error.what();
  }
  disk.beforeEvent({});
  return wrong;
}

}  // namespace quillon::sim
