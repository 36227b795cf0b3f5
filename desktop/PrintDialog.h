#pragma once

#include <optional>

#include "form/Person.h"

class QWidget;

namespace quillon::desktop {

// Asks for the printer, the pages, where there are two or more, and the copies.
std::optional<form::PrintChoice> askPrint(QWidget* owner, const form::PrintQuestion& question);

}  // namespace quillon::desktop
