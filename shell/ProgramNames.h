#pragma once

namespace quillon::form {
class Layout;
}

namespace quillon::shell {

// Who made the program, what it is and its version, as the splash, the welcome and "About" show them.
void tellNames(form::Layout& layout);

}  // namespace quillon::shell
