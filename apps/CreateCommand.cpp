#include "apps/CreateCommand.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "apps/LocalEnvironment.h"
#include "base/Errors.h"
#include "store/Database.h"
#include "store/Session.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "store/vfs/File.h"

namespace quillon::apps {
namespace {

// They fill the company, for which the rest of the program is needed.
constexpr std::string_view kNotHere[] = {"--sample", "--name", "--chart", "--year", "--country", "--currency"};

void refuseOptions(Arguments arguments) {
  for (const std::string_view word : arguments) {
    if (!word.starts_with('-')) continue;
    const std::string option(word.substr(0, word.find('=')));
    if (std::ranges::count(kNotHere, option)) throw Error("create: this version does not have the option " + option);
    throw UsageError("create has no option " + option);
  }
}

}  // namespace

ExitStatus createCommand(Arguments arguments) {
  refuseOptions(arguments);
  if (arguments.size() != 1) throw UsageError("create takes one folder");
  const std::string folder(arguments.front());
  const LocalEnvironment environment;
  environment.get().files.makeFolder(folder);
  store::Session session(environment.get());
  store::Database database(session, folder);
  if (database.exists("Company")) throw Error(folder + " is a company already; create makes only new ones");
  store::createCompanyTables(database);
  std::cout << folder << ": " << store::companyTables().size() << " tables\n";
  return ExitStatus::done;
}

}  // namespace quillon::apps
