#pragma once

// Bugs that tests plant to see whether their harnesses find them. In the library `planted` is false while it is
// compiled, and nothing of them is left. For one test program (tests/CMakeLists.txt) the sources that name a bug are
// compiled again with QUILLON_PLANTED.
namespace quillon::store {

enum class Bug {
  skippedSync,        // a commit is answered before the journal is on the disk
  skippedFolderSync,  // a new table's name is not made safe
  swappedWrites,      // a table is called up to date before its pages are
  notReplayed,        // `applied` passes over records whose pages were never written
  appliedOneByOne,    // a commit's tables appear one after the other
  holeInTableLock,    // the end of a record lock opens the own table lock
  earlyUnlock,        // the write lock goes before the publish
  shortWriteIgnored,  // a write that ended short is taken for whole
  noChecksumTest,     // a page is believed as it is
  tornTailTaken,      // a journal record is believed as it is
  rowIdsReused,       // a rolled-back row's id is given again
  staleRead,          // a read without locks does not look at the stamp
};

#ifdef QUILLON_PLANTED
bool planted(Bug bug);
#else
consteval bool planted(Bug) { return false; }
#endif

}  // namespace quillon::store
