// A financial statement's definition: title and columns, its lines in the order of print, and of a detail line the
// accounts that it shows and the totals that it goes into.
//
// Keeps: a line's accounts and totals are those of a line that is there, and of a detail line. Lines, accounts and
// totals are saved one by one under the header's lock; Cancel puts all three back as they were before the first change.
#include "base/Text.h"
#include "form/App.h"
#include "form/ControlRow.h"
#include "form/Grid.h"
#include "form/NextId.h"
#include "form/RecordScreen.h"
#include "ledger/ComposeStatement.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Glance.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using form::Control;
using form::focus;
using form::grid;
using form::refuse;
using store::Value;

constexpr int kAttempts = 150;  // 10 ms apart: as long as any lock is waited for
constexpr const char* kHasProperties =
    "To change a detail line to a heading or total you must first delete the Detail Line Properties (accounts and "
    "totals).";
constexpr const char* kNotDetail = "Only a detail line has accounts, and totals that it goes into.";

// One of a list, that may show what the list does not offer: an older name, a total that is none any more.
class Listed final : public form::Converter {
 public:
  Listed(std::function<form::Choices()> ask, std::function<std::string(const Value&)> text)
      : ask_(std::move(ask)), text_(std::move(text)) {}
  std::string show(const Value& value) const override { return value.isNull() ? "" : text_(value); }
  Value read(std::string_view typed) const override {
    if (trim(typed).empty()) return {};
    for (const auto& [value, text] : ask_())
      if (equalFolded(text, trim(typed))) return value;
    throw Error("Choose an item from the list");
  }
  form::Choices choices() const override { return ask_(); }

 private:
  std::function<form::Choices()> ask_;
  std::function<std::string(const Value&)> text_;
};

template <typename Texts>
form::ConverterPtr listed(const Texts& texts) {
  form::Choices choices;
  for (const std::string_view text : texts) choices.emplace_back(Value(text), text);
  return std::make_shared<Listed>([choices] { return choices; }, [](const Value& value) { return value.asText(); });
}

class TfrmFinancialStmt final : public form::RecordScreen {
 public:
  explicit TfrmFinancialStmt(shell::Session& session);
  std::string title() override { return isNew() ? "New Financial Statement" : "Financial Statement"; }

 private:
  void build(form::Layout& layout) override;
  void recordShown(const form::Open& open) override;
  void tblFStmtNewRecord();
  void tblFStmtBeforePost();
  void tblFStmtLinNewRecord();
  void tblFStmtLinBeforePost();
  void tblFStmtLinBeforeDelete();
  void tblFStmtLinLineTypeValidate(const Value& next);
  void tblFStmtLAcBeforePost();
  void tblFStmtLToBeforePost();
  void btnAutoCreateClick();

  Control& lineGrid(form::Layout& l);
  Control& properties(form::Layout& l);
  form::ConverterPtr totalLines();
  std::string headingOf(const Value& seq);
  bool isDetailLine();
  void beginChange();
  void beginPropertyChange();
  void tellRepeated(form::Table& table, const char* words, const char* column);
  void append(form::Table& table, const char* column);
  static void remove(form::Table& table);
  void move(bool up);
  std::optional<StatementKind> askKind();

  form::Table tblFStmt{*this, "FStmt"};
  form::Table tblFStmtLin{*this, "FStmtLin", store::follows{tblFStmt, "StmtID", "StmtIDLineNo"}};
  form::Table tblFStmtLAc{*this, "FStmtLAc", store::follows{tblFStmtLin, "StmtID;Seq"}};
  form::Table tblFStmtLTo{*this, "FStmtLTo", store::follows{tblFStmtLin, "StmtID;Seq", "SeqEntered1"}};
  // Of all lines, for what Cancel puts back.
  form::Table tblAllAccounts{*this, "FStmtLAc", store::follows{tblFStmt, "StmtID"}, "tblAllAccounts"};
  form::Table tblAllTotals{*this, "FStmtLTo", store::follows{tblFStmt, "StmtID"}, "tblAllTotals"};
  form::LineSnapshot lines_{tblFStmtLin}, accounts_{tblAllAccounts}, totals_{tblAllTotals};
};

