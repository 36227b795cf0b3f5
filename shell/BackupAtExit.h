#pragma once

namespace quillon::shell {

class Session;

// The end of the program: lets the person choose once what happens to this company, and does it: a copy without a
// question, which takes place only when nobody else is in the company, or the backup screen. What goes wrong is told to
// nobody and holds nothing up. Afterwards the company may be closed.
void backUpAtExit(Session& session);

}  // namespace quillon::shell
