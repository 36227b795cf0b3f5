#pragma once

#include "platform/Desktop.h"
#include "platform/Opening.h"

namespace quillon::platform {

// The desktop that this process runs on.
class LinuxDesktop final : public Desktop {
 public:
  std::string settingsFolder() override;
  std::string publicFolder() override;
  std::string scratchFolder() override;
  std::string userName() override;
  std::string machineName() override;
  std::string countryName() override;
  ShortDateFormat shortDateFormat() override;
  std::string weekdayName(Date day) override;
  Separators separators() override;
  DateTime now() override;
  std::optional<Printer> defaultPrinter() override;
  std::vector<std::string> printerNames() override;
  void print(const PrintJob& job, const std::function<void()>& betweenCopies) override;
  void openOutside(const std::string& pathOrLink) override;
  std::string helpPage(int context) override;
  std::unique_ptr<SerialPort> openSerialPort(const std::string& name) override;

 private:
  Opening opening_;
};

}  // namespace quillon::platform
