#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillon::store {

class Database;

// Runs `read`, which begins anew each time, so that all that its statements and cursors read of these tables is of one
// moment: again when somebody saved to one of them meanwhile, the third time while saving has to wait. noSuchTable.
void atOneMoment(Database& database, const std::vector<std::string>& tables, const std::function<void()>& read);

}  // namespace quillon::store
