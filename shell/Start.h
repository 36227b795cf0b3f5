#pragma once

#include <string>

namespace quillon::shell {

class Session;

// Before the main window is made: puts the sample company among the companies, reads which company was open last.
void prepareStart(Session& session);

// What happens when the main window has come on view: the welcome on a machine without companies, else the company of
// `folder`, or where that is empty the one of the last run, and the login. `welcomes` false: never the welcome.
// False: the person left at the welcome, and the program ends.
bool enterAtStart(Session& session, const std::string& folder, bool welcomes);

}  // namespace quillon::shell
