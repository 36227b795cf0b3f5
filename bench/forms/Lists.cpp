// Lists of a million rows: what is on view is all that they read.
#include "base/Errors.h"
#include "bench/forms/Office.h"
#include "form/Table.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 11;

struct List {
  std::string name, className, screen, grid;
  std::string field, box;  // that is found by, and where it is typed
  std::string text;        // of a row near the middle, which passes the filters
};

void measureList(Office& office, const List& list, const std::string& way, const std::string& filter) {
  const std::string name = list.name + way;
  const char* const screen = list.screen.c_str();
  const auto there = [&]() -> form::Screen& { return *office.app().find(screen); };
  const auto look = [&] { office.look(screen, list.grid.c_str()); };
  const auto open = [&] {
    office.app().open(list.className, {.filter = filter});
    look();
  };
  const auto close = [&] { office.app().dismiss(there()); };
  const auto home = [&] { office.input.key(there(), "Ctrl+Home"); };
  const auto press = [&](const char* key) {
    office.input.key(there(), key);
    look();
  };
  office.measure(name + "-open", kRounds, open, close);
  open();
  office.measure(
      name + "-page", kRounds, [&] { press("PgDn"); }, [] {});
  home();
  office.measure(
      name + "-end", kRounds, [&] { press("Ctrl+End"); }, home);
  office.measure(
      name + "-find", kRounds,
      [&] {
        office.person.modals.emplace_back([&](form::Screen& find) {
          form::Control& box = *find.find(list.box);
          office.input.focus(find, box);
          for (std::size_t length = 1; length <= list.text.size(); ++length)
            office.input.type(find, list.text.substr(0, length));
          office.input.click(find, *find.find("btnOK"));
        });
        office.input.keys(there(), list.text.substr(0, 1));
        look();
        if (there().tables().front()->value(list.field).toText() != list.text) throw Error(name + ": not found");
      },
      home, std::to_string(list.text.size()) + " keys and OK");
  close();
}

}  // namespace

// Each list whole, and under filters that pass one row in 1,000: one that an index serves and one that none does.
void lists(Office& office, std::int64_t rows) {
  const std::int64_t middle = rows / 2 / 1000 * 1000;
  const std::string digits = std::to_string(100'000'000 + middle).substr(1);
  const List accounts{"accounts",  "TfrmGLAccounts", "frmGLAccounts", "grdGLAccnt",
                      "GLAccount", "editGLAccount",  digits};
  measureList(office, accounts, "", "");
  measureList(office, accounts, "-type", "(AccountType = 5)");
  measureList(office, accounts, "-suspended", "(Suspended = true)");
  const List vouchers{
      "vouchers", "TfrmJVs", "frmJVs", "grdJV", "JVNumber", "editJVNumber", std::to_string(1000 + middle)};
  measureList(office, vouchers, "", "");
  measureList(office, vouchers, "-source", "(Source = 'AP')");
  measureList(office, vouchers, "-amount", "(JVAmount > 500)");
}

}  // namespace quillon::bench
