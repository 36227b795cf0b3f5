#pragma once

#include <string>

namespace quillon {
class Error;
}

namespace quillon::form {

// What a person is told of an error: its own words, but who is in the way, and what to do about it, where somebody else
// holds a table or a record.
std::string wordsFor(const Error& error);

}  // namespace quillon::form
