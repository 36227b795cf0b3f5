// The preview of a report: its prepared pages, to be turned, searched, printed and exported. Each report has one of its
// own, so that several can be looked at side by side.
#include <algorithm>

#include "base/Text.h"
#include "form/App.h"
#include "form/Converter.h"
#include "form/Layout.h"
#include "form/PageView.h"
#include "form/Place.h"
#include "form/Screen.h"
#include "platform/Desktop.h"
#include "reports/FileName.h"
#include "reports/MakeScreens.h"
#include "reports/Pages.h"
#include "reports/Preview.h"
#include "reports/WritePdf.h"
#include "reports/WriteSpreadsheet.h"
#include "shell/Session.h"

namespace quillon::reports {
namespace {

using form::refuse;
using store::Value;

constexpr int kLeastZoom = 20, kMostZoom = 200, kZoomStep = 10;

form::Choices zooms() {
  form::Choices all;
  for (int zoom = kLeastZoom; zoom <= kMostZoom; zoom += kZoomStep)
    all.emplace_back(zoom, std::to_string(zoom).append("%"));
  return all;
}

class TfrmPreview final : public form::Screen {
 public:
  explicit TfrmPreview(shell::Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return app().title() + " Reports"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void goTo(int page) { view_.page = std::clamp(page, 1, std::max(1, pageCount())); }
  void zoomBy(int percent) {
    view_.zoom = std::clamp(view_.zoom + percent, kLeastZoom, kMostZoom);
    zoom_.value = Value(view_.zoom);
  }
  void requirePages() const;
  void btnPrintClick();
  void btnPDFClick();
  void btnExcelClick();
  void btnFindClick();
  void writeTo(const form::FileQuestion& question, void (*write)(const PreparedPages&, const std::string&));
  int pageCount() const { return view_.pages ? view_.pages->pageCount() : 0; }
  const PreparedPages& pages() const { return static_cast<const PreparedPages&>(*view_.pages); }

  shell::Session& session_;
  form::PageView view_;
  form::Variable zoom_, search_;
};

void TfrmPreview::build(form::Layout& l) {
  const auto before = [this] { return view_.page > 1; };
  const auto behind = [this] { return view_.page < pageCount(); };
  zoom_.value = Value(view_.zoom);
  zoom_.change = [this](const Value&) { view_.zoom = zoom_.value.asInt(); };
  form::Control& first = l.button("btnFirst", "First", [this] { goTo(1); }).enabledWhen(before).key("Ctrl+Home");
  form::Control& prior =
      l.button("btnPrev", "&Previous", [this] { goTo(view_.page - 1); }).enabledWhen(before).key("PgUp");
  form::Control& next = l.button("btnNext", "&Next", [this] { goTo(view_.page + 1); }).enabledWhen(behind).key("PgDn");
  form::Control& last = l.button("btnLast", "Last", [this] { goTo(pageCount()); }).enabledWhen(behind).key("Ctrl+End");
  form::Control& number = l.label("panelPageNumber", [this] {
    return "Page " + std::to_string(view_.page) + " of " + std::to_string(std::max(1, pageCount()));
  });
  form::Control& zoom = l.chooser("cboZoom", "&Zoom:", zoom_, form::choicesConverter(zooms()));
  form::Control& closer = l.button("btnZoomIn", "+", [this] { zoomBy(kZoomStep); }).key("Ctrl++").hint("Larger");
  form::Control& farther = l.button("btnZoomOut", "-", [this] { zoomBy(-kZoomStep); }).key("Ctrl+-").hint("Smaller");
  form::Control& search = l.edit("editSearch", "&Search:", search_, form::textConverter(100)).wide(20);
  form::Control& find = l.button("btnFind", "&Find Next", &TfrmPreview::btnFindClick).key("F3");
  form::Control& print = l.button("btnPrint", "P&rint...", &TfrmPreview::btnPrintClick).key("Ctrl+P");
  form::Control& pdf = l.button("btnPDF", "PD&F...", &TfrmPreview::btnPDFClick).hint("Export Report to PDF");
  form::Control& excel = l.button("btnExcel", "&Excel...", &TfrmPreview::btnExcelClick).hint("Export Report to Excel");
  l.row(first, prior, next, last, number, zoom, farther, closer);
  l.row(search, find, print, pdf, excel);
  l.pageview("pgvPages", view_);
}

void TfrmPreview::shown(const form::Open& open) {
  if (const auto* pages = std::any_cast<std::shared_ptr<form::PageSource>>(&open.draft)) view_.pages = *pages;
  view_.page = 1;
  setFocus(find("pgvPages"));
  if (view_.pages) root().sized(pages().landscape() ? form::Size{1150, 900} : form::Size{900, 1250});
}

// A part of a report is not printed or written as if it were all of it.
void TfrmPreview::requirePages() const {
  if (!pages().complete) refuse("Not all pages of the report are there yet");
  if (pageCount() == 0) refuse("The report has no pages");
}

// Commands.

void TfrmPreview::btnPrintClick() {
  requirePages();
  const std::optional<platform::Printer> standard = session_.desktop().defaultPrinter();
  const std::optional<form::PrintChoice> choice =
      app().person().choosePrint({.offered = {.printer = standard ? standard->name : "", .toPage = pageCount()},
                                  .pages = pageCount(),
                                  .printers = session_.desktop().printerNames()});
  if (!choice) form::abort();
  app().person().hourglass(true);
  reports::print(session_, pages(), *choice);
}

void TfrmPreview::btnPDFClick() {
  writeTo({.title = "Export Report to PDF", .filter = "PDF files (*.pdf)|*.pdf", .extension = "pdf"}, writePdf);
}

void TfrmPreview::btnExcelClick() {
  writeTo({.title = "Export Report to Excel", .filter = "Excel files (*.xlsx)|*.xlsx", .extension = "xlsx"},
          writeSpreadsheet);
}

void TfrmPreview::writeTo(const form::FileQuestion& question, void (*write)(const PreparedPages&, const std::string&)) {
  requirePages();
  form::FileQuestion asked = question;
  asked.name = fileNameOf(pages().reportTitle);
  asked.saving = true;
  const std::optional<std::string> path = app().person().chooseFile(asked);
  if (!path) form::abort();
  app().person().hourglass(true);
  write(pages(), *path);
  app().person().openOutside(*path);
}

// From the page on view on, which is passed over when it shows the same text already.
void TfrmPreview::btnFindClick() {
  const std::string wanted = search_.value.isNull() ? std::string() : search_.value.asText();
  if (wanted.empty()) refuse("Search text must be entered", form::Place{.control = "editSearch"});
  const std::string folded = foldCase(wanted);
  const bool again = equalFolded(view_.found, wanted);
  for (int step = again ? 1 : 0; step < pageCount() + (again ? 1 : 0); ++step) {
    const int page = (view_.page - 1 + step) % pageCount() + 1;
    if (foldCase(pages().pageText(page)).find(folded) == std::string::npos) continue;
    view_.found = wanted;
    view_.page = page;
    return;
  }
  refuse("'" + wanted + "' not found", form::Place{.control = "editSearch"});
}

}  // namespace

std::unique_ptr<form::Screen> makePreview(shell::Session& session) { return std::make_unique<TfrmPreview>(session); }

}  // namespace quillon::reports
