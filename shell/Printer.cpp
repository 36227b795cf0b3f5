#include "shell/Printer.h"

#include "form/Place.h"
#include "platform/Desktop.h"
#include "platform/SettingsText.h"
#include "shell/Session.h"

namespace quillon::shell {

bool printerInstalled(Session& session) {
  constexpr const char* kKey = "PrinterInstalled";
  if (session.desktop().defaultPrinter() || session.settings().flag("General", kKey, false)) return true;
  if (!session.person().confirm("No printer driver was detected. Do you have a printer installed?", form::Tone::warning,
                                form::Button::no))
    return false;
  session.writeSettings([](platform::SettingsText& settings) { settings.set("General", kKey, "1"); });
  return true;
}

void requirePrinter(Session& session) {
  if (!printerInstalled(session))
    form::refuse(
        "You do not have a default printer defined.\r\rTo preview or print reports a printer must be defined, though "
        "not necessarily attached.");
}

}  // namespace quillon::shell
