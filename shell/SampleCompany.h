#pragma once

#include "base/Date.h"

namespace quillon::store {
class Database;
}

namespace quillon::shell {

class Session;
struct CountryDefaults;

// Fills the company that is open, which has to be empty, with the sample data: a small maker of furniture, in the
// person's country, with the books of the two calendar years before today's, the first of them closed. All of it or
// nothing. Error when something is entered there already.
void fillSampleCompany(Session& session);

// The same for whoever has a company's tables and no session.
void fillSampleCompany(store::Database& database, const CountryDefaults& country, Date today);

}  // namespace quillon::shell
