#include "support/CursorModel.h"

namespace quillon::sim {

const ModelFilter kModelFilter[kModelFilters] = {
    {"", [](const CursorRow&) { return true; }},
    {"Level = null OR Level / 2 = TRUNC(Level / 2)", ModelCursor::isEven},
    {"code >= 10 AND \"Code\" < 25 and NOT Level = 3",
     [](const CursorRow& row) {
       return !row.values[1].isNull() && row.values[1].asInt64() >= 10 && row.values[1].asInt64() < 25 &&
              (row.values[3].isNull() || row.values[3].asInt64() != 3);
     }},
    {"Model.Name = 'ab'",
     [](const CursorRow& row) { return !row.values[2].isNull() && row.values[2].asText() == "ab"; }},
    {"Level BETWEEN 1 AND 3 /* low */ AND ID > 4",
     [](const CursorRow& row) {
       return !row.values[3].isNull() && row.values[3].asInt64() >= 1 && row.values[3].asInt64() <= 3 &&
              row.values[0].asInt64() > 4;
     }},
    {"Name = NULL", [](const CursorRow& row) { return row.values[2].isNull(); }},
    {"Level = 2.5", [](const CursorRow&) { return false; }},
};

bool ModelCursor::isEven(const CursorRow& row) { return row.values[3].isNull() || row.values[3].asInt64() % 2 == 0; }

}  // namespace quillon::sim
