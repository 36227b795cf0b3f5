#pragma once

#include <QTableView>
#include <memory>
#include <string>

#include "bench/Theirs.h"

namespace quillon::bench {

// The accounts in a database file of theirs, filled with the rows of ours.
void fillTheirAccounts(Theirs& side, const std::string& folder);

// Their side of a list: the toolkit's own table over the query of the same rows, which reads a few hundred at a time
// when they come on view.
class TheirTable final : public QTableView {
 public:
  explicit TheirTable(Theirs& side);
  ~TheirTable() override;
  // The first row whose number is not less.
  void find(const std::string& number);

 private:
  class Rows;
  std::unique_ptr<Rows> rows_;
};

}  // namespace quillon::bench
