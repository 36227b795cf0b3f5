// Table files and journals with bytes in them that nobody wrote there.
//
// Method: a workload leaves a company: closed, with its processes killed, or with the power cut. One file then gets a
// few changes: bytes, stretches, cuts, pages from elsewhere. In half of the runs the checksums are made right again, so
// that what stands behind them is met. The company is verified, read by every index, written to and closed. Every call
// comes back, with a StoreError at worst; steps outside are the sanitizers' to find. Where the checksums were left
// alone, a table is read as it was or raises; and what a changed journal took with it is told. No table's file keeps
// the company from being opened.
//
// The heads of the journal are also taken away by themselves, with more and more of what stands behind them: as long as
// that tells their epoch everything that was saved is there; otherwise the folder is refused, and mended with a word.
#include <gtest/gtest.h>

#include <cstdio>

#include "store/Errors.h"
#include "store/Repair.h"
#include "store/Verify.h"
#include "store/journal/Journal.h"
#include "store/pages/Page.h"
#include "store/table/TableFiles.h"
#include "support/CompanyCheck.h"
#include "support/SeededRandom.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using store::hashBytes;
using store::kPageSize;

template <typename T>
T loadText(const std::string& bytes, std::size_t at) {
  return store::loadAt<T>(reinterpret_cast<const std::byte*>(bytes.data()), at);
}

void putHash(std::string& bytes, std::size_t from, std::size_t size, std::size_t at, std::uint64_t start = 0) {
  const std::uint64_t hash = hashBytes(bytes.data() + from, size, start);
  bytes.replace(at, sizeof hash, reinterpret_cast<const char*>(&hash), sizeof hash);
}

// Makes the checksums of a table file right again; of two files in three the pages' own numbers, too.
void sealTable(std::string& bytes, std::uint64_t fileId, store::Role role, bool numbers) {
  if (bytes.size() >= kPageSize) {
    putHash(bytes, 0, 24, 24);
    putHash(bytes, 64, 16, 80);
  }
  for (std::size_t at = kPageSize; at + kPageSize <= bytes.size(); at += kPageSize) {
    auto* page = reinterpret_cast<std::byte*>(bytes.data() + at);
    const auto number = static_cast<store::PageNo>(at / kPageSize);
    if (store::pageIsSound(page, fileId ^ role, number)) continue;
    if (numbers) store::storeAt(page, 16, number);
    store::sealPage(page, fileId ^ role, store::pageStamp(page));
  }
}

void sealJournal(std::string& bytes) {
  if (bytes.size() < store::kJournalStart) return;
  for (const std::size_t head : {std::size_t{0}, std::size_t{4096}})
    if (loadText<std::uint64_t>(bytes, head) != 0) putHash(bytes, head, 56, head + 56);
  putHash(bytes, 8192, 32, 8192 + 32);
  for (std::size_t at = store::kJournalStart; at + 80 <= bytes.size();) {
    const auto length = loadText<std::uint64_t>(bytes, at + 40);
    const std::uint64_t directory =
        loadText<std::uint32_t>(bytes, at + 48) * 96ull + loadText<std::uint32_t>(bytes, at + 52) * 12ull;
    if (length < 80 || length > bytes.size() - at || directory > length - 80) return;
    putHash(bytes, at + 64, directory, at + 56, hashBytes(bytes.data() + at, 56));
    putHash(bytes, at, length - 16, at + length - 16);
    at += length;
  }
}

struct Tally {
  std::uint64_t runs = 0, tables = 0, raised = 0, told = 0;
};

enum class Loss { newestHead, heads, headsAndRecord, headsAndApplied, everything };

void wipe(std::string& bytes, std::size_t at, std::size_t size) {
  for (std::size_t i = at; i < std::min(at + size, bytes.size()); ++i) bytes[i] ^= '\x5A';
}

void behead(std::string& bytes, Loss loss) {
  if (loss == Loss::everything) return wipe(bytes, 0, bytes.size());
  const bool second = loadText<std::uint64_t>(bytes, 4096 + 24) > loadText<std::uint64_t>(bytes, 24);
  if (loss != Loss::newestHead || !second) wipe(bytes, 0, 64);
  if (loss != Loss::newestHead || second) wipe(bytes, 4096, 64);
  if (loss == Loss::headsAndApplied) wipe(bytes, 8192, 40);
  if (loss == Loss::headsAndRecord) wipe(bytes, store::kJournalStart, 64);
}

