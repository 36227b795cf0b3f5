#include "platform/GivenDesktop.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/DatePattern.h"
#include "platform/Folders.h"
#include "platform/SerialPort.h"
#include "platform/SystemError.h"

namespace quillon::platform {
namespace {

constexpr std::size_t kLongestTitle = 100;

std::string made(const std::string& path) {
  makeFolder(path);
  return path;
}

std::string fileNameOf(const PrintJob& job, int number) {
  std::string title = job.title.substr(0, kLongestTitle);
  std::replace_if(
      title.begin(), title.end(), [](unsigned char c) { return c < ' ' || c == '/' || c == 0x7F; }, '-');
  char front[16];
  std::snprintf(front, sizeof front, "%04d ", number);
  return front + title + " pages " + std::to_string(job.fromPage) + "-" + std::to_string(job.toPage) + ".pdf";
}

// The number behind the highest one in the folder.
int nextNumber(const std::string& folder) {
  int highest = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    int number = 0;
    if (std::sscanf(entry.path().filename().c_str(), "%d ", &number) == 1) highest = std::max(highest, number);
  }
  return highest + 1;
}

void printTo(const std::string& folder, const PrintJob& job) {
  for (int number = nextNumber(folder);; ++number) {
    std::error_code error;
    const std::string target = folder + "/" + fileNameOf(job, number);
    if (std::filesystem::copy_file(job.file, target, error)) return;
    if (error != std::errc::file_exists) throw systemError("write", target, error.value());
  }
}

}  // namespace

std::string GivenDesktop::settingsFolder() { return given_.folder ? made(*given_.folder) : desktop_.settingsFolder(); }

std::string GivenDesktop::publicFolder() {
  return given_.folder ? made(*given_.folder + "/Public") : desktop_.publicFolder();
}

std::string GivenDesktop::scratchFolder() {
  return given_.folder ? made(*given_.folder + "/Priv") : desktop_.scratchFolder();
}

ShortDateFormat GivenDesktop::shortDateFormat() {
  return given_.dateFormat ? ShortDateFormat(withNumericParts(*given_.dateFormat)) : desktop_.shortDateFormat();
}

DateTime GivenDesktop::now() { return given_.today ? DateTime{*given_.today, {}} : desktop_.now(); }

std::optional<Printer> GivenDesktop::defaultPrinter() {
  std::optional<Printer> printer = given_.printer ? given_.printer : desktop_.defaultPrinter();
  if (!printer || printer->name.empty()) return std::nullopt;
  if (given_.paper) printer->paper = *given_.paper;
  return printer;
}

std::vector<std::string> GivenDesktop::printerNames() {
  if (!given_.printer) return desktop_.printerNames();
  if (given_.printer->name.empty()) return {};
  return {given_.printer->name};
}

void GivenDesktop::print(const PrintJob& job, const std::function<void()>& betweenCopies) {
  if (!given_.printTo) return desktop_.print(job, betweenCopies);
  checkJob(job);
  makeFolder(*given_.printTo);
  for (int copy = 1; copy <= job.copies; ++copy) {
    printTo(*given_.printTo, job);
    if (copy < job.copies && betweenCopies) betweenCopies();
  }
}

std::unique_ptr<SerialPort> GivenDesktop::openSerialPort(const std::string& name) {
  return desktop_.openSerialPort(name);
}

}  // namespace quillon::platform
