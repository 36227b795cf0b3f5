#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// drive [FOLDER]: the program with its screens, on the company of the folder or on none, driven by requests on standard
// input, one JSON object a line; each is answered by one line on standard output. docs/DRIVE.md tells them.
ExitStatus driveCommand(Arguments arguments);

}  // namespace quillon::apps
