#include "bench/forms/Office.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "base/Errors.h"
#include "form/Grid.h"
#include "ledger/Screens.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"

namespace quillon::bench {
namespace {

constexpr int kRare = 1000;  // one row in so many passes the filter
const Date kToday(2026, 3, 5);

std::string padded(std::int64_t number) {
  char text[32];
  std::snprintf(text, sizeof text, "%08lld", static_cast<long long>(number));
  return text;
}

void fillAccounts(store::Database& company, std::int64_t rows) {
  const store::Database::BulkScope bulk(company);
  store::Cursor accounts(company, "GLAccnt");
  accounts.open();
  for (int at = 1; at <= rows; ++at) {
    accounts.append();
    accounts["GLAccountID"] = at;
    accounts["GLAccount"] = padded(at);
    accounts["AccountName"] = "Account " + padded((at * std::int64_t{7919}) % 100'000'007);
    accounts["AccountType"] = at % kRare == 0 ? 5 : 1 + at % 4;
    accounts["Suspended"] = at % kRare == 0;
    accounts.post();
  }
}

void fillVouchers(store::Database& company, std::int64_t rows) {
  const store::Database::BulkScope bulk(company);
  store::Cursor vouchers(company, "JV"), lines(company, "JVDet");
  vouchers.open();
  lines.open();
  for (int at = 1; at <= rows; ++at) {
    vouchers.append();
    vouchers["JVID"] = at;
    vouchers["GLYear"] = 2026;
    vouchers["GLPeriod"] = 1 + at % 3;
    vouchers["JVNumber"] = 1000 + at;
    vouchers["Source"] = at % kRare == 0 ? "AP" : "GL";
    vouchers["TransType"] = "JV";
    vouchers["TransDate"] = kToday;
    vouchers["TransDescription"] = "Voucher " + padded(at);
    vouchers["JVAmount"] = Money::fromRaw(at % kRare == 0 ? 900'0000 : 100'0000);
    vouchers["Posted"] = false;
    vouchers.post();
  }
  for (int seq = 1; seq <= 1000; ++seq) {
    lines.append();
    lines["JVID"] = kLongVoucher;
    lines["Seq"] = seq;
    lines["GLAccountID"] = seq;
    lines["GLAmount"] = Money::fromRaw(seq % 2 == 0 ? -100'0000 : 100'0000);
    lines.post();
  }
}

store::Environment environmentOn(store::FileSystem& files) {
  return {files, store::systemClock(), "bench", "local", ::getpid()};
}

}  // namespace

void makeCompany(const std::string& folder, std::int64_t rows) {
  store::DiskFileSystem disk;
  store::Session session(environmentOn(disk));
  store::Database company(session, folder);
  store::createCompanyTables(company);
  for (const char* row : {"INSERT INTO Company (CompanyNo, CompanyName, FiscalYear, ApplicationVersion) VALUES (1, "
                          "'Many', 2026, '2017.6')",
                          "UPDATE JVCtl SET NextJVID = 5000001, NextJVNumber = 5000001"})
    store::Query(company, row).execute();
  fillAccounts(company, rows);
  fillVouchers(company, rows);
}

Office::Office(const std::string& folder, Report& report)
    : session(environmentOn(disk), person, desktop), input(session.app()), report_(report) {
  desktop.given().today = kToday;
  shell::registerScreens(session);
  ledger::registerScreens(session);
  session.attach(folder);
  app().open("TfrmQuillon");
}

form::Control& Office::control(const char* screen, const char* name) {
  form::Screen* there = app().find(screen);
  form::Control* found = there ? there->find(name) : nullptr;
  if (found == nullptr) throw Error(std::string("There is no ") + screen + "." + name);
  return *found;
}

void Office::set(const char* screen, const char* name, const std::string& text) {
  if (!input.set(*app().find(screen), control(screen, name), text).ok) throw Error(person.takeHeard());
}

void Office::click(const char* screen, const char* name) {
  if (!input.click(*app().find(screen), control(screen, name)).ok) throw Error(person.takeHeard());
}

std::size_t Office::look(const char* screen, const char* grid) {
  constexpr std::size_t kAround = 20;
  return control(screen, grid).grid()->rowsAround(kAround, kAround).rows.size();
}

void Office::measure(const std::string& name, int rounds, const std::function<void()>& action,
                     const std::function<void()>& undo, const std::string& note) {
  std::vector<double> times;
  int syncs = 0;
  for (int round = -1; round < rounds; ++round) {
    const int before = disk.syncs;
    Stopwatch watch;
    watch.start();
    action();
    watch.stop();
    if (round >= 0) {
      times.push_back(watch.seconds() * 1000);
      syncs += disk.syncs - before;
    }
    undo();
  }
  std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
  report_.add({.name = name, .ours = times[static_cast<std::size_t>(rounds / 2)], .unit = "ms", .note = note});
  if (syncs > 0) report_.add({.name = name + "-syncs", .ours = double(syncs) / rounds, .unit = "syncs"});
}

}  // namespace quillon::bench
