#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

// The system's print service, through its commands lp, lpstat and lpoptions.
namespace quillon::platform {

enum class Paper { a4, other };

struct Printer {
  std::string name;
  Paper paper = Paper::other;
};

struct PrintJob {
  std::string file;     // a PDF
  std::string title;    // how the job is called in the queue
  std::string printer;  // empty for the default one
  int fromPage = 1;
  int toPage = 1;
  int copies = 1;
};

// Null when the system has none, or no print service that answers.
std::optional<Printer> defaultPrinter();
// The names of all printers, sorted; empty without a print service.
std::vector<std::string> printerNames();

// Sends the job once for each copy and calls `betweenCopies` in between; what that raises leaves out the copies to
// come. Error for pages or copies that cannot be, for a missing file, for a missing print service, and with the
// service's own words when it refuses the job.
void print(const PrintJob& job, const std::function<void()>& betweenCopies = {});

// What `print` checks first. Error.
void checkJob(const PrintJob& job);

}  // namespace quillon::platform
