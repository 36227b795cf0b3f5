// Takes a picture of every screen on a company's data: shots FOLDER OUT [dark]. Needs a display with a window manager;
// pictures are of the windows as they stand there, frames and all.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPixmap>
#include <QScreen>
#include <QStyleFactory>
#include <QTest>
#include <iostream>

#include "apps/Program.h"
#include "desktop/Front.h"
#include "desktop/QtPerson.h"
#include "desktop/Text.h"
#include "desktop/Window.h"
#include "store/Cursor.h"

namespace quillon::desktop {
namespace {

QPalette darkPalette() {
  QPalette dark;
  const QColor window(0x2b, 0x2d, 0x30), base(0x1e, 0x1f, 0x22), text(0xdf, 0xe1, 0xe5), faint(0x7a, 0x7e, 0x85);
  dark.setColor(QPalette::Window, window);
  dark.setColor(QPalette::WindowText, text);
  dark.setColor(QPalette::Base, base);
  dark.setColor(QPalette::AlternateBase, QColor(0x25, 0x27, 0x2a));
  dark.setColor(QPalette::Text, text);
  dark.setColor(QPalette::Button, QColor(0x39, 0x3b, 0x40));
  dark.setColor(QPalette::ButtonText, text);
  dark.setColor(QPalette::ToolTipBase, window);
  dark.setColor(QPalette::ToolTipText, text);
  dark.setColor(QPalette::Highlight, QColor(0x2e, 0x43, 0x6e));
  dark.setColor(QPalette::HighlightedText, text);
  dark.setColor(QPalette::PlaceholderText, faint);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    dark.setColor(QPalette::Disabled, role, faint);
  return dark;
}

// How the rest of the program opens a screen that needs to be told something: on the first row of its list.
form::Open askedFor(shell::Session& session, const std::string& className) {
  struct Key {
    const char *screen, *table, *field;
  };
  static constexpr Key kKeys[] = {{"TfrmGLAccount", "GLAccnt", "GLAccountID"},
                                  {"TfrmGLAccountSub", "GLAcSub1", "SubAccountID"},
                                  {"TfrmJV", "JV", "JVID"},
                                  {"TfrmUser", "Users", "UserName"}};
  form::Open open;
  open.values["level"] = store::Value(1);
  for (const Key& key : kKeys) {
    if (className != key.screen) continue;
    store::Cursor rows(session.database(), key.table);
    rows.open();
    if (rows.isEmpty())
      open.newRow = true;
    else
      open.locate[key.field] = rows.value(key.field);
  }
  return open;
}

bool take(const Window& window, const std::string& path) {
  QApplication::processEvents();
  const QRect frame = window.frameGeometry();
  const QPixmap picture =
      QGuiApplication::primaryScreen()->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height());
  return picture.save(shown(path));
}

// The window manager frames a window and brings it forward in its own time.
void settle() { QTest::qWait(150); }

int shoot(apps::Program& program, Front& front, const std::string& out) {
  int taken = 0;
  for (const form::ScreenEntry& entry : program.session().registry().screens()) {
    if (!entry.make) continue;
    try {
      form::Screen& screen = program.app().open(entry.className, askedFor(program.session(), entry.className));
      front.sync();
      settle();
      Window* window = front.windowOf(screen);
      if (window != nullptr && take(*window, out + "/" + entry.className + ".png")) ++taken;
      if (entry.className != "TfrmQuillon") program.app().dismiss(screen);
    } catch (const std::exception& error) {
      std::cout << entry.className << ": " << error.what() << '\n';
    }
  }
  return taken;
}

}  // namespace
}  // namespace quillon::desktop

int main(int count, char** words) {
  using namespace quillon;
  if (count < 3) {
    std::cerr << "usage: shots FOLDER OUT [dark]\n";
    return 2;
  }
  const QApplication application(count, words);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (count > 3) QApplication::setPalette(desktop::darkPalette());
  const std::string out = words[2];
  QDir().mkpath(desktop::shown(out));
  apps::ProgramOptions options;
  options.given.folder = out + "/settings";
  desktop::QtPerson person;
  apps::Program program(options, person);
  int taken = 0;
  {
    desktop::Front front(program.app());
    person.sitBefore(front, program.session().desktop());
    program.start(words[1]);
    taken = desktop::shoot(program, front, out);
  }
  program.end();
  std::cout << out << ": " << taken << " pictures\n";
  return taken > 0 ? 0 : 1;
}
