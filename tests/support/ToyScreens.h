#pragma once

#include <memory>
#include <string>

#include "form/App.h"
#include "form/Grid.h"
#include "form/RecordScreen.h"
#include "form/WizardScreen.h"
#include "store/Database.h"

// A document with lines, a modal screen and a picker, each of a few controls: what screens do alike, and no business.
namespace quillon::sim {

inline void createToyTables(store::Database& database) {
  using store::FieldType;
  using store::IndexOptions;
  using store::TableDef;
  const std::vector<TableDef> tables = {
      TableDef::of("ToyDoc",
                   {{"ID", FieldType::autoInc},
                    {"Code", FieldType::string, 8, true},
                    {"Day", FieldType::date},
                    {"Total", FieldType::currency},
                    {"Done", FieldType::boolean}},
                   {{"", "ID", IndexOptions::unique}, {"ByCode", "Code", IndexOptions::unique}}),
      TableDef::of("ToyLine",
                   {{"LineID", FieldType::autoInc},
                    {"DocID", FieldType::integer},
                    {"PartID", FieldType::integer},
                    {"Amount", FieldType::currency}},
                   {{"", "LineID", IndexOptions::unique}, {"ByDoc", "DocID;LineID"}}),
      TableDef::of("ToyPart", {{"ID", FieldType::autoInc}, {"Code", FieldType::string, 8}},
                   {{"", "ID", IndexOptions::unique}, {"ByCode", "Code"}})};
  database.createTables(tables);
  const auto add = [&](const char* table, const char* field, const store::Value& value) {
    store::Cursor rows(database, table);
    rows.open();
    rows.append();
    rows[field] = value;
    rows.post();
  };
  for (const char* code : {"A", "B"}) add("ToyDoc", "Code", code);
  for (const char* code : {"bolt", "nut", "Nut"}) add("ToyPart", "Code", code);
}

class TfrmToy final : public form::RecordScreen {
 public:
  explicit TfrmToy(form::App& app)
      : RecordScreen(app,
                     {.key = "Code", .list = {}, .keyViolation = "This code is there already", .keyFocus = "Code"}) {
    tblToyDoc.events.beforePost = [this] {
      if (tblToyDoc["Code"].asText() == "ask" && !this->app().person().confirm("Is this meant?"))
        form::abort(form::focus("Code"));
      if (tblToyDoc["Code"].asText() == "bad") form::refuse("This code is bad", form::focus("Day"));
    };
    tblToyLine.events.beforePost = [this] {
      if (tblToyLine["Amount"].isNull()) form::refuse("An amount is missing", form::grid(tblToyLine).at("Amount"));
    };
    tblToyLine.events.beforeEdit = tblToyLine.events.beforeInsert = [this] { kept_.take(); };
    tblToyLine.events.beforeDelete = tblToyLine.events.beforeEdit;
    restores(kept_);
  }
  std::string title() override { return "Toy " + tblToyDoc["Code"].asText(); }

 private:
  void build(form::Layout& l) override {
    form::Control& code = l.field("&Code:", tblToyDoc["Code"]);
    form::Control& day = l.date("&Day:", tblToyDoc["Day"]);
    form::Control& total = l.money("Total:", tblToyDoc["Total"]).readOnlyAlways().explains("Lines make the total");
    form::Control& done = l.check("Done", tblToyDoc["Done"]).hint("When all is done");
    form::Control& head = l.group("&Head", code, day);
    form::Control& rest = l.group("&Rest", total, done);
    l.pages(head, rest).named("pagAll");
    form::CodeOf part{.table = "ToyPart",
                      .idField = "ID",
                      .shownField = "Code",
                      .unknown = "There is no such part",
                      .picker = "TfrmToyPick",
                      .title = "Parts"};
    l.lines(tblToyLine, form::Layout::columns(l.codeColumn("Part", tblToyLine["PartID"], std::move(part)),
                                              l.column("Amount", tblToyLine["Amount"])));
    l.button("btnOK", "OK", &TfrmToy::btnOKClick).saves().standard();
    l.button("btnCancel", "Cancel", &TfrmToy::btnCancelClick).abandons();
    l.button("btnMore", "&More", &TfrmToy::btnMoreClick).enabledWhen([this] { return !tblToyDoc["Day"].isNull(); });
    form::Control& find = l.entry("", "&Find...", [this] { app().person().show(form::Tone::information, "Found"); });
    form::Control& refresh = l.entry("", "&Refresh", [this] { tblToyDoc.refresh(); });
    l.menu("&Edit", find.key("Ctrl+F"), refresh);
  }
  // The question of a modal screen decides.
  void btnMoreClick() {
    if (!app().runModal("TfrmToyPick").confirmed) form::abort();
    throw Error("There is no more");
  }

