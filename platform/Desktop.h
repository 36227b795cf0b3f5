#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/AmountFormat.h"
#include "base/Date.h"
#include "base/DateText.h"
#include "platform/Printing.h"

namespace quillon::platform {

class SerialPort;

// All that the program asks of the machine and the session it runs in. Its answers hold for one process: what others
// show (country, date format, paper) is read once at start and passed on. Folders are made where missing. Each answer
// is told at the function that gives it for a real desktop: Folders.h, Account.h, Locale.h, Printing.h, Opening.h,
// HelpPages.h, SerialPort.h.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  virtual std::string settingsFolder() = 0;
  virtual std::string publicFolder() = 0;
  virtual std::string scratchFolder() = 0;

  virtual std::string userName() = 0;
  virtual std::string machineName() = 0;
  virtual std::string countryName() = 0;
  virtual ShortDateFormat shortDateFormat() = 0;
  virtual std::string weekdayName(Date day) = 0;
  virtual Separators separators() = 0;
  // The local time.
  virtual DateTime now() = 0;
  Date today() { return now().date; }

  virtual std::optional<Printer> defaultPrinter() = 0;
  virtual std::vector<std::string> printerNames() = 0;
  virtual void print(const PrintJob& job, const std::function<void()>& betweenCopies) = 0;

  virtual void openOutside(const std::string& pathOrLink) = 0;
  virtual std::string helpPage(int context) = 0;
  virtual std::unique_ptr<SerialPort> openSerialPort(const std::string& name) = 0;
};

}  // namespace quillon::platform
