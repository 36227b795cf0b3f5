#pragma once

#include "apps/Command.h"

namespace quillon::apps {

// create FOLDER: makes the folder, when it is not there, and in it the tables of a company with their first rows.
// Refuses a folder that is a company already.
ExitStatus createCommand(Arguments arguments);

}  // namespace quillon::apps
