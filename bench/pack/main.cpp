// Pack/Repair through its screen, on a company of a million rows in which two tables are damaged: the time, the sizes,
// and whether everything that could be read is there afterwards.
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iostream>

#include "base/Errors.h"
#include "bench/Options.h"
#include "bench/PeakMemory.h"
#include "bench/Scratch.h"
#include "bench/Timing.h"
#include "form/Input.h"
#include "maintenance/Screens.h"
#include "shell/Session.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Query.h"
#include "store/Verify.h"
#include "store/schema/CreateCompany.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/ScriptedPerson.h"
#include "support/SimDesktop.h"

namespace quillon::bench {
namespace {

constexpr int kLinesOfAVoucher = 4;
constexpr int kDamagedLeaves = 5;  // of each table

void require(bool holds, const std::string& what) {
  if (!holds) throw Error("Not so: " + what);
}

Money amountOf(int line) { return Money::fromRaw(line * std::int64_t{137} % 1'000'000'007); }
std::string describe(int voucher) { return "Voucher " + std::to_string(voucher * std::int64_t{7919} % 1'000'003); }

void fill(store::Database& company, int vouchers) {
  store::createCompanyTables(company);
  store::Query(company, "INSERT INTO Company (CompanyName, FiscalYear) VALUES ('Acme', 2026)").execute();
  const store::Database::BulkScope bulk(company);
  store::Cursor heads(company, "JV"), lines(company, "JVDet");
  heads.open();
  lines.open();
  for (int id = 1; id <= vouchers; ++id) {
    heads.append();
    heads["JVID"] = id;
    heads["GLYear"] = 2026;
    heads["GLPeriod"] = 1 + id % 12;
    heads["JVNumber"] = 1000 + id;
    heads["TransDescription"] = describe(id);
    heads.post();
    for (int seq = 1; seq <= kLinesOfAVoucher; ++seq) {
      lines.append();
      lines["JVID"] = id;
      lines["Seq"] = seq;
      lines["GLAccountID"] = 1 + (id + seq) % 500;
      lines["GLAmount"] = amountOf(id * kLinesOfAVoucher + seq);
      lines.post();
    }
  }
}

// Spoils leaves of the records all over the table; how many rows they held.
std::uint64_t damage(const std::string& path) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const std::uint64_t pages = bytesOf(path.substr(0, path.rfind('/')), path.substr(path.rfind('/') + 1)) / 4096;
  std::uint64_t rows = 0;
  std::string page(4096, '\0');
  for (int i = 1; i <= kDamagedLeaves; ++i)
    for (std::uint64_t at = pages * static_cast<std::uint64_t>(i) / (kDamagedLeaves + 1);; ++at) {
      file.seekg(static_cast<std::streamoff>(at * 4096));
      require(static_cast<bool>(file.read(page.data(), 4096)), "a leaf in " + path);
      if (page[20] != 4) continue;
      rows += static_cast<unsigned char>(page[22]) + 256u * static_cast<unsigned char>(page[23]);
      file.seekp(static_cast<std::streamoff>(at * 4096 + 1000));
      file.write("spilt coffee", 12);
      break;
    }
  return rows;
}

// Every row that is there has the values that it was given; how many there are.
std::uint64_t checkedRows(store::Database& company, const std::string& table) {
  store::Cursor rows(company, table);
  rows.open();
  std::uint64_t count = 0;
  for (rows.first(); !rows.eof(); rows.next(), ++count) {
    const int id = rows["JVID"].asInt();
    require(table == "JV" ? rows["TransDescription"].asText() == describe(id)
                          : rows["GLAmount"].value().asMoney() == amountOf(id * kLinesOfAVoucher + rows["Seq"].asInt()),
            "the values of voucher " + std::to_string(id) + " in " + table);
  }
  return count;
}

void run(int count, char** words) {
  const Options options = readOptions(count, words, "bench_pack", {});
  const int vouchers = static_cast<int>(options.rows / (1 + kLinesOfAVoucher));
  const std::uint64_t heads = static_cast<std::uint64_t>(vouchers), lines = heads * kLinesOfAVoucher;
  const Scratch scratch;
  const std::string folder = emptyFolder(scratch.path() + "/company");
  store::DiskFileSystem disk;
  const store::Environment environment{disk, store::systemClock(), "bench", "local", ::getpid()};
  {
    store::Session session(environment);
    store::Database company(session, folder);
    fill(company, vouchers);
  }
  const std::uint64_t before = bytesOf(folder);
  const std::uint64_t lostHeads = damage(folder + "/JV.DAT"), lostLines = damage(folder + "/JVDet.DAT");
  std::printf("%llu rows in JV and JVDet, of which %llu on %d damaged pages; %.1f MB\n",
              static_cast<unsigned long long>(heads + lines), static_cast<unsigned long long>(lostHeads + lostLines),
              2 * kDamagedLeaves, static_cast<double>(before) / 1e6);

  sim::ScriptedPerson person;
  sim::SimDesktop desktop;
  shell::Session session(environment, person, desktop);
  form::Input input(session.app());
  shell::registerScreens(session);
  maintenance::registerScreens(session);
  session.attach(folder);
  session.app().open("TfrmQuillon");
  forgetPeak();
  const double memory = peakMemory();
  Stopwatch watch;
  person.modals.push_back([&](form::Screen& screen) {
    watch.start();
    input.click(screen, *screen.find("btnOK"));
    watch.stop();
    if (screen.visible()) input.click(screen, *screen.find("btnCancel"));
  });
  session.app().runModal("TfrmPack");
  std::cout << "Pack/Repair took " << watch.seconds() << " s and " << peakMemory() - memory << " MiB of memory\n";
  require(checkedRows(session.database(), "JV") == heads - lostHeads, "all of JV but the damaged pages");
  require(checkedRows(session.database(), "JVDet") == lines - lostLines, "all of JVDet but the damaged pages");
  session.detach();
  require(store::verifyFolder(environment, folder, {}).clean(), "a sound company");
  const std::uint64_t old = bytesOf(folder, "~old"), damaged = bytesOf(folder, "~damaged");
  std::printf("%llu rows are there, with their values; the company is sound\n",
              static_cast<unsigned long long>(heads + lines - lostHeads - lostLines));
  std::printf("%.1f MB, and beside it %.1f MB of copies and %.1f MB of damaged files\n",
              static_cast<double>(bytesOf(folder) - old - damaged) / 1e6, static_cast<double>(old) / 1e6,
              static_cast<double>(damaged) / 1e6);
  std::string heard = person.takeHeard();
  for (char& c : heard)
    if (c == '\r') c = '\n';
  std::cout << "What the person was told:\n" << heard << '\n';
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) { return quillon::bench::exitStatus(count, words, quillon::bench::run); }
