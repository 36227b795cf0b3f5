#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// verify FOLDER: reads every page of the company's tables and tells, a line for each table, whether it is sound.
// Changes nothing. Its progress goes to standard error when that is a terminal.
ExitStatus verifyCommand(Arguments arguments);

}  // namespace quillon::apps
