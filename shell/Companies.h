#pragma once

#include <string>
#include <vector>

#include "form/Converter.h"

namespace quillon::shell {

class Session;

// The name that the sample company has, and no other may take.
inline constexpr const char* kSampleData = "Sample Data";

// The companies that the settings list: section Companies, a name and a folder each.
std::vector<std::string> companyNames(Session& session);               // sorted, case apart
std::string companyFolder(Session& session, const std::string& name);  // empty: not listed
form::ConverterPtr companyChoices(Session& session);                   // those of the menu, to choose from
// After the list changed: what the Companies menu shows.
void rebuildCompaniesMenu(Session& session);

// A folder as the settings keep it: in full, without "." and slashes at its end.
std::string absoluteFolder(const std::string& folder);

// Whether a folder is a company's: it has the table Company.
bool holdsCompany(Session& session, const std::string& folder);

// What the Companies menu does with a name: opens that company and logs in. The sample company is made when it is not
// there yet. False when none is open afterwards as the person wanted; they were told why.
bool selectCompany(Session& session, const std::string& name);

}  // namespace quillon::shell
