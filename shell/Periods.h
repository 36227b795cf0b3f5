#pragma once

#include <string>

#include "base/Period.h"
#include "form/Place.h"

namespace quillon::shell {

class Session;

// The period that a new document gets: the company's default, each half by itself, or that of today.
Period defaultPeriod(Session& session);

// As lists and messages show it, with the year's last two digits: "3/26".
std::string periodText(Period period);

// Refuses a period that is before the current fiscal year or outside the limits that the company allows; warns of one
// outside those that it expects, where Cancel is a silent stop. The focus goes to `place`. A limit of 0 does not limit.
void requireOpenPeriod(Session& session, Period period, const form::Place& place);

}  // namespace quillon::shell
