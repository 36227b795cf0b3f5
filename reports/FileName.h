#pragma once

#include <string>
#include <string_view>

namespace quillon::reports {

// The name offered for the file of a report or document: its title, with a blank for each character that some file
// system does not take.
inline std::string fileNameOf(std::string title) {
  for (char& c : title)
    if (std::string_view("\"*/:<>?\\|").find(c) != std::string_view::npos) c = ' ';
  return title;
}

}  // namespace quillon::reports
