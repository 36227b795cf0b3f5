#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillon::platform {
class Desktop;
struct CopyProgress;
}  // namespace quillon::platform
namespace quillon::store {
class Database;
class Session;
}  // namespace quillon::store

namespace quillon::shell {

class Session;

// Where a company is copied to when nobody says otherwise: "backup" in its folder, and there the day of the week, so
// that it keeps seven copies.
std::string weekdayFolder(platform::Desktop& desktop, const std::string& company);

// The name of another company that has its files, or a copy of them, in a folder, where a copy of this one would
// replace them. None: there is nothing readable, or an earlier copy of this one, which may have had another name.
std::optional<std::string> otherCompanyIn(store::Database& company, const std::string& to);

// Copies the files of a company that this process has closed, without the folders beside them, into a folder, which is
// made where missing. Files of the same name there are replaced when all are copied, so that what stops the copying
// leaves an earlier copy whole. Nobody else can open a table of the company meanwhile.
// Error with notAlone() when somebody is in it, when somebody has the earlier copy open, else as platform::copyFolder.
void copyCompany(store::Session& store, const std::string& company, const std::string& to,
                 const std::function<void(const platform::CopyProgress&)>& progress);

// The same before the person, with the hourglass and a progress. False: they ended it.
bool copyTree(Session& session, const std::string& company, const std::string& to);

}  // namespace quillon::shell
