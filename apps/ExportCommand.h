#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// export FOLDER TABLE: prints the table's rows in the order of their entry, under a line of field names. What `import`
// reads gives the same rows again.
ExitStatus exportCommand(Arguments arguments);

}  // namespace quillon::apps
