#include "platform/Printing.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <string_view>

#include "base/Errors.h"
#include "base/Text.h"
#include "platform/Program.h"

namespace quillon::platform {
namespace {

// The service may have to ask the network.
constexpr std::chrono::seconds kAnswerPatience{5};
constexpr std::chrono::seconds kSendPatience{120};

// What a command says; empty when it is missing, fails or does not answer: there is then no printer to speak of.
std::string asked(const CommandLine& command) {
  try {
    const auto result = run(command, kAnswerPatience);
    return result && result->status == 0 ? result->output : std::string();
  } catch (const Error&) {
    return {};
  }
}

std::vector<std::string_view> split(std::string_view text, std::string_view marks) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; (at = text.find_first_not_of(marks, at)) != text.npos;) {
    const std::size_t end = std::min(text.find_first_of(marks, at), text.size());
    parts.push_back(text.substr(at, end - at));
    at = end;
  }
  return parts;
}

// "A4", "A4.Fullbleed", "iso_a4_210x297mm", "A4,Upper", but not "A4Extra".
bool namesA4(std::string_view medium) {
  const std::string folded = foldCase(medium);
  std::string_view name = folded;
  if (name.starts_with("iso_")) name.remove_prefix(4);
  return name.starts_with("a4") && (name.size() == 2 || !std::isalnum(static_cast<unsigned char>(name[2])));
}

// The medium chosen by the user or the administrator: "copies=1 media=iso_a4_210x297mm sides=one-sided".
std::optional<std::string_view> chosenMedium(std::string_view options) {
  for (const std::string_view name : {"media=", "PageSize="})
    for (const std::string_view option : split(options, " \n"))
      if (option.starts_with(name)) return option.substr(name.size());
  return std::nullopt;
}

// The medium marked as usual among the possible ones: "PageSize/Media Size: Letter *A4 Legal".
std::optional<std::string_view> usualMedium(std::string_view choices) {
  for (const std::string_view line : split(choices, "\n")) {
    const std::size_t colon = line.find(':');
    if (colon == line.npos || !(line.starts_with("PageSize/") || line.starts_with("media/"))) continue;
    for (const std::string_view choice : split(line.substr(colon + 1), " "))
      if (choice.starts_with('*')) return choice.substr(1);
  }
  return std::nullopt;
}

Paper paperOf(const std::string& printer) {
  const std::string options = asked({"lpoptions", "-p", printer});
  if (const auto medium = chosenMedium(options)) return namesA4(*medium) ? Paper::a4 : Paper::other;
  const std::string choices = asked({"lpoptions", "-p", printer, "-l"});
  const auto medium = usualMedium(choices);
  return medium && namesA4(*medium) ? Paper::a4 : Paper::other;
}

}  // namespace

std::optional<Printer> defaultPrinter() {
  const std::string answer = asked({"lpstat", "-d"});
  constexpr std::string_view kBefore = "destination: ";
  const std::size_t at = answer.find(kBefore);
  if (at == std::string::npos) return std::nullopt;
  const std::string_view rest = std::string_view(answer).substr(at + kBefore.size());
  const std::string name(trim(rest.substr(0, rest.find('\n'))));
  if (name.empty()) return std::nullopt;
  return Printer{name, paperOf(name)};
}

std::vector<std::string> printerNames() {
  const std::string answer = asked({"lpstat", "-e"});
  std::vector<std::string> names;
  for (const std::string_view line : split(answer, "\n")) names.emplace_back(trim(line));
  std::sort(names.begin(), names.end());
  return names;
}

void checkJob(const PrintJob& job) {
  if (job.fromPage < 1 || job.toPage < job.fromPage)
    throw Error("There are no pages " + std::to_string(job.fromPage) + " to " + std::to_string(job.toPage));
  if (job.copies < 1) throw Error("The number of copies must be at least 1");
  if (!std::filesystem::is_regular_file(job.file)) throw Error("There is no file '" + job.file + "' to print");
}

void print(const PrintJob& job, const std::function<void()>& betweenCopies) {
  checkJob(job);
  CommandLine command{"lp"};
  if (!job.printer.empty()) command.insert(command.end(), {"-d", job.printer});
  command.insert(command.end(), {"-P", std::to_string(job.fromPage) + "-" + std::to_string(job.toPage), "-n", "1"});
  if (!job.title.empty()) command.insert(command.end(), {"-t", job.title});
  command.push_back(std::filesystem::absolute(job.file).string());
  for (int copy = 1; copy <= job.copies; ++copy) {
    const auto result = run(command, kSendPatience);
    if (!result) throw Error("Printing needs the program 'lp', which is not installed (package cups-client)");
    if (result->status != 0) {
      const std::string reason(trim(result->output));
      throw Error("The print service refused '" + job.title + "'" + (reason.empty() ? "" : ": " + reason));
    }
    if (copy < job.copies && betweenCopies) betweenCopies();
  }
}

}  // namespace quillon::platform
