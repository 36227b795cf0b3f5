#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reports/OutputFile.h"

namespace quillon::reports {

// A zip archive, written from front to back: one part after the other, each compressed as it comes. The sizes of a part
// stand behind it, so that none is kept in memory. The same parts give the same bytes. Error when the archive or a part
// passes 4 GB.
class ZipFile {
 public:
  explicit ZipFile(OutputFile& file);
  ~ZipFile();

  void beginPart(std::string_view name);
  void write(std::string_view bytes);
  void endPart();
  void addPart(std::string_view name, std::string_view bytes);
  void finish();

 private:
  struct Deflater;
  struct Part {
    std::string name;
    std::uint64_t place = 0, packed = 0, size = 0;
    std::uint32_t sum = 0;
  };

  void pack(std::string_view bytes, bool last);
  std::uint64_t requireRoom(std::uint64_t bytes) const;

  OutputFile& file_;
  std::unique_ptr<Deflater> deflater_;
  std::vector<Part> parts_;
};

}  // namespace quillon::reports
