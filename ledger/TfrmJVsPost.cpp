// Post Journal Vouchers: every unposted voucher, of every source, reaches the ledger.
//
// Keeps: all of a run or none of it.
#include <optional>

#include "form/PostingRun.h"
#include "ledger/MakeScreens.h"
#include "ledger/PostVouchers.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmJVsPost final : public form::PostingRun {
 public:
  explicit TfrmJVsPost(shell::Session& session)
      : PostingRun(session.app(),
                   {.title = "Post Journal Vouchers",
                    .counted = " JV(s) to be posted",
                    .documents = "SELECT * FROM JV WHERE Posted = false",
                    .screen = "frmJV",
                    .name = "Journal Voucher",
                    .locks = {{"JV", form::RunLock::table,
                               "Unable to lock JVs table... this table is being updated by another job."},
                              {"GLActual", form::RunLock::table, kTotalsAreLocked}},
                    .transaction = kPostingTables}) {}

 private:
  void begin() override { posting_.emplace(database()); }
  void post(store::Cursor& qryJV) override { posting_->post(qryJV.value("JVID")); }
  void end() override { posting_.reset(); }

  std::optional<PostVouchers> posting_;
};

}  // namespace

ScreenPtr makeJVsPost(shell::Session& session) { return std::make_unique<TfrmJVsPost>(session); }

}  // namespace quillon::ledger