  form::Table tblToyDoc{*this, "ToyDoc"};
  form::Table tblToyLine{*this, "ToyLine", store::follows{tblToyDoc, "ID", "ByDoc"}};
  form::LineSnapshot kept_{tblToyLine};
};

class TfrmToyPick final : public form::Screen {
 public:
  using Screen::Screen;
  std::string title() override { return "Pick"; }

 private:
  void build(form::Layout& l) override {
    l.grid(tblToyPart, form::Layout::columns(l.column("Code", tblToyPart["Code"]))).opens([this] { pick(); });
    l.button("btnOK", "OK", [this] { pick(); }).standard();
    l.button("btnCancel", "Cancel", [this] { setResult(false); });
  }
  void shown(const form::Open& open) override {
    const auto text = open.values.find("text");
    if (text != open.values.end()) tblToyPart.locate("Code", {text->second}, {.partialKey = true});
  }
  void pick() {
    if (!app().person().confirm("Take " + tblToyPart["Code"].asText() + "?")) form::abort();
    result().values["key"] = tblToyPart["ID"].value();
    setResult(true);
  }

  form::Table tblToyPart{*this, "ToyPart"};
};

// Three pages; the second is passed over while nothing is typed on the first.
class TfrmToyWizard final : public form::WizardScreen {
 public:
  using WizardScreen::WizardScreen;
  std::string title() override { return "Toy wizard"; }
  form::Variable first, second;
  std::string done;

 private:
  void buildPages(form::Layout& l) override {
    const auto text = form::textConverter(9);
    page(l,
         {.caption = "One",
          .checked =
              [this] {
                if (first.value == store::Value("bad")) form::refuse("This is bad", form::focus("editFirst"));
              }},
         l.edit("editFirst", "&First:", first, text));
    page(l,
         {.caption = "Two",
          .entered = [this] { second.set("from " + first.value.toText()); },
          .checked =
              [this] {
                if (second.value.isNull()) form::refuse("This is missing", form::focus("editSecond"));
              },
          .skipped = [this] { return first.value.isNull(); }},
         l.edit("editSecond", "&Second:", second, text));
    page(l, {.caption = "Three"}, l.label("All is told"), l.check("chkAll", "All", all_));
  }
  void finish() override {
    if (first.value == store::Value("full")) throw Error("The disk is full");
    done = "done with " + second.value.toText();
  }
  void shown(const form::Open& open) override {
    for (form::Variable* some : {&first, &second, &all_}) some->reset();
    done.clear();
    WizardScreen::shown(open);
  }

  form::Variable all_;
};

inline void registerToys(form::Registry& registry) {
  using form::App;
  registry.add({.className = "TfrmToy", .make = [](App& app) { return std::make_unique<TfrmToy>(app); }});
  registry.add({.className = "TfrmToyPick", .opening = form::Opening::modal, .make = [](App& app) {
                  return std::make_unique<TfrmToyPick>(app);
                }});
  registry.add({.className = "TfrmToyWizard", .opening = form::Opening::modal, .make = [](App& app) {
                  return std::make_unique<TfrmToyWizard>(app);
                }});
}

}  // namespace quillon::sim