TfrmFinancialStmt::TfrmFinancialStmt(shell::Session& session)
    : RecordScreen(session.app(), {.key = "StmtID", .list = "frmGLReports", .keyViolation = {}, .keyFocus = {}}) {
  for (form::LineSnapshot* snapshot : {&lines_, &accounts_, &totals_}) restores(*snapshot);
  tblFStmt.events.onNewRecord = [this] { tblFStmtNewRecord(); };
  tblFStmt.events.beforePost = [this] { tblFStmtBeforePost(); };
  tblFStmtLin.events.beforeEdit = tblFStmtLin.events.beforeInsert = [this] { beginChange(); };
  tblFStmtLin.events.onNewRecord = [this] { tblFStmtLinNewRecord(); };
  tblFStmtLin.events.beforePost = [this] { tblFStmtLinBeforePost(); };
  tblFStmtLin.events.beforeDelete = [this] { tblFStmtLinBeforeDelete(); };
  tblFStmtLin.validate("LineType", [this](const Value& next) { tblFStmtLinLineTypeValidate(next); });
  for (form::Table* table : {&tblFStmtLAc, &tblFStmtLTo})
    table->events.beforeEdit = table->events.beforeInsert =
        table->events.beforeDelete = [this] { beginPropertyChange(); };
  tblFStmtLAc.events.beforePost = [this] { tblFStmtLAcBeforePost(); };
  tblFStmtLTo.events.beforePost = [this] { tblFStmtLToBeforePost(); };
  tellRepeated(tblFStmtLAc,
               "'From Account' has already been specified...\rEnter a different account number or press Esc to undo",
               "AccountFrom");
  tellRepeated(tblFStmtLTo, "'Total' has already been specified", "TotalLineSeq");
  for (form::Table* table : {&tblFStmtLin, &tblFStmtLAc, &tblFStmtLTo})
    table->events.afterPost = table->events.afterDelete = [table] { table->flush(); };
}

void TfrmFinancialStmt::tellRepeated(form::Table& table, const char* words, const char* column) {
  table.events.onPostError = [&table, words, column](const store::StoreError& error) {
    if (error.code() == store::Code::keyViolation) refuse(words, grid(table).at(column));
    return store::ErrorAnswer::fail;
  };
}

void TfrmFinancialStmt::build(form::Layout& l) {
  l.row(l.field("&Title:", tblFStmt["StmtTitle"]),
        l.chooser("&Column format:", tblFStmt["ColumnFormat"], listed(kColumnFormats)).wide(30));
  Control& lines = lineGrid(l);
  Control& commands =
      l.row(l.button("btnNew", "&New", [this] { append(tblFStmtLin, "LineHeading"); }).hint("New line"),
            l.button("btnDelete", "&Delete", [this] { remove(tblFStmtLin); }).hint("Delete line").abandons(),
            l.button("btnUp", "&Up", [this] { move(true); }).hint("Move the line up").saves(),
            l.button("btnDown", "Do&wn", [this] { move(false); }).hint("Move the line down").saves(),
            l.button("btnAutoCreate", "&AutoCreate", &TfrmFinancialStmt::btnAutoCreateClick)
                .hint("A line for each account, and totals"));
  Control& definition = l.group("Lines", lines, commands);
  l.pages(l.group("&Lines", definition, properties(l)), l.group("N&otes", l.memo("", tblFStmt["Notes"])));
  l.row(l.button("btnOK", "OK", &TfrmFinancialStmt::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmFinancialStmt::btnCancelClick).abandons());
}

Control& TfrmFinancialStmt::lineGrid(form::Layout& l) {
  return l.lines(tblFStmtLin, l.columns(l.column("Heading", tblFStmtLin["LineHeading"]),
                                        l.column("Type", tblFStmtLin["LineType"], listed(kLineTypes))));
}

Control& TfrmFinancialStmt::properties(form::Layout& l) {
  auto columns = l.columns(l.pickedColumn("From Account", tblFStmtLAc["AccountFrom"], accountCode()),
                           l.pickedColumn("To Account", tblFStmtLAc["AccountTo"], accountCode()));
  for (int level = 1; level <= kSubaccountLevels; ++level)
    columns.push_back(
        l.codeColumn("Sub" + std::to_string(level), tblFStmtLAc[subaccountField(level)], subaccountCode(level)));
  columns.push_back(l.shownColumn(
      "Name", "Name",
      [this] {
        return app().lookUp("GLAccnt").lookup("GLAccount", {tblFStmtLAc.value("AccountFrom")}, "AccountName").asText();
      },
      30));
  const auto told = [&](form::Table& table, std::vector<std::unique_ptr<Control>> all) -> Control& {
    Control& control = l.lines(table, std::move(all));
    control.grid()->mayChangeWhen([this] { return isDetailLine(); });
    return control.readOnlyWhen([this] { return !isDetailLine(); }).explains(std::string(kNotDetail));
  };
  const auto commands = [&](form::Table& table, const std::string& what, const char* column) -> Control& {
    const auto isDetail = [this] { return isDetailLine(); };
    return l.row(
        l.button("btnNew" + what, "New", [this, &table, column] { append(table, column); }).enabledWhen(isDetail),
        l.button("btnDelete" + what, "Delete", [&table] { remove(table); }).enabledWhen(isDetail).abandons());
  };
  Control& accounts = told(tblFStmtLAc, std::move(columns));
  Control& totals = told(tblFStmtLTo, l.columns(l.column("Total", tblFStmtLTo["TotalLineSeq"], totalLines())));
  return l.row(l.group("Detail Line Properties: accounts", accounts, commands(tblFStmtLAc, "Account", "AccountFrom")),
               l.group("Detail Line Properties: totals", totals, commands(tblFStmtLTo, "Total", "TotalLineSeq")));
}

