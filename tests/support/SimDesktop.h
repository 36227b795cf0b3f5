#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/GivenDesktop.h"
#include "platform/LinuxDesktop.h"
#include "platform/SerialPort.h"
#include "support/TempFolder.h"

namespace quillon::sim {

namespace detail {

// What a desktop stands on; a base, so that it is there before the desktop.
struct SimGround {
  TempFolder folder;
  platform::LinuxDesktop real;
};

}  // namespace detail

// The same desktop on every machine, and what was asked of it: folders under a temporary one, fixed answers that a test
// changes through `given`, jobs and links that are written down and reach nobody.
class SimDesktop final : private detail::SimGround, public platform::GivenDesktop {
 public:
  SimDesktop()
      : GivenDesktop(real, {.folder = folder.path(),
                            .country = "Canada",
                            .today = Date(2026, 3, 17),
                            .dateFormat = "MM/dd/yyyy",
                            .printer = platform::Printer{"Office", platform::Paper::other},
                            .printTo = {}}) {}

  platform::Given& given() { return given_; }
  std::vector<platform::PrintJob> printed;  // one for each copy, as it was sent
  std::vector<std::string> opened;
  std::vector<std::string> dialled;  // what was written to serial ports
  std::deque<std::string> answers;   // what serial ports will say

  std::string userName() override { return "clerk"; }
  std::string machineName() override { return "desk"; }
  std::string weekdayName(Date /*day*/) override { return "Tuesday"; }
  Separators separators() override { return {}; }

  void print(const platform::PrintJob& job, const std::function<void()>& betweenCopies) override {
    platform::checkJob(job);
    for (int copy = 1; copy <= job.copies; ++copy) {
      printed.push_back(job);
      printed.back().copies = 1;
      if (copy < job.copies && betweenCopies) betweenCopies();
    }
  }
  void openOutside(const std::string& pathOrLink) override { opened.push_back(pathOrLink); }

  std::unique_ptr<platform::SerialPort> openSerialPort(const std::string&) override {
    struct Port final : platform::SerialPort {
      explicit Port(SimDesktop& owner) : desktop(owner) {}
      void write(std::string_view text) override { desktop.dialled.emplace_back(text); }
      std::string waitForAnswer(std::chrono::milliseconds) override {
        if (desktop.answers.empty()) return {};
        std::string answer = desktop.answers.front();
        desktop.answers.pop_front();
        return answer;
      }
      SimDesktop& desktop;
    };
    return std::make_unique<Port>(*this);
  }
};

}  // namespace quillon::sim
