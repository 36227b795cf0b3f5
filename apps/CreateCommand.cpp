#include "apps/CreateCommand.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iostream>
#include <map>
#include <string>

#include "apps/LocalEnvironment.h"
#include "apps/Program.h"
#include "base/Errors.h"
#include "platform/LinuxDesktop.h"
#include "shell/CountryDefaults.h"
#include "shell/NewCompany.h"
#include "shell/SampleCompany.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Session.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "store/vfs/File.h"

namespace quillon::apps {
namespace {

// What the words ask for: options with their values, "--sample" with none.
struct Asked {
  std::string folder;
  std::map<std::string, std::string, std::less<>> options;

  bool has(std::string_view option) const { return options.contains(option); }
  std::string value(std::string_view option, const std::string& otherwise = {}) const {
    const auto found = options.find(option);
    return found == options.end() ? otherwise : found->second;
  }
};

Asked readOptions(Arguments arguments) {
  constexpr std::array<std::string_view, 6> kWithValue = {"--name",    "--chart",    "--year",
                                                          "--country", "--currency", "--today"};
  Asked asked;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i];
    if (!word.starts_with("--")) {
      if (!asked.folder.empty()) throw UsageError("create takes one folder");
      asked.folder = word;
      continue;
    }
    const std::size_t mark = std::min(word.find('='), word.size());
    const std::string option(word.substr(0, mark));
    std::string value;
    if (option != "--sample") {
      if (!std::ranges::count(kWithValue, option)) throw UsageError("create has no option " + option);
      if (mark < word.size())
        value = word.substr(mark + 1);
      else if (++i < arguments.size())
        value = arguments[i];
      if (value.empty()) throw UsageError(option + " needs a value");
    } else if (mark < word.size()) {
      throw UsageError("--sample takes no value");
    }
    if (!asked.options.emplace(option, value).second) throw UsageError(option + " stands there twice");
  }
  if (asked.folder.empty()) throw UsageError("create takes one folder");
  return asked;
}

void checkOptions(const Asked& asked) {
  if (asked.has("--sample") && asked.has("--name")) throw UsageError("--sample and --name are two companies");
  for (const char* option : {"--chart", "--year", "--currency"})
    if (asked.has(option) && !asked.has("--name")) throw UsageError(std::string(option) + " goes with --name");
  if (asked.has("--name") && !asked.has("--chart"))
    throw UsageError("--name needs --chart, which is service, trade or manufacturing");
}

Date todayOf(const Asked& asked, platform::Desktop& desktop) {
  return asked.has("--today") ? dayOf(asked.value("--today")) : desktop.today();
}

int yearOf(const Asked& asked, Date today) {
  if (!asked.has("--year")) return today.year();
  const std::string text = asked.value("--year");
  int year = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), year);
  if (error != std::errc() || end != text.data() + text.size())
    throw UsageError("--year takes a year as YYYY, not " + text);
  return year;
}

shell::NewCompany companyOf(const Asked& asked, const std::string& country, Date today) {
  const auto chart = shell::chartNamed(asked.value("--chart"));
  if (!chart) throw UsageError("--chart takes service, trade or manufacturing, not " + asked.value("--chart"));
  const int year = yearOf(asked, today);
  shell::NewCompany company = shell::suggestedCompany(country, {year, 1, year}, today);
  company.name = asked.value("--name");
  company.chart = *chart;
  company.currency = asked.value("--currency", company.currency);
  if (company.currency.empty())
    throw UsageError("--currency is needed: none is known for the country '" + country + "'");
  shell::requireSound(company);
  return company;
}

}  // namespace

ExitStatus createCommand(Arguments arguments) {
  const Asked asked = readOptions(arguments);
  checkOptions(asked);
  platform::LinuxDesktop desktop;
  const std::string country = asked.value("--country", desktop.countryName());
  const Date today = todayOf(asked, desktop);
  std::optional<shell::NewCompany> company;
  if (asked.has("--name")) company = companyOf(asked, country, today);

  const LocalEnvironment environment;
  environment.get().files.makeFolder(asked.folder);
  store::Session session(environment.get());
  store::Database database(session, asked.folder);
  if (database.exists("Company")) throw Error(asked.folder + " is a company already; create makes only new ones");
  store::createCompanyTables(database);
  if (company) shell::fillCompany(database, *company);
  if (asked.has("--sample")) shell::fillSampleCompany(database, shell::countryDefaults(country), today);
  std::cout << asked.folder << ": " << store::companyTables().size() << " tables\n";
  return ExitStatus::done;
}

}  // namespace quillon::apps
