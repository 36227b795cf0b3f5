#include "shell/BackupAtExit.h"

#include "shell/CopyTree.h"
#include "shell/Session.h"
#include "shell/SoleUse.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

// Of Company.BackupOnExit.
constexpr int kAlways = 1, kAsk = 3;

int chosen(Session& session) {
  store::Cursor& company = session.tblCompany();
  company.refresh();
  if (company.isEmpty()) return 0;
  if (!company["CompanyName"].isNull() && company["BackupOnExit"].isNull()) session.app().runModal("TfrmBackupOptions");
  return company["BackupOnExit"].isNull() ? 0 : static_cast<int>(company["BackupOnExit"].asInt());
}

void copyAtOnce(Session& session) {
  session.app().closeAll();
  SoleUse alone(session);
  alone.stayClosed();
  copyTree(session, session.dataFolder, weekdayFolder(session.desktop(), session.dataFolder));
}

// The screen's own command tests again; this test spares the question when the answer would be of no use.
void ask(Session& session) {
  { const SoleUse alone(session); }
  session.app().runModal("TfrmBackup");
}

}  // namespace

void backUpAtExit(Session& session) {
  if (!session.hasCompany()) return;
  try {
    const int choice = chosen(session);
    if (choice == kAlways) copyAtOnce(session);
    if (choice == kAsk) ask(session);
  } catch (const Error&) {
    // A busy company, or one that cannot be copied, is not backed up.
  }
}

}  // namespace quillon::shell
