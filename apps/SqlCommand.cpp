#include "apps/SqlCommand.h"

#include <chrono>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "apps/GivenLogin.h"
#include "apps/LocalEnvironment.h"
#include "apps/Program.h"
#include "apps/ValueText.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "store/Session.h"
#include "store/sql/Parser.h"
#include "store/vfs/File.h"

namespace quillon::apps {
namespace {

struct Options {
  std::string folder;
  std::optional<std::string> script;
  bool json = false;
  bool keepGoing = false;
  std::optional<Date> today;
};

Options read(Arguments arguments) {
  Options options;
  int words = 0;
  constexpr std::string_view kToday = "--today";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i];
    if (word == kToday)
      options.today = dayOf(++i < arguments.size() ? std::string(arguments[i]) : "nothing");
    else if (word.starts_with("--today="))
      options.today = dayOf(std::string(word.substr(kToday.size() + 1)));
    else if (word == "--json")
      options.json = true;
    else if (word == "--keep-going")
      options.keepGoing = true;
    else if (word.starts_with("--") && (words == 0 || word.find_first_of(" \t\r\n") == std::string_view::npos))
      throw UsageError("sql has no option " + std::string(word));  // a statement may begin with a comment
    else if (words++ == 0)
      options.folder = word;
    else if (words == 2)
      options.script = word;
  }
  if (words < 1 || words > 2) throw UsageError("sql takes a folder and at most one text of statements");
  return options;
}

struct Fault {
  std::string text;
  int code = 0;  // 0: none of the store's
  store::sql::Place place;
};

Fault faultAt(const store::sql::Place& place, std::string_view text, int code) {
  return {"Line " + std::to_string(place.line) + ", column " + std::to_string(place.column) + ": " + std::string(text),
          code, place};
}

// A statement is parsed by itself; people look for the fault in the whole script.
Fault placed(const store::StatementError& error, store::sql::Place start) {
  const store::sql::Place place{start.line + error.line() - 1,
                                error.line() == 1 ? start.column + error.column() - 1 : error.column()};
  const std::string_view text = error.what();
  return faultAt(place, text.substr(text.find(": ") + 2), error.number());
}

class Runner {
 public:
  // `many`: the script has more than one statement, so that an error says which.
  Runner(store::Database& database, bool json, bool many) : database_(database), json_(json), many_(many) {}

  // Whether it was done.
  bool run(const store::sql::StatementText& statement) {
    ++number_;
    const auto fault = failure(statement);
    if (!fault) return true;
    if (json_) {
      std::string line = "{\"statement\":" + std::to_string(number_) + ",\"error\":{\"text\":";
      appendJsonText(line, fault->text);
      line += ",\"code\":" + std::to_string(fault->code) + ",\"line\":" + std::to_string(fault->place.line) +
              ",\"column\":" + std::to_string(fault->place.column) + "}}\n";
      std::cout << line;
    }
    std::string line = many_ ? "Statement " + std::to_string(number_) + ": " : "";
    for (const char c : fault->text) line += c == '\n' || c == '\r' ? ' ' : c;
    std::cerr << "quillonctl: " << line << '\n';
    return false;
  }

 private:
  std::optional<Fault> failure(const store::sql::StatementText& statement) {
    try {
      execute(statement.text);
      return {};
    } catch (const store::StatementError& error) {
      return placed(error, statement.place);
    } catch (const store::StoreError& error) {
      return faultAt(statement.place, error.what(), error.number());
    } catch (const Error& error) {
      return faultAt(statement.place, error.what(), 0);
    }
  }

  void execute(const std::string& text) {
    const auto start = std::chrono::steady_clock::now();
    store::Query query(database_, text);
    std::uint64_t changed = 0, rows = 0;
    std::string columns;
    if (query.givesRows()) {
      query.open();
      columns = printHeader(query);
      rows = printRows(query);
    } else {
      changed = query.execute();
    }
    if (!json_) return;
    const auto took = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::string line = "{\"statement\":" + std::to_string(number_) + ",\"rows\":" + std::to_string(rows) +
                       ",\"columns\":[" + columns + "],\"changed\":" + std::to_string(changed) + ",\"ms\":";
    appendJson(line, store::Value(static_cast<double>(took.count()) / 1000));
    std::cout << line << "}\n";
  }

  // The names as JSON.
  std::string printHeader(store::Query& query) {
    std::string names, line;
    for (int i = 0; i < query.fieldCount(); ++i) {
      const std::string& name = query.field(i).definition().name;
      if (i > 0) names += ',';
      if (i > 0) line += '\t';
      appendJsonText(names, name);
      appendEscaped(line, name);
    }
    if (!json_) std::cout << line << '\n';
    return names;
  }

  std::uint64_t printRows(store::Query& query) {
    std::uint64_t rows = 0;
    std::string line;
    for (query.first(); !query.eof() && std::cout; query.next(), ++rows) {
      line = json_ ? "[" : "";
      for (int i = 0; i < query.fieldCount(); ++i) {
        if (i > 0) line += json_ ? ',' : '\t';
        json_ ? appendJson(line, query.field(i).value()) : appendCell(line, query.field(i).value());
      }
      line += json_ ? "]\n" : "\n";
      std::cout << line;
    }
    return rows;
  }

  store::Database& database_;
  const bool json_, many_;
  int number_ = 0;
};

}  // namespace

ExitStatus sqlCommand(Arguments arguments) {
  const GivenLogin login(arguments);
  Options options = read(login.words());
  if (!options.script)
    options.script.emplace(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  const LocalEnvironment environment(options.today);
  environment.get().files.makeFolder(options.folder);
  store::Session session(environment.get());
  store::Database database(session, options.folder);
  login.requireSecurity(database);
  std::string_view script = *options.script;
  if (script.starts_with(kByteOrderMark)) script.remove_prefix(kByteOrderMark.size());
  const auto statements = store::sql::splitStatements(script);
  Runner runner(database, options.json, statements.size() > 1);
  bool done = true;
  for (const store::sql::StatementText& statement : statements) {
    if (!runner.run(statement)) done = false;
    if (!done && !options.keepGoing) break;
  }
  return done ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace quillon::apps
