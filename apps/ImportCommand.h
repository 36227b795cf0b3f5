#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// import FOLDER TABLE FILE: adds the rows of a file to a table, all or none. The file's first line names fields of the
// table, in any order and case; those that it leaves out are null. A byte order mark and lines that end with \r\n are
// taken. What cannot be added is told with its row (the first under the names is 1) and its column.
ExitStatus importCommand(Arguments arguments);

}  // namespace quillon::apps
