#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace quillon::platform {

struct CopyProgress {
  std::string file;  // the name of the one being copied
  std::uint64_t done = 0;
  std::uint64_t total = 0;  // bytes of all files; may be less than `done` when a file grew meanwhile
};

// Copies the files of one folder, without the folders in it, into another one, which is made where missing; a file of
// the same name there is replaced, others stay.
//
// All files are first copied into a hidden folder in the destination and synced, and then renamed into their places:
// what stops the copying (an error, a power cut, an exception out of `progress`) leaves the files of an earlier copy as
// they were, and the call returns when the new ones are on the disk. The hidden folder of a copying that was cut is
// removed by the next one. Files keep the time of their last change.
// Nobody else should write the source meanwhile; one copying at a time into a destination.
// Error, naming the file or folder: one that cannot be read or written, too little space, the same folder twice.
void copyFolder(const std::string& from, const std::string& to,
                const std::function<void(const CopyProgress&)>& progress = {});

}  // namespace quillon::platform
