#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// backup FOLDER [TO]: copies a company's files, which nobody may have open, into a folder; without TO into that of the
// day of the week in the company's "backup". What stops the copying leaves an earlier copy there as it was. Takes the
// options of programs with screens; a company that has users asks for one of them.
ExitStatus backupCommand(Arguments arguments);

}  // namespace quillon::apps
