#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace quillon::platform {

// A line to a device such as a modem; closed with the object. Calls raise Error, naming the port.
class SerialPort {
 public:
  SerialPort() = default;
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;
  virtual ~SerialPort() = default;

  // Error when the device does not take it within two seconds.
  virtual void write(std::string_view text) = 0;
  // The next line of what the device says, without blanks and line ends around it; empty lines are skipped. When no
  // whole line has come after `patience`, what there is, which may be empty.
  virtual std::string waitForAnswer(std::chrono::milliseconds patience) = 0;
};

// The device that a person's name for a port means: "com1" is the first of /dev/ttyS*, ttyUSB* and ttyACM*, in this
// order and by number; anything else is a path. Error when there is no such port.
std::string serialDevice(std::string_view name, const std::string& deviceFolder = "/dev");

// Opens a port for 9600 baud, eight bits, no parity. Error too when another program of this kind has it open.
std::unique_ptr<SerialPort> openSerialPort(const std::string& name);

}  // namespace quillon::platform
