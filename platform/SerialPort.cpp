#include "platform/SerialPort.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <tuple>
#include <vector>

#include "base/Text.h"
#include "platform/Descriptor.h"
#include "platform/SystemError.h"

namespace quillon::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kKinds[] = {"ttyS", "ttyUSB", "ttyACM"};
constexpr std::chrono::seconds kWritePatience{2};

std::optional<unsigned> numberIn(std::string_view digits) {
  unsigned number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::vector<std::string> devicesIn(const std::string& folder) {
  std::vector<std::tuple<std::size_t, unsigned, std::string>> found;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    const std::string name = entry.path().filename().string();
    for (std::size_t kind = 0; kind < std::size(kKinds); ++kind) {
      if (!name.starts_with(kKinds[kind])) continue;
      if (const auto number = numberIn(std::string_view(name).substr(kKinds[kind].size())))
        found.emplace_back(kind, *number, entry.path().string());
    }
  }
  std::sort(found.begin(), found.end());
  std::vector<std::string> devices;
  devices.reserve(found.size());
  for (auto& [kind, number, path] : found) devices.push_back(std::move(path));
  return devices;
}

class Port final : public SerialPort {
 public:
  Port(std::string name, const std::string& device)
      : name_(std::move(name)), line_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (!line_) throw systemError("open port", name_, errno);
    termios settings{};
    if (::tcgetattr(line_.get(), &settings) != 0) throw systemError("open port", name_, errno);
    ::cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL | CREAD;
    ::cfsetspeed(&settings, B9600);
    if (::tcsetattr(line_.get(), TCSANOW, &settings) != 0 || ::ioctl(line_.get(), TIOCEXCL) != 0)
      throw systemError("open port", name_, errno);
  }
  ~Port() override { ::ioctl(line_.get(), TIOCNXCL); }

  void write(std::string_view text) override {
    const auto end = Clock::now() + kWritePatience;
    while (!text.empty()) {
      if (!ready(POLLOUT, end)) throw systemError("write to port", name_, ETIMEDOUT);
      const ssize_t count = ::write(line_.get(), text.data(), text.size());
      if (count < 0 && errno != EAGAIN && errno != EINTR) throw systemError("write to port", name_, errno);
      if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  std::string waitForAnswer(std::chrono::milliseconds patience) override {
    const auto end = Clock::now() + patience;
    for (;;) {
      if (const auto line = takeLine()) return *line;
      if (!ready(POLLIN, end)) break;
      std::array<char, 512> buffer;
      const ssize_t count = ::read(line_.get(), buffer.data(), buffer.size());
      if (count < 0 && errno != EAGAIN && errno != EINTR) throw systemError("read from port", name_, errno);
      if (count == 0) throw systemError("read from port", name_, EIO);  // the device was unplugged
      if (count > 0) heard_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    std::string rest(trim(heard_));
    heard_.clear();
    return rest;
  }

 private:
  bool ready(short event, Clock::time_point end) const {
    for (;;) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
      pollfd waiting{line_.get(), event, 0};
      const int count = ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
      if (count >= 0 || errno != EINTR) return count > 0;
    }
  }

  std::optional<std::string> takeLine() {
    for (std::size_t end; (end = heard_.find_first_of("\r\n")) != std::string::npos;) {
      std::string line(trim(heard_.substr(0, end)));
      heard_.erase(0, end + 1);
      if (!line.empty()) return line;
    }
    return std::nullopt;
  }

  std::string name_;
  Descriptor line_;
  std::string heard_;  // and not yet given on
};

}  // namespace

std::string serialDevice(std::string_view name, const std::string& deviceFolder) {
  const std::string_view text = trim(name);
  const auto number = startsWithFolded(text, "com") ? numberIn(text.substr(3)) : std::nullopt;
  if (!number) {
    if (text.empty() || text.find('/') == text.npos) throw Error("There is no port '" + std::string(text) + "'");
    return std::string(text);
  }
  const auto devices = devicesIn(deviceFolder);
  if (*number < 1 || *number > devices.size())
    throw Error("There is no port '" + std::string(text) + "': this computer has " +
                (devices.empty() ? "no serial ports" : std::to_string(devices.size()) + " serial port(s)"));
  return devices[*number - 1];
}

std::unique_ptr<SerialPort> openSerialPort(const std::string& name) {
  return std::make_unique<Port>(name, serialDevice(name));
}

}  // namespace quillon::platform
