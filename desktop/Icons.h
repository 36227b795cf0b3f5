#pragma once

#include <QIcon>
#include <string_view>

namespace quillon::desktop {

// The program's own icon of a control, in the colour of the palette; null when it has none.
QIcon iconNamed(std::string_view control);
// Of the program itself.
QIcon programIcon();

}  // namespace quillon::desktop