// What one workload leaves, and the runs on it.
class Fuzzed {
 public:
  Fuzzed(std::uint64_t seed, Tally& tally)
      : random_(seed), work_(Workload::make(seed, {4, 1, false})), disk_(companyDisk(work_)), tally_(tally) {
    SimClock clock;
    clock.advance(kLaterMicroseconds);
    Worker worker(disk_, clock, work_.settings);
    for (const Task& task : work_.tasks) worker.run(task);
    const std::size_t end = random_.below(3);
    closed_ = end == 0;
    cut_ = end == 1;
    if (closed_) worker.close();
    disk_ = cut_ ? disk_.imageAfterCut({std::vector(disk_.pendingCount(), Fate::lost), 0}) : disk_.settled();
  }

  std::optional<std::string> run() {
    SimDisk disk = disk_.settled();
    const auto tool = disk.process();
    std::vector<std::string> names = tool->list(kModelFolder);
    std::erase_if(names, [](const std::string& name) { return name.ends_with(".LCK"); });
    file_ = random_.oneIn(4) ? store::kJournalName : names[random_.below(names.size())];
    sealed_ = random_.oneIn(2);
    spoil(disk, *tool, names[random_.below(names.size())]);
    ++tally_.runs;
    try {
      return use(disk);
    } catch (const std::exception& error) {
      return std::string("raised no StoreError: ") + error.what();
    }
  }
  // `mended`: the folder was refused and repaired.
  std::optional<std::string> runWithout(Loss loss, bool& mended) {
    SimDisk disk = disk_.settled();
    const auto tool = disk.process();
    std::string bytes = load(disk, store::kJournalName);
    behead(bytes, loss);
    put(*tool, store::kJournalName, bytes);
    SimClock clock;
    clock.advance(2 * kLaterMicroseconds);
    Worker worker(disk, clock, work_.settings);
    const CompanyState& after = work_.tasks.back().after();
    try {
      worker.open();
      // Where only the first record tells anything, records of long ago come in again, for what is no longer there.
      return loss == Loss::headsAndApplied ? checkRows(worker.database(), after) : checkOpen(worker, {&after});
    } catch (const store::StoreError& error) {
      if (error.code() != store::Code::headerDamaged || loss <= Loss::heads) return error.what();
    }
    mended = true;
    if (store::repairJournal({*tool, clock, "ANNA", "PC", 9}, kModelFolder).empty()) return "mended without a word";
    worker.open();
    for (const std::string& table : worker.database().tableNames()) {
      const store::RepairReport report = worker.database().repairTable(table);
      if (closed_ && report.rebuilt) return "after a clean close '" + table + "' needs a repair";
    }
    if (const store::VerifyReport report = store::verifyOpen(worker.database()); !report.clean())
      return report.findings.front().text;
    return closed_ ? checkOpen(worker, {&after}) : std::nullopt;
  }
  std::string describe() const { return file_ + (sealed_ ? ", checksums made right\n" : "\n") + work_.describe(); }

 private:
  static std::optional<std::string> checkRows(store::Database& database, const CompanyState& wanted) {
    CompanyState found;
    std::vector<std::string> faults;
    for (const auto& [name, table] : wanted.tables) found.tables[name] = readTable(database, name, faults);
    if (!faults.empty()) return faults.front();
    return found.sameRows(wanted) ? std::nullopt : std::optional("other rows:\n" + found.describe());
  }

