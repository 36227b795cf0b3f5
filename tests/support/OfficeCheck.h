#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/OfficeWork.h"

namespace quillon::sim::office {

// What each worker was told to be committed, in his order. The work that he had begun when he was killed is in doubt:
// it is there wholly or not at all, until a check has looked.
struct Books {
  struct Person {
    std::vector<Worker::Done> done;  // by seq - 1
    bool settled = false;            // nothing in doubt any more
  };
  std::map<int, Person> persons;
  std::int64_t sharedBase = 0;    // the number of Shared at the last check
  std::int64_t sharedTold = 0;    // raised since then, as told
  std::int64_t sharedDoubts = 0;  // workers who may have raised it without telling

  void note(int worker, const Worker::Done& done);
};

struct Found {
  std::vector<std::string> faults;
  std::vector<std::pair<int, Worker::Done>> resolved;  // in doubt before, and there
  std::int64_t shared = 0;
};

// Compares the folder with the books. While others go on working only what was told before is looked for; else also
// that nothing more is there, that every lock can be had, and that store::verifyFolder is content.
Found check(const std::string& folder, const Books& books, bool othersWork);

}  // namespace quillon::sim::office
