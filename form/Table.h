#pragma once

#include <functional>
#include <map>
#include <string>

#include "store/Cursor.h"

namespace quillon::form {

class Screen;

// A screen's cursor on a table: opened with the screen, its locked records told by the record-lock dialog, with rules
// for single fields that run for code as for typing.
class Table : public store::Cursor {
 public:
  Table(Screen& screen, const std::string& table,
        std::string name = {});  // named "tbl" and the table where none is given
  Table(Screen& screen, const std::string& table, const store::follows& link, std::string name = {});

  // Before a field is set, and after; a check raises what is wrong.
  void validate(const std::string& field, std::function<void(const store::Value& next)> check);
  void change(const std::string& field, std::function<void(const store::Value& old)> handler);

  // Closes, and opens on another table of the same shape, in its primary order.
  void reopenOn(const std::string& table);

 private:
  struct Rules {
    std::function<void(const store::Value&)> check, handler;
  };
  void wire(Screen& screen);
  const Rules* rulesOf(int position) const;

  std::map<std::string, Rules> rules_;
};

}  // namespace quillon::form