  static std::string load(const SimDisk& disk, const std::string& name) {
    const auto bytes = disk.content(std::string(kModelFolder) + "/" + name);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  void spoil(SimDisk& disk, store::FileSystem& tool, const std::string& other) {
    std::string bytes = load(disk, file_);
    const std::string from = load(disk, other);
    const auto fileId = bytes.size() < 24 ? 0 : loadText<std::uint64_t>(bytes, 16);
    for (std::size_t changes = 1 + random_.below(3); changes > 0; --changes) change(bytes, from);
    if (sealed_ && file_ == store::kJournalName)
      sealJournal(bytes);
    else if (sealed_)
      sealTable(bytes, fileId & ~std::uint64_t{3}, roleOf(file_), random_.below(3) > 0);
    put(tool, file_, bytes);
  }

  static void put(store::FileSystem& tool, const std::string& name, const std::string& bytes) {
    const auto file = tool.open(std::string(kModelFolder) + "/" + name, store::OpenMode::existing);
    file->truncate(0);
    file->write(0, std::as_bytes(std::span(bytes)));
    file->sync();
  }

  static store::Role roleOf(const std::string& name) {
    return name.ends_with("DAT") ? store::kDat : name.ends_with("IDX") ? store::kIdx : store::kBlb;
  }

  // Mostly where something stands, and half of that at the beginning of a page, where its structure is told.
  std::size_t somewhere(const std::string& bytes) {
    std::size_t at = 0;
    for (int tries = 0; tries < 30; ++tries) {
      at = random_.below(bytes.size());
      if (random_.oneIn(2)) at = std::min(at / kPageSize * kPageSize + random_.below(120), bytes.size() - 1);
      if (bytes[at] != 0) break;
    }
    return at;
  }

  void change(std::string& bytes, const std::string& from) {
    if (bytes.empty()) return;
    const std::size_t at = somewhere(bytes), page = at / kPageSize * kPageSize;
    const std::size_t rest = std::min(bytes.size() - at, 1 + random_.below(random_.oneIn(2) ? 8 : 700));
    switch (random_.below(10)) {
      case 0:
        return bytes.resize(at);
      case 1:
        return bytes.replace(at, rest, rest, random_.oneIn(2) ? '\0' : '\xFF'), void();
      case 2:
        return bytes.erase(at, rest), void();
      case 3:
        return bytes.insert(at, rest, static_cast<char>(random_.next())), void();
      case 4: {  // a page from elsewhere
        const std::size_t place = random_.below(from.size() / kPageSize + 1) * kPageSize;
        const std::size_t size = std::min({kPageSize, from.size() - place, bytes.size() - page});
        return bytes.replace(page, size, from, place, size), void();
      }
      default:
        for (std::size_t i = at; i < at + std::min<std::size_t>(rest, 8); ++i)
          bytes[i] = static_cast<char>(random_.oneIn(2) ? bytes[i] ^ 1 << random_.below(8) : random_.next());
    }
  }

  std::optional<std::string> use(SimDisk& disk) {
    SimClock clock;
    clock.advance(2 * kLaterMicroseconds + static_cast<std::int64_t>(tally_.runs));
    Worker worker(disk, clock, work_.settings);
    try {
      worker.open();
    } catch (const store::StoreError& error) {
      if (file_ != store::kJournalName) return std::string("a table keeps the company shut: ") + error.what();
    }
    try {
      if (!worker.isOpen()) worker.open();
      if (auto wrong = read(worker.database())) return wrong;
      for (const auto& [name, table] : work_.tasks.back().after().tables) write(worker.database(), name);
    } catch (const store::StoreError&) {
      ++tally_.raised;
    }
    worker.close();
    try {
      worker.open();
      store::verifyOpen(worker.database());
    } catch (const store::StoreError&) {
      ++tally_.raised;
    }
    return std::nullopt;
  }

  std::optional<std::string> read(store::Database& database) {
    const CompanyState& wanted = work_.tasks.back().after();
    if (random_.oneIn(2)) tally_.told += !store::verifyOpen(database).clean();
    CompanyState found;
    std::vector<std::string> faults;
    bool whole = true;
    for (const auto& [name, table] : wanted.tables) try {
        ++tally_.tables;
        found.tables[name] = readTable(database, name, faults);
        if (sealed_ || file_ == store::kJournalName) continue;
        if (found.tables[name].rows != table.rows) return "rows of '" + name + "' are wrong:\n" + found.describe();
        if (!faults.empty()) return faults.front();
      } catch (const store::StoreError&) {
        ++tally_.raised;
        whole = false;
      }
    if (sealed_ || !whole || file_ != store::kJournalName) return std::nullopt;
    // Without a power cut the tables themselves have everything, whatever became of the journal.
    if (cut_ && !store::verifyOpen(database).clean()) return std::nullopt;
    if (!faults.empty()) return faults.front();
    if (found.sameRows(wanted)) return std::nullopt;
    // What was lost with the end of the journal cannot be told from what was never saved.
    for (const Task& task : work_.tasks)
      for (CompanyState state : task.states) {
        state.tables.erase("Extra");  // comes and goes beside the journal
        if (found.tables.contains("Extra")) state.tables["Extra"] = found.tables["Extra"];
        if (cut_ && state.sameRows(found)) return std::nullopt;
      }
    return "a changed journal led to another state, and nothing tells it:\n" + found.describe();
  }

  void write(store::Database& database, const std::string& name) {
    try {
      store::Cursor cursor(database, name);
      cursor.open();
      cursor.insert();
      putRow(cursor, {5, 5, "fuzz", hasNotes(name) ? std::string(3000, 'f') : std::string()});
      cursor.post();
      cursor.first();
      cursor.edit();
      cursor["Name"] = "changed";
      cursor.post();
      cursor.last();
      cursor.remove();
    } catch (const store::StoreError&) {
      ++tally_.raised;
    }
  }

  SeededRandom random_;
  Workload work_;
  SimDisk disk_;
  Tally& tally_;
  bool closed_ = false, cut_ = false, sealed_ = false;
  std::string file_;
};

TEST(Files, WithAnyBytesInThemNeverLeadAstray) {
  constexpr int kRunsOfOne = 40;
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(6'000, 40'000);
  Tally tally;
  int failures = 0;
  for (std::uint64_t seed = trials.seed.value_or(1); failures < 5 && tally.runs < aim; ++seed) {
    Fuzzed fuzzed(seed, tally);
    for (int i = 0; i < kRunsOfOne; ++i) {
      const auto wrong = fuzzed.run();
      if (!wrong) continue;
      ++failures;
      ADD_FAILURE() << "run " << i << " on " << fuzzed.describe() << "\n"
                    << *wrong << "\n"
                    << Trials::repeating(seed, "test_store_fuzz", "Files.WithAnyBytesInThemNeverLeadAstray");
      break;
    }
    if (trials.seed) break;
  }
  std::printf("%llu runs, %llu tables read, %llu errors raised, %llu times told by the verifier\n",
              static_cast<unsigned long long>(tally.runs), static_cast<unsigned long long>(tally.tables),
              static_cast<unsigned long long>(tally.raised), static_cast<unsigned long long>(tally.told));
  if (trials.seed || failures > 0) return;
  EXPECT_GE(tally.runs, aim);
  EXPECT_GE(tally.raised, aim / 10);
  EXPECT_GE(tally.tables, 2 * aim);
}

TEST(Files, AJournalWithoutHeadsIsReadOrMendedWithAWord) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t last = trials.seed ? *trials.seed : trials.aim(300, 3'000);
  std::uint64_t opened = 0, mended = 0;
  Tally tally;
  for (std::uint64_t seed = trials.seed.value_or(1); seed <= last && !testing::Test::HasFailure(); ++seed) {
    Fuzzed fuzzed(seed, tally);
    for (const Loss loss :
         {Loss::newestHead, Loss::heads, Loss::headsAndRecord, Loss::headsAndApplied, Loss::everything}) {
      bool refused = false;
      if (const auto wrong = fuzzed.runWithout(loss, refused))
        ADD_FAILURE() << "loss " << static_cast<int>(loss) << " on " << fuzzed.describe() << "\n"
                      << *wrong << "\n"
                      << Trials::repeating(seed, "test_store_fuzz",
                                           "Files.AJournalWithoutHeadsIsReadOrMendedWithAWord");
      ++(refused ? mended : opened);
    }
  }
  std::printf("%llu times opened, %llu times mended\n", static_cast<unsigned long long>(opened),
              static_cast<unsigned long long>(mended));
  EXPECT_TRUE(trials.seed || (opened > last && mended > last));
}

}  // namespace
}  // namespace quillon::sim
