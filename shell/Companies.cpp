#include "shell/Companies.h"

#include <algorithm>
#include <filesystem>

#include "base/Text.h"
#include "shell/CompanySession.h"
#include "shell/Session.h"
#include "store/vfs/File.h"

namespace quillon::shell {

std::vector<std::string> companyNames(Session& session) {
  std::vector<std::string> names = session.settings().keys("Companies");
  std::erase(names, "");  // a line by hand may have no key
  std::ranges::sort(names, [](const std::string& a, const std::string& b) { return compareFolded(a, b) < 0; });
  return names;
}

std::string companyFolder(Session& session, const std::string& name) {
  return session.settings().text("Companies", name);
}

form::ConverterPtr companyChoices(Session& session) {
  return form::choicesConverter([&session] {
    form::Choices choices;
    for (const std::string& name : session.companiesMenu) choices.emplace_back(store::Value(name), name);
    return choices;
  });
}

void rebuildCompaniesMenu(Session& session) { session.companiesMenu = companyNames(session); }

std::string absoluteFolder(const std::string& folder) {
  std::string path = std::filesystem::absolute(folder).lexically_normal().string();
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

bool holdsCompany(Session& session, const std::string& folder) {
  store::FileSystem& files = session.store().environment().files;
  if (folder.empty() || !files.folderExists(folder)) return false;
  return std::ranges::any_of(files.list(folder),
                             [](const std::string& name) { return equalFolded(name, "Company.DAT"); });
}

bool selectCompany(Session& session, const std::string& name) {
  const std::string folder = companyFolder(session, name);
  if (equalFolded(name, kSampleData) && !holdsCompany(session, folder))
    return session.app().runModal("TfrmCompanyDatabase", {.values = {{"mode", "sample"}}}).confirmed;
  return enterCompany(session, name, folder);
}

}  // namespace quillon::shell
