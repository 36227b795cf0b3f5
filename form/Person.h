#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillon::form {

class Screen;

enum class Tone { information, warning, error, confirmation, stop };
enum class Button { ok, cancel, yes, no, retry };

std::string_view nameOf(Button button);  // "OK", "Cancel", ...
std::string_view nameOf(Tone tone);      // "information", ...

// A text with buttons. The text is plain, never markup; "\r" ends a line in it.
struct Dialog {
  Tone tone = Tone::information;
  std::string text;
  std::vector<Button> buttons = {Button::ok};
  Button standard = Button::ok;  // what Enter presses
  std::string caption = {};      // empty: that of the tone, such as "Warning"

  std::string title() const;  // the caption
  // What closing the dialog without a button means: Cancel, or No, or OK, the first of them that it has.
  Button dismissal() const;
};

struct FileQuestion {
  std::string title;
  std::string filter = {};  // "PDF files (*.pdf)|*.pdf"
  std::string name = {};    // the one offered
  std::string extension = {};
  bool saving = false;  // asks before it overwrites
};

struct PrintChoice {
  std::string printer;
  int fromPage = 1, toPage = 1;
  int copies = 1;
};

struct PrintQuestion {
  PrintChoice offered;
  int pages = 1;  // which of them is only asked for where there are two or more
  std::vector<std::string> printers = {};
};

struct Progress {
  std::string text;
  long done = 0, total = 0;  // total 0: not known
  bool cancellable = false;
};

// Whoever sits in front of the program: a window, a script, a test. The only way out to them.
//
// Every call returns when it has been answered. While one waits, the screens may change only through what the person
// does in a modal screen. Nobody is asked while the store is between a change and its publish.
class Person {
 public:
  virtual ~Person() = default;

  virtual Button ask(const Dialog& dialog) = 0;
  virtual std::optional<std::string> askText(const std::string& caption, const std::string& prompt,
                                             const std::string& initial) = 0;
  virtual std::optional<std::string> chooseFile(const FileQuestion& question) = 0;
  virtual std::optional<std::string> chooseFolder(const std::string& title, const std::string& initial) = 0;
  virtual std::optional<PrintChoice> choosePrint(const PrintQuestion& question) = 0;
  // Runs the screen until it is closed.
  virtual void runModal(Screen& screen) = 0;
  // Takes step after step until one gives false or the screen is closed; meanwhile that screen can be used.
  virtual void work(Screen& screen, const std::function<bool()>& step);
  // False: the person wants it ended. Only painting and the progress's own Cancel are delivered meanwhile.
  virtual bool progress(const Progress& progress) = 0;
  virtual void hourglass(bool on) = 0;
  virtual void clipboard(const std::string& text) = 0;
  // A file or link, with whatever program the desktop has for it.
  virtual void openOutside(const std::string& pathOrLink) = 0;

  // Shows a text with OK.
  void show(Tone tone, const std::string& text, const std::string& caption = {});
  // Yes or No; `standard` is what Enter presses.
  bool confirm(const std::string& text, Tone tone = Tone::confirmation, Button standard = Button::yes);
};

}  // namespace quillon::form
