#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quillon::form {
struct Open;
class PageRun;
struct PrintChoice;
}  // namespace quillon::form
namespace quillon::shell {
class Session;
}

namespace quillon::reports {

class PreparedPages;

// Runs a report over the rows that are asked for and shows it in a preview of its own. The first page shows at once;
// the others follow while the preview can be used, and closing it stops the rest. Error without a printer, and those of
// the report's statement.
void preview(shell::Session& session, std::string_view className, const form::Open& open);

// The run of a report, by its name. Error when there is none of that name.
std::unique_ptr<form::PageRun> startReport(shell::Session& session, std::string_view className, const form::Open& open);

// Sends the pages to the desktop's printer, the whole job once for each copy. Error with the print service's words.
void print(shell::Session& session, const PreparedPages& pages, const form::PrintChoice& choice);

}  // namespace quillon::reports
