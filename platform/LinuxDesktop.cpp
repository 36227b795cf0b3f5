#include "platform/LinuxDesktop.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "platform/Account.h"
#include "platform/Folders.h"
#include "platform/HelpPages.h"
#include "platform/Locale.h"
#include "platform/SerialPort.h"

namespace quillon::platform {

std::string LinuxDesktop::settingsFolder() { return platform::settingsFolder(); }
std::string LinuxDesktop::publicFolder() { return platform::publicFolder(); }
std::string LinuxDesktop::scratchFolder() { return platform::scratchFolder(); }
std::string LinuxDesktop::userName() { return platform::userName(); }
std::string LinuxDesktop::machineName() { return platform::machineName(); }
std::string LinuxDesktop::countryName() { return platform::countryName(); }
ShortDateFormat LinuxDesktop::shortDateFormat() { return platform::shortDateFormat(); }
std::string LinuxDesktop::weekdayName(Date day) { return platform::weekdayName(day); }
Separators LinuxDesktop::separators() { return platform::separators(); }

DateTime LinuxDesktop::now() {
  const auto sinceEpoch =
      std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()).time_since_epoch();
  const auto count = sinceEpoch.count();
  const std::time_t seconds = static_cast<std::time_t>(count / 1000);
  std::tm local{};
  ::tzset();  // a desktop that travels changes its zone while we run
  ::localtime_r(&seconds, &local);
  const Date date(local.tm_year + 1900, static_cast<unsigned>(local.tm_mon + 1), static_cast<unsigned>(local.tm_mday));
  const std::int32_t second = (local.tm_hour * 60 + local.tm_min) * 60 + std::min(local.tm_sec, 59);
  return {date, TimeOfDay{second * 1000 + static_cast<std::int32_t>(count % 1000)}};
}

std::optional<Printer> LinuxDesktop::defaultPrinter() { return platform::defaultPrinter(); }
std::vector<std::string> LinuxDesktop::printerNames() { return platform::printerNames(); }
void LinuxDesktop::print(const PrintJob& job, const std::function<void()>& betweenCopies) {
  platform::print(job, betweenCopies);
}
void LinuxDesktop::openOutside(const std::string& pathOrLink) { opening_.open(pathOrLink); }
std::string LinuxDesktop::helpPage(int context) { return platform::helpPage(programFolder(), context); }
std::unique_ptr<SerialPort> LinuxDesktop::openSerialPort(const std::string& name) {
  return platform::openSerialPort(name);
}

}  // namespace quillon::platform
