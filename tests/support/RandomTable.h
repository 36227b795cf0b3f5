#pragma once

#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"
#include "support/SeededRandom.h"

// Table definitions and rows by chance, with the awkward ones often: limits, null, bytes 0 and 1, texts that differ
// only in case or begin alike.
namespace quillon::sim {

// 1 to `mostFields` fields of all types, some indexes over them.
store::TableDef randomTable(SeededRandom& random, std::size_t mostFields = 30);

// From few characters, so that equal texts and common beginnings happen.
std::string randomText(SeededRandom& random, std::size_t mostCharacters);

// A value that the field holds as it is, or null. Always null for memo, blob and graphic fields.
store::Value randomValue(SeededRandom& random, const store::FieldDef& field);
std::vector<store::Value> randomRow(SeededRandom& random, const store::TableDef& table);

}  // namespace quillon::sim
