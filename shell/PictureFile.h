#pragma once

#include <string>

namespace quillon::shell {

// The content of a picture's file: PNG, JPEG or BMP, as its first bytes tell, of at most 10 MB. Error that says what is
// wrong with it.
std::string readPicture(const std::string& path);

}  // namespace quillon::shell
