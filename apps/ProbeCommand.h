#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// probe FOLDER: tries with a second process, on a file of its own that it takes away again, what the store builds on:
// that a lock keeps the other process out, also far behind the end of the file, and ends with its process; that what
// one process writes, renames and removes the other sees; that files and the folder can be synced. Prints a line for
// each and whether the folder can be shared; fails where it cannot. Another computer is not asked.
ExitStatus probeCommand(Arguments arguments);

}  // namespace quillon::apps
