// Dials a telephone number through the modem. Asked for with the value "number".
#include <algorithm>

#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "platform/Desktop.h"
#include "platform/SerialPort.h"
#include "shell/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

constexpr std::chrono::seconds kPatience{3};
constexpr const char* kRefusals[] = {"BUSY", "ERROR", "NO ANSWER", "NO CARRIER", "NO DIAL TONE", "NO DIALTONE"};

class TfrmDialer final : public form::Screen {
 public:
  explicit TfrmDialer(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return "Dialer"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void closed() override { port_.reset(); }
  void btnDialClick();
  void btnHangUpClick();
  void btnCloseClick() { app().closeLater(*this); }

  std::string portName() const { return session_.settings().text("General", "DialerPort", "com1"); }
  std::string say(const std::string& command);

  Session& session_;
  form::Variable number_;
  std::unique_ptr<platform::SerialPort> port_;  // open from dialling to hanging up: letting go of it ends the call
  std::string status_;
};

void TfrmDialer::build(form::Layout& l) {
  l.edit("editNumber", "&Number:", number_, form::textConverter(40)).wide(30);
  l.label("lblStatus", [this] { return status_; });
  l.row(l.button("btnDial", "&Dial", &TfrmDialer::btnDialClick).standard(),
        l.button("btnHangUp", "&Hang up", &TfrmDialer::btnHangUpClick).enabledWhen([this] { return port_ != nullptr; }),
        l.button("btnClose", "&Close", &TfrmDialer::btnCloseClick).abandons());
}

void TfrmDialer::shown(const form::Open& open) {
  if (const auto given = open.values.find("number"); given != open.values.end()) number_.set(given->second);
  status_.clear();
}

// What the modem answers. Most say the command again first; that is given when no more comes, and means that the modem
// is at it.
std::string TfrmDialer::say(const std::string& command) {
  app().person().hourglass(true);
  port_->write(command + "\r");
  std::string first = port_->waitForAnswer(kPatience);
  if (first != command) return first;
  std::string second = port_->waitForAnswer(kPatience);
  return second.empty() ? first : second;
}

void TfrmDialer::btnDialClick() {
  const std::string number(trim(number_.value.asText()));
  const auto isControl = [](unsigned char c) { return c < ' ' || c == 0x7F; };
  if (number.empty()) form::refuse("Number must be entered", form::focus("editNumber"));
  if (std::ranges::any_of(number, isControl))
    form::refuse("The number holds a character that cannot be dialled", form::focus("editNumber"));
  const std::string command = "ATDT" + number, modem = "The modem on port '" + portName() + "' ";
  status_.clear();
  port_.reset();
  port_ = session_.desktop().openSerialPort(portName());
  const std::string answer = say(command);
  if (answer.empty() || std::ranges::any_of(kRefusals, [&](const char* word) { return equalFolded(answer, word); }))
    port_.reset();
  if (answer.empty())
    throw Error(modem +
                "does not answer.\rPlease see that it is connected and switched on. The port is DialerPort in the "
                "settings.");
  if (!port_) throw Error(modem + "could not dial: " + answer);
  status_ = answer == command ? "Dialing " + number : answer;
}

// Letting go of the port ends the call too, where the modem does not hear.
void TfrmDialer::btnHangUpClick() {
  say("ATH");
  port_.reset();
  status_ = "Hung up";
}

}  // namespace

ScreenPtr makeDialer(Session& session) { return std::make_unique<TfrmDialer>(session); }

}  // namespace quillon::shell
