#pragma once

namespace quillon::form {
class Registry;
}

namespace quillon::shell {

// Every screen that a person opens from the menus, with the right that guards it, and the menus. Makers are added by
// the folders that have them.
void registerCatalogue(form::Registry& registry);

}  // namespace quillon::shell
