#pragma once

#include <QString>

namespace quillon::desktop {

class GridArea;

// Grids as tables for whoever has the screen read out: rows, columns, cells with their headings, and which is chosen.
// Cells are made as they are asked for, and a row is read when the text of one of its cells is.
void makeGridsReadable();

// What was last told of a grid.
struct ToldCell {
  int row = -1, column = -1, rows = -1, columns = -1;
  QString text;
  bool operator==(const ToldCell&) const = default;
};
// Tells the active cell where it is another than `told`, and rows or columns that came or went; `focused`: that it has
// the focus, which came to the grid just now.
void tellCell(GridArea& area, ToldCell& told, bool focused);

}  // namespace quillon::desktop
