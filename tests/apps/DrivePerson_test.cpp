// The conversation of `quillonctl drive` over toy screens: what nests, what waits, what is refused, and how it ends.
#include "apps/drive/DrivePerson.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "apps/Program.h"
#include "apps/drive/Json.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/SeededRandom.h"
#include "support/TempFolder.h"
#include "support/ToyScreens.h"

namespace quillon::apps {
namespace {

// The text of what stands at a path such as "finished.0.command"; numbers, truths and null as JSON has them.
std::string at(const Json& from, const std::string& path) {
  if (path.empty()) {
    if (from.is(Json::Kind::boolean)) return from.truth ? "true" : "false";
    return from.is(Json::Kind::null) ? "null" : from.text;
  }
  const std::size_t dot = std::min(path.find('.'), path.size());
  const std::string rest = path.substr(std::min(dot + 1, path.size()));
  if (!from.is(Json::Kind::array)) {
    const Json* member = from.find(path.substr(0, dot));
    return member ? at(*member, rest) : "missing";
  }
  const std::size_t item = std::stoul(path.substr(0, dot));
  return item < from.members.size() ? at(from.members[item].second, rest) : "missing";
}

class DrivePersonTest : public testing::Test {
 protected:
  DrivePersonTest() {
    LocalEnvironment environment;
    store::Session session(environment.get());
    store::Database database(session, folder_.path());
    store::createCompanyTables(database);
    sim::createToyTables(database);
    // Set up already, and never copied at exit.
    store::Query(database,
                 "INSERT INTO Company (CompanyName, FiscalYear, ApplicationVersion, BackupOnExit) "
                 "VALUES ('Toys', 2026, '" +
                     std::string(shell::kVersion) + "', 2)")
        .execute();
  }

  // The replies to these lines; the first is the one that comes unasked.
  std::vector<Json> drive(const std::string& lines) {
    std::FILE* file = std::tmpfile();
    std::fwrite(lines.data(), 1, lines.size(), file);
    std::fflush(file);
    std::rewind(file);
    std::ostringstream out;
    {
      Lines in(::fileno(file));
      DrivePerson person(in, out);
      ProgramOptions options;
      options.given.folder = settings_.path();
      Program program(options, person);
      sim::registerToys(program.session().registry());
      person.serve(program, folder_.path());
    }
    std::fclose(file);
    std::vector<Json> replies;
    std::istringstream read(out.str());
    for (std::string line; std::getline(read, line);) replies.push_back(parseJson(line));
    return replies;
  }
  std::string codes() {
    LocalEnvironment environment;
    store::Session session(environment.get());
    store::Database database(session, folder_.path());
    store::Cursor rows(database, "ToyDoc");
    std::string all;
    rows.open();
    for (rows.first(); !rows.eof(); rows.next()) all += rows["Code"].asText() + " ";
    rows.first();
    rows.edit();  // raises where a lock was left behind
    return all;
  }

