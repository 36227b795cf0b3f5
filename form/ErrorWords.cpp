#include "form/ErrorWords.h"

#include "store/InUse.h"

namespace quillon::form {

std::string wordsFor(const Error& error) {
  const auto* held = dynamic_cast<const store::InUseError*>(&error);
  if (held == nullptr) return error.what();
  const std::string what =
      (held->isRecord() ? "A record of the table '" : "The table '") + held->table() + "' is being ";
  const std::string deed = held->code() == store::Code::tableInUse ? "used" : held->isRecord() ? "edited" : "updated";
  if (held->holder().empty())
    return what + deed + " in another window of this program.\rPlease finish there and try again.";
  const std::string by = held->isRecord() ? " by " + held->holder() : " by another job (" + held->holder() + ")";
  return what + deed + by + ".\rPlease try again when that has finished.";
}

}  // namespace quillon::form
