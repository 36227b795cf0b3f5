#include "bench/desktop/TheirTable.h"

#include <QAbstractTableModel>
#include <array>
#include <vector>

#include "bench/Ours.h"
#include "store/Cursor.h"

namespace quillon::bench {
namespace {

constexpr std::array<const char*, 3> kFields = {"GLAccount", "AccountName", "AccountType"};
constexpr int kRead = 256;  // rows at a time

QString qt(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

void fillTheirAccounts(Theirs& side, const std::string& folder) {
  side.run("CREATE TABLE accounts(id INTEGER PRIMARY KEY, number TEXT, name TEXT, type INTEGER); BEGIN");
  Prepared insert(side, "INSERT INTO accounts(number, name, type) VALUES(?, ?, ?)");
  Ours ours(folder);
  store::Cursor rows(ours.database, "GLAccnt");
  rows.open();
  for (rows.first(); !rows.eof(); rows.next()) {
    std::array<store::Value, 3> values;
    for (std::size_t i = 0; i < kFields.size(); ++i)
      insert.bind(static_cast<int>(i) + 1, values[i] = rows.value(kFields[i]));
    insert.once();
  }
  side.run("CREATE INDEX accountNumber ON accounts(number); COMMIT");
}

class TheirTable::Rows final : public QAbstractTableModel {
 public:
  explicit Rows(Theirs& side)
      : count_(side, "SELECT count(*) FROM accounts"),
        page_(side, "SELECT number, name, type FROM accounts ORDER BY number LIMIT ? OFFSET ?"),
        place_(side, "SELECT count(*) FROM accounts WHERE number < ?") {
    count_.step();
    rows_ = static_cast<int>(count_.number(0));
    count_.reset();
  }
  int rowCount(const QModelIndex&) const override { return rows_; }
  int columnCount(const QModelIndex&) const override { return static_cast<int>(kFields.size()); }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole) return {};
    const int from = index.row() / kRead * kRead;
    if (from != from_) read(from);
    return read_[static_cast<std::size_t>(index.row() - from)][static_cast<std::size_t>(index.column())];
  }
  int placeOf(const store::Value& number) {
    place_.bind(1, number);
    place_.step();
    const int place = static_cast<int>(place_.number(0));
    place_.reset();
    return std::min(place, rows_ - 1);
  }

 private:
  void read(int from) const {
    page_.bind(1, std::int64_t{kRead});
    page_.bind(2, std::int64_t{from});
    read_.clear();
    while (page_.step()) read_.push_back({qt(page_.text(0)), qt(page_.text(1)), qt(page_.text(2))});
    page_.reset();
    from_ = from;
  }

  Prepared count_;
  mutable Prepared page_;
  Prepared place_;
  int rows_ = 0;
  mutable int from_ = -1;
  mutable std::vector<std::array<QString, kFields.size()>> read_;
};

TheirTable::TheirTable(Theirs& side) : rows_(std::make_unique<Rows>(side)) {
  setSelectionBehavior(SelectRows);
  setModel(rows_.get());
  setCurrentIndex(rows_->index(0, 0));
}

TheirTable::~TheirTable() { setModel(nullptr); }

void TheirTable::find(const std::string& number) {
  setCurrentIndex(rows_->index(rows_->placeOf(store::Value(number)), 0));
}

}  // namespace quillon::bench
