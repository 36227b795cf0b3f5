#include "form/LineSnapshot.h"

#include "form/Table.h"
#include "store/Database.h"
#include "store/Glance.h"
#include "store/Schema.h"

namespace quillon::form {

void LineSnapshot::take() {
  if (taken_) return;
  const auto fields = static_cast<int>(lines_.definition().fields.size());
  store::Glance glance(lines_);
  for (bool there = glance.first(); there; there = glance.next()) {
    std::vector<store::Value>& row = rows_.emplace_back();
    for (int field = 0; field < fields; ++field) row.push_back(lines_.field(field).value());
  }
  taken_ = true;
}

void LineSnapshot::takeEmpty() {
  rows_.clear();
  taken_ = true;
}

bool LineSnapshot::changed() const { return taken_ && !(rows_.empty() && lines_.isEmpty()); }

void LineSnapshot::restore() {
  if (!taken_) return;
  {
    const store::Cursor::Silence silence(lines_);
    if (lines_.isEditing()) lines_.cancel();
    const store::Database::BulkScope bulk(lines_.database());
    for (lines_.first(); !lines_.isEmpty();) lines_.remove();
    for (const std::vector<store::Value>& row : rows_) {
      lines_.append();
      for (std::size_t field = 0; field < row.size(); ++field) lines_.field(static_cast<int>(field)).set(row[field]);
      lines_.post();
    }
    lines_.flush();
  }
  drop();
  if (restored) restored();
}

}  // namespace quillon::form
