#pragma once

#include <string>
#include <string_view>

#include "store/Errors.h"

namespace quillon::store {

// What a missing name means to the caller.
enum class Missing { file, folder };

// The last part of a path: what a person knows the file by.
std::string baseName(std::string_view path);
// The folder part; empty for a bare name.
std::string folderOf(std::string_view path);

// The failure of "Unable to `verb` 'name'" with the system's error number, told in words with what to do about it.
IoError ioError(std::string_view verb, std::string_view path, int systemError, Missing missing = Missing::file);

}  // namespace quillon::store
