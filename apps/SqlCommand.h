#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// sql FOLDER [STATEMENT]: runs the statements of the argument or of standard input one after the other, over the tables
// of any folder; one that is not there is made. Prints each result as lines of cells under a line of names, or with
// --json as a line for each row and one for each statement. Stops at the first error, or with --keep-going goes on and
// fails at the end; each error is a line on standard error.
ExitStatus sqlCommand(Arguments arguments);

}  // namespace quillon::apps
