#include "shell/CopyTree.h"

#include "base/Text.h"
#include "platform/CopyFolder.h"
#include "platform/Desktop.h"
#include "shell/Session.h"
#include "shell/SoleUse.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/journal/CommitProtocol.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::shell {
namespace {

// Everybody else kept out of every table of a company, and every change in its place in the files. A table that cannot
// be opened at all is damaged, and is copied as it is.
class Still {
 public:
  Still(store::Session& store, const std::string& folder) : database_(store, folder) {
    hold("Company");
    for (const std::string& table : database_.tableNames())
      if (!equalFolded(table, "Company")) hold(table);
    database_.protocol()->checkpoint();
  }

 private:
  void hold(const std::string& table) {
    auto cursor = std::make_unique<store::Cursor>(database_, table);
    cursor->setExclusive(true);
    try {
      cursor->open();
    } catch (const store::StoreError& error) {
      if (error.code() == store::Code::tableInUse) throw Error(notAlone());
      return;
    }
    held_.push_back(std::move(cursor));
  }

  store::Database database_;
  std::vector<std::unique_ptr<store::Cursor>> held_;
};

bool holdsCompany(store::Session& store, const std::string& folder) {
  store::FileSystem& files = store.environment().files;
  return files.folderExists(folder) && files.exists(store::findFile(files, folder, "Company.DAT"));
}

// What a company and its copies have in common: the name until it is changed, the file until it is packed.
struct Mark {
  std::string name;
  std::uint64_t file = 0;
};

Mark markOf(store::Database& database) {
  store::Cursor company(database, "Company");
  company.open();
  const int marker = 0;
  store::Table& table = database.openTable("Company", &marker, false);
  Mark mark{company.isEmpty() ? "" : company["CompanyName"].asText(), table.files().fileId()};
  database.closeTable(table, &marker);
  return mark;
}

// An earlier copy, or another company, is not replaced under those who have it open. A damaged one is.
void requireUnused(store::Session& store, const std::string& folder) {
  if (!holdsCompany(store, folder)) return;
  try {
    store::Database database(store, folder);
    store::Cursor company(database, "Company");
    company.setExclusive(true);
    company.open();
  } catch (const store::StoreError& error) {
    if (error.code() == store::Code::tableInUse) throw Error("Somebody has the company in '" + folder + "' open");
  }
}

class Hourglass {
 public:
  explicit Hourglass(form::Person& person) : person_(person) { person_.hourglass(true); }
  ~Hourglass() { person_.hourglass(false); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  form::Person& person_;
};

}  // namespace

std::string weekdayFolder(platform::Desktop& desktop, const std::string& company) {
  return company + (company.ends_with('/') ? "backup/" : "/backup/") + desktop.weekdayName(desktop.today());
}

std::optional<std::string> otherCompanyIn(store::Database& company, const std::string& to) {
  if (!holdsCompany(company.session(), to)) return {};
  try {
    const Mark ours = markOf(company);
    store::Database database(company.session(), to);
    const Mark theirs = markOf(database);
    if (theirs.file == ours.file || equalFolded(theirs.name, ours.name)) return {};
    return theirs.name;
  } catch (const store::StoreError&) {
    return {};  // nobody can work with it, or somebody does, which the copying finds out
  }
}

void copyCompany(store::Session& store, const std::string& company, const std::string& to,
                 const std::function<void(const platform::CopyProgress&)>& progress) {
  requireUnused(store, to);
  const Still still(store, company);
  platform::copyFolder(company, to, progress);
}

bool copyTree(Session& session, const std::string& company, const std::string& to) {
  struct Ended {};
  form::Person& person = session.person();
  const Hourglass hourglass(person);
  try {
    copyCompany(session.store(), company, to, [&person](const platform::CopyProgress& copied) {
      if (!person.progress({.text = "Backing up database",
                            .done = static_cast<long>(copied.done),
                            .total = static_cast<long>(copied.total),
                            .cancellable = true}))
        throw Ended();
    });
    return true;
  } catch (const Ended&) {
    return false;
  }
}

}  // namespace quillon::shell
