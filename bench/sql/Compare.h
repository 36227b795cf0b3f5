#pragma once

#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Shapes.h"

// One statement on both sides: theirs prepared once, ours one Query that is closed and opened again. Every row and
// column of a result is read. Raises Error when the sides do not give the same.
namespace quillon::bench {

struct Statement {
  std::string name;
  std::string ours;           // parameters :p1, :p2, ...
  std::string theirs;         // parameters ?1, ?2, ...
  std::vector<Row> bindings;  // one run of the statement each; together a round
  double aim = 0;
  std::string note = {};
};

enum class Order { any, asAsked };  // asAsked: the first column must come in the same order on both sides

void compareSelect(Bench& bench, const Statement& statement, Order order);

// The change is made in a transaction that is rolled back after `check`, a SELECT of one number in the words of both,
// has given the same. Beginning and statement are measured.
void compareChange(Bench& bench, const Statement& statement, const std::string& table, const std::string& check);

// The most memory of a process that runs the statement once and reads the result.
void compareMemory(Bench& bench, const Statement& statement);

// Statements.
void groupSum(Bench& bench);
void joinThree(Bench& bench);
void topOne(Bench& bench);
void inSelect(Bench& bench);
void notInDelete(Bench& bench);
void updateRange(Bench& bench);
void orderNocase(Bench& bench);
void aged(Bench& bench);

// Cursors with a filter.
void filtered(Bench& bench);

}  // namespace quillon::bench
