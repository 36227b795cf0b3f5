#pragma once

namespace quillon::shell {

class Session;

// Asked before anything is printed: whether there is a printer. Where the desktop reports none, the person may know of
// one, and that is remembered in their settings.
bool printerInstalled(Session& session);
// The same, refusing to go on where there is none.
void requirePrinter(Session& session);

}  // namespace quillon::shell
