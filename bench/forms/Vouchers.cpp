// A voucher is opened, entered and saved: what a key and a button cost.
#include <vector>

#include "base/Errors.h"
#include "bench/forms/Office.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 21;

void enterLine(Office& office, std::uint64_t row, const char* account, const char* amount) {
  form::Screen& screen = *office.app().find("frmJV");
  form::Control& grid = office.control("frmJV", "grdJVDet");
  for (const auto& [column, text] : {std::pair("GLAccount", account), std::pair("GLAmount", amount)})
    if (!office.input.setCell(screen, grid, row, column, text).ok) throw Error(office.person.takeHeard());
}

// What the disk takes to force one page, which is the most of every save.
void measureSync(Office& office) {
  const auto file = office.disk.open(office.session.dataFolder + "/sync", store::OpenMode::create);
  const std::vector<std::byte> page(4096);
  office.measure(
      "one-sync", kRounds,
      [&] {
        file->write(0, page);
        file->sync();
      },
      [] {});
}

}  // namespace

void vouchers(Office& office) {
  measureSync(office);
  const auto close = [&] { office.app().dismiss(*office.app().find("frmJV")); };
  office.measure(
      "open-1000-lines", kRounds,
      [&] {
        office.app().open("TfrmJV", {.locate = {{"JVID", store::Value(kLongVoucher)}}});
        if (office.look("frmJV", "grdJVDet") != 41) throw Error("The lines are not there");
      },
      close);
  office.app().open("TfrmJV", {.locate = {{"JVID", store::Value(kLongVoucher)}}});
  office.measure(
      "line-of-1000", kRounds, [&] { enterLine(office, 500, "00000003", "100"); },
      [&] { office.input.key(*office.app().find("frmJV"), "Esc"); });
  close();

  office.measure(
      "new", kRounds, [&] { office.app().open("TfrmJV", {.newRow = true}); }, close);
  const auto open = [&] {
    office.app().open("TfrmJV", {.newRow = true});
    office.set("frmJV", "editTransDescription", "Rent");
  };
  open();
  office.measure(
      "save-3-lines", kRounds,
      [&] {
        const char* const lines[3][2] = {{"00000001", "100"}, {"00000002", "50"}, {"00000003", "-150"}};
        for (const auto& line : lines) {
          office.click("frmJV", "btnNew");
          enterLine(office, static_cast<std::uint64_t>(&line - lines), line[0], line[1]);
        }
        office.click("frmJV", "btnOK");
      },
      open, "3 accounts, 3 amounts, OK");
  close();
}

}  // namespace quillon::bench
