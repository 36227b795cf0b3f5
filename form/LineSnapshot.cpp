#include "form/LineSnapshot.h"

#include <algorithm>

#include "form/Table.h"
#include "store/Database.h"
#include "store/Glance.h"
#include "store/Schema.h"

namespace quillon::form {

LineSnapshot::Row LineSnapshot::current() const {
  const auto fields = static_cast<int>(lines_.definition().fields.size());
  Row row;
  for (int field = 0; field < fields; ++field) row.push_back(lines_.field(field).value());
  return row;
}

void LineSnapshot::take() {
  if (taken_) return;
  store::Glance glance(lines_);
  for (bool there = glance.first(); there; there = glance.next()) rows_.push_back(current());
  taken_ = true;
}

void LineSnapshot::takeEmpty() {
  rows_.clear();
  taken_ = true;
}

bool LineSnapshot::changed() const { return taken_ && !(rows_.empty() && lines_.isEmpty()); }

// Of the rows, how many at the beginning and at the end are as they were.
LineSnapshot::Kept LineSnapshot::kept(std::size_t now) const {
  Kept kept;
  const std::size_t most = std::min(now, rows_.size());
  store::Glance glance(lines_);
  for (bool there = glance.first(); there && kept.first < most && current() == rows_[kept.first]; there = glance.next())
    ++kept.first;
  for (bool there = glance.last();
       there && kept.first + kept.last < most && current() == rows_[rows_.size() - 1 - kept.last];
       there = glance.prior())
    ++kept.last;
  return kept;
}

void LineSnapshot::restore() {
  if (!taken_) return;
  {
    const store::Cursor::Silence silence(lines_);
    if (lines_.isEditing()) lines_.cancel();
    const store::Database::BulkScope bulk(lines_.database());
    const std::size_t now = lines_.recordCount();
    const Kept kept = this->kept(now);
    for (std::size_t i = kept.first; i < now - kept.last && lines_.goTo(kept.first + 1); ++i) lines_.remove();
    for (std::size_t i = kept.first; i < rows_.size() - kept.last; ++i) {
      lines_.append();
      for (std::size_t field = 0; field < rows_[i].size(); ++field)
        lines_.field(static_cast<int>(field)).set(rows_[i][field]);
      lines_.post();
    }
    lines_.flush();
  }
  drop();
  if (restored) restored();
}

}  // namespace quillon::form
