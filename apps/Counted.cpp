#include "apps/Counted.h"

namespace quillon::apps {

std::string counted(std::uint64_t count, std::string_view noun) {
  std::string text = std::to_string(count);
  for (auto place = static_cast<int>(text.size()) - 3; place > 0; place -= 3) text.insert(place, 1, ',');
  text.append(" ").append(noun);
  if (count != 1) text += 's';
  return text;
}

}  // namespace quillon::apps
