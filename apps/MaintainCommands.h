#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// repair FOLDER [TABLE...]: makes damaged tables whole again, all or those that are named, and prints a line for each
// table, with what was wrong and what was lost under it. What is lost is a failure; so is a table that cannot be
// repaired, after which the others are done all the same. Where a table's own definition is destroyed, that of a
// company's table of this name is taken, and a table of a company that is missing begins empty. A journal that keeps
// the folder from being opened is made anew first.
ExitStatus repairCommand(Arguments arguments);

// optimize FOLDER [TABLE...]: makes sound tables smaller, with their records in order, and keeps the old files beside
// them; a line for each table.
ExitStatus optimizeCommand(Arguments arguments);

}  // namespace quillon::apps
