#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// quillonctl report: a report's pages as PDF, spreadsheet or text.
ExitStatus reportCommand(Arguments arguments);

}  // namespace quillon::apps