void TfrmFinancialStmt::recordShown(const form::Open& /*open*/) { app().refreshLookUps(); }

// The header.

// A number that is in use is passed over, where the counter of tables that were brought over stands behind: lines and
// accounts are found by it, so that the new statement would take those of the other one for its own.
void TfrmFinancialStmt::tblFStmtNewRecord() {
  form::takeNumbers(app(), {.table = "FStmtCtl", .attempts = kAttempts}, [this](store::Cursor& tblFStmtCtl) {
    const int id = std::max(tblFStmtCtl["NextStmtID"].asInt(), form::nextId(database(), "FStmt", "StmtID"));
    tblFStmt["StmtID"] = id;
    tblFStmtCtl["NextStmtID"] = id + 1;
  });
}

void TfrmFinancialStmt::tblFStmtBeforePost() {
  if (tblFStmt["StmtTitle"].isNull()) refuse("Field 'Title' must have a value", focus("StmtTitle"));
  if (tblFStmt["ColumnFormat"].isNull()) refuse("Field 'Column format' must have a value", focus("ColumnFormat"));
  const std::string title = tblFStmt["StmtTitle"].asText();
  const bool ofChanges = tblFStmt["ColumnFormat"].asText().starts_with("Net Change");
  if (saysBalance(title) && ofChanges) refuse("Format should be 'Balance' for a balance sheet", focus("ColumnFormat"));
  if (saysIncome(title) && !ofChanges)
    refuse("Format should be 'Net Change' for an income statement", focus("ColumnFormat"));
}

// The lines.

// All that belongs to a statement changes only under its lock.
void TfrmFinancialStmt::beginChange() {
  tblFStmt.edit();
  if (!tblFStmt.isEditing()) form::abort();
  for (form::LineSnapshot* snapshot : {&lines_, &accounts_, &totals_}) snapshot->take();
}

void TfrmFinancialStmt::tblFStmtLinNewRecord() {
  store::Query highest(database(), "SELECT MAX(Seq) AS Seq, MAX(LineNo) AS LineNo FROM FStmtLin WHERE StmtID = :id");
  highest.setParameter("id", tblFStmt.value("StmtID"));
  highest.open();
  for (const char* field : {"Seq", "LineNo"}) tblFStmtLin[field] = highest[field].asInt() + 1;
  tblFStmtLin["LineType"] = nameOf(LineType::detail);
}

void TfrmFinancialStmt::tblFStmtLinBeforePost() {
  if (tblFStmtLin["LineType"].isNull())
    refuse("Field 'Type' must have a value...\rMake changes or press Esc to undo", grid(tblFStmtLin).at("LineType"));
}

// What names the line goes before it does, so that nothing is left that names a line that is not there; and it stays
// where the line cannot be deleted, because another changed it.
void TfrmFinancialStmt::tblFStmtLinBeforeDelete() {
  tblFStmtLin.edit();
  tblFStmtLin.cancel();
  for (const char* statement : {"DELETE FROM FStmtLAc WHERE StmtID = :id AND Seq = :seq",
                                "DELETE FROM FStmtLTo WHERE StmtID = :id AND (Seq = :seq OR TotalLineSeq = :seq)"}) {
    store::Query ofLine(database(), statement);
    ofLine.setParameter("id", tblFStmt.value("StmtID"));
    ofLine.setParameter("seq", tblFStmtLin.value("Seq"));
    ofLine.execute();
  }
}

void TfrmFinancialStmt::tblFStmtLinLineTypeValidate(const Value& next) {
  const bool staysDetail = next.isNull() || isDetail(lineTypeNamed(next.asText()));
  if (isDetailLine() && !staysDetail && !(tblFStmtLAc.isEmpty() && tblFStmtLTo.isEmpty())) refuse(kHasProperties);
}

bool TfrmFinancialStmt::isDetailLine() {
  return tblFStmtLin.isOpen() && isDetail(lineTypeNamed(tblFStmtLin["LineType"].asText()));
}

