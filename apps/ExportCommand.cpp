#include "apps/ExportCommand.h"

#include <iostream>
#include <string>

#include "apps/GivenLogin.h"
#include "apps/LocalEnvironment.h"
#include "apps/ValueText.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Session.h"

namespace quillon::apps {

ExitStatus exportCommand(Arguments arguments) {
  const GivenLogin login(arguments);
  const Arguments words = login.words();
  if (words.size() != 2) throw UsageError("export takes a folder and a table");
  const LocalEnvironment environment;
  store::Session session(environment.get());
  store::Database database(session, std::string(words[0]));
  login.requireSecurity(database);
  store::Cursor cursor(database, std::string(words[1]));
  cursor.setRowOrder();
  cursor.open();
  std::string line;
  for (const store::FieldDef& field : cursor.definition().fields) {
    if (!line.empty()) line += '\t';
    appendEscaped(line, field.name);
  }
  std::cout << line << '\n';
  for (cursor.first(); !cursor.eof() && std::cout; cursor.next()) {
    line.clear();
    for (int i = 0; i < cursor.fieldCount(); ++i) {
      if (i > 0) line += '\t';
      appendCell(line, cursor.field(i).value());
    }
    std::cout << line << '\n';
  }
  return ExitStatus::done;
}

}  // namespace quillon::apps
