#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// audit FOLDER: works the books of a company out anew and prints each stored value that disagrees.
ExitStatus auditCommand(Arguments arguments);

}  // namespace quillon::apps