// Accounts and totals of a detail line.

// A line that is being entered is saved before it gets any.
void TfrmFinancialStmt::beginPropertyChange() {
  if (tblFStmtLin.isEditing()) tblFStmtLin.post();
  beginChange();
}

void TfrmFinancialStmt::tblFStmtLAcBeforePost() {
  if (tblFStmtLAc["AccountFrom"].isNull())
    refuse("Field 'From Account' must have a value...\rMake changes or press Esc to undo",
           grid(tblFStmtLAc).at("AccountFrom"));
}

void TfrmFinancialStmt::tblFStmtLToBeforePost() {
  if (tblFStmtLTo["TotalLineSeq"].isNull())
    refuse("Field 'Total' must have a value...\rMake changes or press Esc to undo",
           grid(tblFStmtLTo).at("TotalLineSeq"));
}

form::ConverterPtr TfrmFinancialStmt::totalLines() {
  const auto ask = [this] {
    form::Choices choices;
    store::Query lines(
        database(),
        "SELECT Seq, LineHeading FROM FStmtLin WHERE StmtID = :id AND LineType LIKE 'Total%' ORDER BY LineNo");
    lines.setParameter("id", tblFStmt.value("StmtID"));
    lines.open();
    for (; !lines.eof(); lines.next()) choices.emplace_back(lines.value("Seq"), lines["LineHeading"].asText());
    return choices;
  };
  return std::make_shared<Listed>(ask, [this](const Value& seq) { return headingOf(seq); });
}

std::string TfrmFinancialStmt::headingOf(const Value& seq) {
  store::Cursor& lines = app().lookUp("FStmtLin");
  return lines.lookup("StmtID;Seq", {tblFStmt.value("StmtID"), seq}, "LineHeading").asText();
}

// Commands.

void TfrmFinancialStmt::append(form::Table& table, const char* column) {
  table.append();
  goTo(grid(table).at(column));
}

void TfrmFinancialStmt::remove(form::Table& table) {
  if (!table.isEmpty()) table.remove();
}

// Lines change places by the numbers that order them; what totals call them by stays.
void TfrmFinancialStmt::move(bool up) {
  Value otherSeq;
  {
    store::Glance glance(tblFStmtLin);
    if (!(up ? glance.prior() : glance.next())) return;
    otherSeq = tblFStmtLin.value("Seq");
  }
  // First this line, whose row on view may be older than it is: it is refused then, and the other one keeps its number.
  tblFStmtLin.edit();
  const store::Database::BulkScope bulk(database());
  const Value ownNo = tblFStmtLin.value("LineNo");
  store::Cursor other(database(), "FStmtLin");
  other.open();
  if (!other.findKey({tblFStmt.value("StmtID"), otherSeq})) form::abort();
  other.edit();
  tblFStmtLin["LineNo"] = other.value("LineNo");
  other["LineNo"] = ownNo;
  other.post();
  tblFStmtLin.post();
}

std::optional<StatementKind> TfrmFinancialStmt::askKind() {
  const form::Result asked = app().runModal("TfrmFinancialStmtAuto");
  if (!asked.confirmed) return std::nullopt;
  return static_cast<StatementKind>(asked.values.at("kind").asInt());
}

void TfrmFinancialStmt::btnAutoCreateClick() {
  if (!app().person().confirm("AutoCreate will replace previous statement lines.")) return;
  std::optional<StatementKind> kind = kindOfTitle(tblFStmt["StmtTitle"].asText());
  if (!kind) kind = askKind();
  if (!kind) return;
  for (form::Table* table : {&tblFStmtLTo, &tblFStmtLAc, &tblFStmtLin})
    if (table->isEditing()) table->cancel();
  beginChange();
  app().person().hourglass(true);
  const StatementDefinition statement = composeStatement(database(), *kind);
  if (tblFStmt["StmtTitle"].isNull()) tblFStmt["StmtTitle"] = statement.title;
  const char* family = *kind == StatementKind::incomeStatement ? "Net Change" : "Balance";
  if (!tblFStmt["ColumnFormat"].asText().starts_with(family)) tblFStmt["ColumnFormat"] = statement.format;
  writeStatementLines(database(), tblFStmt["StmtID"].asInt(), statement);
  for (form::Table* table : {&tblFStmtLin, &tblFStmtLAc, &tblFStmtLTo}) table->refresh();
  tblFStmtLin.first();
  goTo(grid(tblFStmtLin));
}

}  // namespace

ScreenPtr makeFinancialStmt(shell::Session& session) { return std::make_unique<TfrmFinancialStmt>(session); }

}  // namespace quillon::ledger
