#include "apps/ReportCommand.h"

#include <iostream>
#include <map>
#include <string>

#include "apps/AbsentPerson.h"
#include "apps/Program.h"
#include "base/Errors.h"
#include "form/App.h"
#include "form/PageRun.h"
#include "reports/Pages.h"
#include "reports/Preview.h"
#include "reports/WritePdf.h"
#include "reports/WriteSpreadsheet.h"

namespace quillon::apps {
namespace {

struct Asked {
  std::string folder, report;
  form::Open open;
  std::string pdf, xlsx;
  bool text = false;
  std::vector<std::string_view> others;  // for the program
};

Asked read(Arguments arguments) {
  Asked asked;
  std::vector<std::string> words;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i];
    if (word == "--pdf" || word == "--xlsx") {
      if (++i == arguments.size()) throw UsageError(std::string(word) + " needs a file");
      (word == "--pdf" ? asked.pdf : asked.xlsx) = arguments[i];
    } else if (word == "--text") {
      asked.text = true;
    } else {
      asked.others.push_back(word);
    }
  }
  return asked;
}

void takeWords(Asked& asked, const std::vector<std::string>& words) {
  if (words.size() < 2) throw UsageError("report takes a folder and the name of a report");
  asked.folder = words[0];
  asked.report = words[1];
  for (std::size_t i = 2; i < words.size(); ++i) {
    const std::size_t mark = words[i].find('=');
    if (mark == std::string::npos) throw UsageError("'" + words[i] + "' is no key=value");
    const std::string key = words[i].substr(0, mark), value = words[i].substr(mark + 1);
    if (key == "filter")
      asked.open.filter = value;
    else
      asked.open.values[key] = store::Value(value);
  }
  if (static_cast<int>(!asked.pdf.empty()) + static_cast<int>(!asked.xlsx.empty()) + static_cast<int>(asked.text) != 1)
    throw UsageError("report needs one of --pdf FILE, --xlsx FILE and --text");
}

void requireReport(Program& program, const std::string& name) {
  const form::Registry& registry = program.session().registry();
  const form::ReportEntry* entry = registry.findReport(name);
  if (entry == nullptr) {
    std::string all;
    for (const form::ReportEntry& some : registry.reports()) all += (all.empty() ? "" : ", ") + some.className;
    throw Error("There is no report '" + name + "'; there are " + all);
  }
  const form::ScreenEntry* screen = registry.find(entry->screen);
  if (screen == nullptr || screen->right.empty() || !program.app().checkAccess) return;
  if (!program.app().checkAccess(screen->right, screen->displayName))
    throw Error("The report needs a right that is missing");
}

}  // namespace

ExitStatus reportCommand(Arguments arguments) {
  Asked asked = read(arguments);
  const ProgramOptions options = readProgramOptions(asked.others);
  takeWords(asked, options.words);
  AbsentPerson person;
  Program program(options, person);
  program.start(asked.folder);
  if (!program.session().hasCompany())
    throw Error(person.told().empty() ? asked.folder + ": no company" : person.told());
  requireReport(program, asked.report);
  const std::unique_ptr<form::PageRun> run = reports::startReport(program.session(), asked.report, asked.open);
  while (run->step()) {
  }
  const auto pages = std::static_pointer_cast<reports::PreparedPages>(run->pages());
  if (!asked.pdf.empty()) reports::writePdf(*pages, asked.pdf);
  if (!asked.xlsx.empty()) reports::writeSpreadsheet(*pages, asked.xlsx);
  for (int page = 1; asked.text && page <= pages->pageCount(); ++page)
    std::cout << (page > 1 ? "\f" : "") << pages->pageText(page);
  program.end();
  return ExitStatus::done;
}

}  // namespace quillon::apps
