#include "reports/Preview.h"

#include <filesystem>

#include "base/Errors.h"
#include "form/App.h"
#include "platform/Desktop.h"
#include "reports/FileName.h"
#include "reports/Pages.h"
#include "reports/WritePdf.h"
#include "shell/Printer.h"
#include "shell/Session.h"

namespace quillon::reports {

std::unique_ptr<form::PageRun> startReport(shell::Session& session, std::string_view className,
                                           const form::Open& open) {
  const form::ReportEntry* entry = session.registry().findReport(className);
  if (entry == nullptr) throw Error("This version does not have the report '" + std::string(className) + "'");
  session.app().refreshLookUps();  // so that what others changed is seen
  return entry->make(open);
}

void preview(shell::Session& session, std::string_view className, const form::Open& open) {
  shell::requirePrinter(session);
  form::App& app = session.app();
  app.person().hourglass(true);
  const std::unique_ptr<form::PageRun> run = startReport(session, className, open);
  run->step();
  form::Screen& screen = app.open("TfrmPreview", {.draft = run->pages()});
  app.work(screen, [&] { return run->step(); });
  app.person().hourglass(false);
}

void print(shell::Session& session, const PreparedPages& pages, const form::PrintChoice& choice) {
  const std::string folder = session.desktop().scratchFolder();
  const std::string path = (std::filesystem::path(folder) / (fileNameOf(pages.reportTitle) + ".pdf")).string();
  struct Gone {
    const std::string& path;
    ~Gone() {
      std::error_code ignored;
      std::filesystem::remove(path, ignored);
    }
  } const gone{path};
  writePdf(pages, path);
  session.desktop().print({.file = path,
                           .title = pages.reportTitle,
                           .printer = choice.printer,
                           .fromPage = choice.fromPage,
                           .toPage = choice.toPage,
                           .copies = choice.copies},
                          [&] { session.person().progress({.text = "Printing", .done = 0, .total = choice.copies}); });
}

}  // namespace quillon::reports
