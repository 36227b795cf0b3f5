#include "platform/SerialPort.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <chrono>

#include "base/Errors.h"
#include "platform/Descriptor.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"

namespace quillon::platform {
namespace {

using std::chrono::milliseconds;

TEST(SerialPort, NamesMeanDevices) {
  const sim::TempFolder folder;
  for (const char* name : {"ttyS10", "ttyS2", "ttyUSB0", "ttyACM1", "ttySomething", "tty1"})
    sim::writeFile(folder.path() + "/" + name, "");
  const char* inOrder[] = {"ttyS2", "ttyS10", "ttyUSB0", "ttyACM1"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(serialDevice("com" + std::to_string(i + 1), folder.path()), folder.path() + "/" + inOrder[i]);
  }
  EXPECT_EQ(serialDevice(" COM2 ", folder.path()), folder.path() + "/ttyS10");
  EXPECT_EQ(serialDevice("/dev/serial/by-id/modem", folder.path()), "/dev/serial/by-id/modem");
  for (const char* name : {"com0", "com5", "com", "com1x", "", "modem", "com99999999999"})
    EXPECT_THROW(serialDevice(name, folder.path()), Error) << name;
  EXPECT_THROW(openSerialPort(folder.path() + "/ttyS2"), Error) << "a file is no port";
  EXPECT_THROW(openSerialPort(folder.path() + "/none"), Error);
}

// The modem's end of a pseudo-terminal.
class Line : public testing::Test {
 protected:
  Line() : modem_(::posix_openpt(O_RDWR | O_NOCTTY)) {
    if (::grantpt(modem_.get()) == 0 && ::unlockpt(modem_.get()) == 0) device_ = ::ptsname(modem_.get());
  }
  void say(const std::string& text) const {
    ASSERT_EQ(::write(modem_.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

  Descriptor modem_;
  std::string device_;
};

TEST_F(Line, WritesAsTheTextStandsAndTakesTheAnswersLineByLine) {
  const auto port = openSerialPort(device_);
  port->write("ATDT 555\r\n");
  std::array<char, 100> buffer{};
  const ssize_t count = ::read(modem_.get(), buffer.data(), buffer.size());
  EXPECT_EQ(std::string(buffer.data(), static_cast<std::size_t>(count)), "ATDT 555\r\n");

  say("\r\nOK\r\n\r\nCONNECT 9600\r\nRI");
  EXPECT_EQ(port->waitForAnswer(milliseconds(1000)), "OK");
  EXPECT_EQ(port->waitForAnswer(milliseconds(1000)), "CONNECT 9600");
  EXPECT_EQ(port->waitForAnswer(milliseconds(50)), "RI");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(port->waitForAnswer(milliseconds(100)), "");
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(95));
}

TEST_F(Line, ALineThatIsGoneIsAnError) {
  const auto port = openSerialPort(device_);
  modem_.close();
  EXPECT_THROW(port->waitForAnswer(milliseconds(1000)), Error);
}

// Nobody takes what is written, as with a modem that holds the line.
TEST_F(Line, ADeviceThatDoesNotListenIsAnError) {
  const auto port = openSerialPort(device_);
  EXPECT_THROW(port->write(std::string(1 << 20, 'x')), Error);
}

}  // namespace
}  // namespace quillon::platform