  sim::TempFolder folder_, settings_;
};

TEST_F(DrivePersonTest, CommandsNestInModalScreensAndQuestions) {
  const std::vector<Json> r = drive(R"({"open":"TfrmToy"}
{"set":"frmToy.editDay","value":"2026-03-05"}
{"click":"frmToy.btnMore"}
{"set":"frmToy.editCode","value":"C"}
{"click":"frmToyPick.btnOK"}
{"click":"frmToyPick.btnCancel"}
{"state":"frmToyPick"}
{"answer":"Maybe"}
{"answer":"no"}
{"grid":"frmToyPick.grdToyPart","do":"locate","values":{"Code":"nut"}}
{"key":"Enter"}
{"answer":"Yes"}
{"set":"frmToy.editCode","value":"ask"}
{"click":"frmToy.btnOK"}
{"answer":"Yes"}
{"quit":true}
)");
  ASSERT_EQ(r.size(), 17u);
  EXPECT_EQ(at(r[0], "ready") + at(r[1], "opened.0") + at(r[1], "focus"), "truefrmToyfrmToy.editCode");
  EXPECT_EQ(at(r[3], "waiting.modal") + at(r[3], "ok") + at(r[3], "finished.0"), "frmToyPicktruemissing");
  EXPECT_EQ(at(r[4], "ok"), "false") << "behind a modal screen";
  EXPECT_EQ(at(r[5], "waiting.dialog.text"), "Take bolt?");
  EXPECT_EQ(at(r[5], "waiting.dialog.buttons.1") + at(r[5], "waiting.dialog.default"), "NoYes");
  EXPECT_EQ(at(r[6], "ok") + at(r[6], "error.exists.0"), "falseanswer") << "a question comes first";
  EXPECT_EQ(at(r[7], "state.controls.grdToyPart.rows.0.cells.Code"), "bolt");
  EXPECT_EQ(at(r[8], "error.exists.0"), "Yes");
  EXPECT_EQ(at(r[9], "finished.0.aborted") + at(r[9], "waiting.modal"), "truefrmToyPick");
  EXPECT_EQ(at(r[11], "waiting.dialog.text"), "Take nut?");
  EXPECT_EQ(at(r[12], "finished.0.command") + at(r[12], "finished.0.ok"), "frmToyPick.grdToyParttrue");
  EXPECT_EQ(at(r[12], "finished.1.command") + at(r[12], "finished.1.error.text"), "frmToy.btnMoreThere is no more");
  EXPECT_EQ(at(r[12], "messages.0.text") + at(r[12], "closed.0"), "There is no morefrmToyPick");
  EXPECT_EQ(at(r[12], "ok") + at(r[12], "waiting"), "truenull") << "what was answered went on well";
  EXPECT_EQ(at(r[14], "waiting.dialog.kind"), "confirmation");
  EXPECT_EQ(at(r[15], "ok") + at(r[15], "closed.0"), "truefrmToy");
  EXPECT_EQ(codes(), "ask B ");
}

TEST_F(DrivePersonTest, AFailedCommandAndARefusedRequestAreNotOk) {
  const std::vector<Json> r = drive(R"({"open":"TfrmToy"}
{"set":"frmToy.editCode","value":"bad"}
{"click":"frmToy.btnOK"}
{"set":"frmToy.editTotal","value":12.5}
{"click":"frmToy.btnMore"}
{"click":"frmToy.btnNone"}
{"set":"frmToy.chkDone","value":true}
{"grid":"frmToy.grdToyLine","do":"append"}
{"set":"frmToy.grdToyLine[0].Amount","value":1234.5}
{"set":"frmToy.pagAll","value":"rest"}
{"state":"frmToy"}
{"quit":true}
{"answer":"Cancel"}
)");
  ASSERT_EQ(r.size(), 14u);
  EXPECT_EQ(at(r[3], "ok") + at(r[3], "messages.0.text") + at(r[3], "focus"), "falseThis code is badfrmToy.editDay");
  EXPECT_EQ(at(r[4], "ok") + at(r[4], "messages.0.text"), "falseLines make the total");
  EXPECT_EQ(at(r[4], "finished.0.aborted"), "true");
  EXPECT_EQ(at(r[5], "error.text"), "'frmToy.btnMore' is disabled");
  EXPECT_EQ(at(r[6], "error.exists.0") + at(r[6], "error.exists.2"), "frmToy.btnOKfrmToy.btnMore");
  EXPECT_EQ(at(r[9], "focus"), "frmToy.grdToyLine[0].Amount");
  const std::string state = "state.", controls = state + "controls.";
  for (const auto& [path, text] : std::initializer_list<std::pair<std::string, std::string>>{
           {state + "title", "Toy bad"},
           {state + "cursor", "edit"},
           {state + "default", "btnOK"},
           {controls + "chkDone.data", "true"},
           {controls + "chkDone.hint", "When all is done"},
           {controls + "editTotal.readOnly", "true"},
           {controls + "btnMore.enabled", "false"},
           {controls + "pagAll.page", "1"},
           {controls + "grdToyLine.total", "1"},
           {controls + "grdToyLine.active.column", "Amount"},
           {controls + "grdToyLine.rows.0.cells.Amount", "1,234.50"},
           {controls + "grdToyLine.rows.0.data.Amount", "1234.5"},
           {controls + "grdToyLine.rows.0.new", "true"},
           {state + "menus.0.path", "&Edit > &Find..."},
           {state + "menus.0.shortcut", "Ctrl+F"}})
    EXPECT_EQ(at(r[11], path), text) << path;
  EXPECT_EQ(at(r[12], "waiting.dialog.text"), "Do you want to save changes?");
  EXPECT_EQ(at(r[13], "ok") + at(r[13], "finished.0.error.text"),
            "falseAll unsaved changes must be resolved before closing Quillon");
}

TEST_F(DrivePersonTest, TheEndOfInputCancelsWhateverWaitsAndFreesTheLocks) {
  const std::string open = "{\"open\":\"TfrmToy\"}\n{\"set\":\"frmToy.editCode\",\"value\":\"ask\"}\n";
  const std::string day = "{\"set\":\"frmToy.editDay\",\"value\":\"2026-03-05\"}\n{\"click\":\"frmToy.btnMore\"}\n";
  for (const std::string& lines :
       {open, open + "{\"click\":\"frmToy.btnOK\"}\n", open + day, open + day + "{\"click\":\"frmToyPick.btnOK\"}\n"})
    for (const char* end : {"", "{\"quit\":true,\"force\":true}\n"}) {
      const std::vector<Json> replies = drive(lines + end);
      EXPECT_EQ(replies.size(), static_cast<std::size_t>(1 + std::ranges::count(lines + end, '\n'))) << lines << end;
      EXPECT_EQ(at(replies.back(), "ok"), "true") << lines << end;
      EXPECT_EQ(codes(), "A B ") << lines << end;
    }
}

// Method: lines that are cut, doubled, changed in single bytes, of random bytes, very long and very deep, between
// requests that are sound; each line is answered by one, and the program is there to the end.
TEST_F(DrivePersonTest, BadLinesAreAnsweredAndTheProgramGoesOn) {
  const std::vector<std::string> sound = {
      R"({"open":"TfrmToy"})",
      R"({"set":"frmToy.grdToyLine[0].Amount","value":-1.5e3})",
      R"({"state":"frmToy"})",
      R"({"grid":"frmToy.grdToyLine","do":"locate","values":{"LineID":1,"DocID":null}})",
      R"({"key":"Shift+Tab"})",
      R"({"type":"frmToy.editDay","keys":"1\u0000\ud83d\ude00"})",
      R"({"answer":{"from":1}})",
      R"({"sql":"SELECT * FROM ToyDoc"})",
      R"({"answer":"No"})",
      R"({"click":"frmToy.mnuFind"})",
      R"({"state":"frmToy","from":0,"count":5,"page":1})"};
  sim::SeededRandom random(2026);
  std::string lines;
  int count = 0;
  const auto add = [&](std::string line) {
    std::ranges::replace(line, '\n', ' ');
    lines += line + "\n";
    ++count;
  };
  for (int i = 0; i < 1500; ++i) {
    std::string line = sound[random.below(sound.size())];
    const std::size_t place = random.below(line.size());
    switch (random.below(5)) {
      case 0:
        line.resize(place);
        break;
      case 1:
        line[place] = static_cast<char>(random.below(256));
        break;
      case 2:
        line.insert(place, line.substr(place / 2));
        break;
      case 3:
        for (char& c : line) c = static_cast<char>(random.below(256));
        break;
      default:
        break;
    }
    add(line);
  }
  add(std::string(3 << 20, 'x'));
  add(R"({"sql":")" + std::string(2 << 20, 'a') + "\"}");
  add(std::string(900'000, '['));
  for (const char* open : {"[", "{\"a\":"}) {
    std::string bomb;
    while (bomb.size() < 100'000) bomb += open;
    add(R"({"state":)" + bomb);
  }
  std::string wide = "{";
  for (int i = 0; i < 90'000; ++i) wide += "\"a" + std::to_string(i) + "\":1,";
  add(wide + "\"z\":1}");
  add("{\"set\":\"frmToy.editCode\",\"value\":1e999}");
  add("\xEF\xBB\xBF{\"screens\":true}");
  add(R"({"quit":true,"force":true})");
  const std::vector<Json> replies = drive(lines);
  ASSERT_EQ(replies.size(), static_cast<std::size_t>(count + 1));
  for (std::size_t i = 1501; i + 2 < replies.size(); ++i) EXPECT_EQ(at(replies[i], "ok"), "false") << i;
  codes();
}

}  // namespace
}  // namespace quillon::apps
