#pragma once

#include <string>
#include <vector>

#include "reports/Pages.h"
#include "reports/pdf/PdfFile.h"

namespace quillon::reports {

// The pictures of a report in its PDF, each written once.
class PdfPictures {
 public:
  struct Picture {
    int number = 0;  // of its object; 0: it is no picture, and is left out
    int width = 0, height = 0;
  };

  PdfPictures(PdfFile& file, const std::vector<std::string>& pictures);
  // Null when there is none.
  const Picture* find(std::uint32_t picture) const;
  std::string resources() const;  // "/P0 5 0 R/P1 ..."

 private:
  std::vector<Picture> pictures_;
};

}  // namespace quillon::reports
