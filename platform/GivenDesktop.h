#pragma once

#include "platform/Desktop.h"

namespace quillon::platform {

// What is given in place of the desktop's own answer. What is empty comes from the desktop.
struct Given {
  // All of the program's own folders: the settings lie in it, "Public" and "Priv" below it.
  std::optional<std::string> folder = {};
  std::optional<std::string> country = {};
  std::optional<Date> today = {};
  // Its names of months and days become numbers as those of the desktop's format do.
  std::optional<std::string> dateFormat = {};
  // The only printer; one without a name is none.
  std::optional<Printer> printer = {};
  std::optional<Paper> paper = {};  // of the default printer
  // Where print jobs land: a copy of the job's whole file for each printed copy, named "0001 Title pages 2-3.pdf" and
  // numbered on. What lies there is never replaced.
  std::optional<std::string> printTo = {};
};

// A desktop with some answers given, as scripts do by the options of quillonctl. `desktop` must outlive it.
class GivenDesktop : public Desktop {
 public:
  GivenDesktop(Desktop& desktop, Given given) : given_(std::move(given)), desktop_(desktop) {}

  std::string settingsFolder() override;
  std::string publicFolder() override;
  std::string scratchFolder() override;
  std::string userName() override { return desktop_.userName(); }
  std::string machineName() override { return desktop_.machineName(); }
  std::string countryName() override { return given_.country ? *given_.country : desktop_.countryName(); }
  ShortDateFormat shortDateFormat() override;
  std::string weekdayName(Date day) override { return desktop_.weekdayName(day); }
  Separators separators() override { return desktop_.separators(); }
  DateTime now() override;
  std::optional<Printer> defaultPrinter() override;
  std::vector<std::string> printerNames() override;
  void print(const PrintJob& job, const std::function<void()>& betweenCopies) override;
  void openOutside(const std::string& pathOrLink) override { desktop_.openOutside(pathOrLink); }
  std::string helpPage(int context) override { return desktop_.helpPage(context); }
  std::unique_ptr<SerialPort> openSerialPort(const std::string& name) override;

 protected:
  Given given_;

 private:
  Desktop& desktop_;
};

}  // namespace quillon::platform
