#include "desktop/QtPerson.h"

#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "base/Errors.h"
#include "desktop/Front.h"
#include "desktop/PrintDialog.h"
#include "desktop/Text.h"
#include "desktop/Window.h"

namespace quillon::desktop {
namespace {

QMessageBox::Icon iconOf(form::Tone tone) {
  switch (tone) {
    case form::Tone::information:
      return QMessageBox::Information;
    case form::Tone::warning:
      return QMessageBox::Warning;
    case form::Tone::confirmation:
      return QMessageBox::Question;
    case form::Tone::error:
    case form::Tone::stop:
      break;
  }
  return QMessageBox::Critical;
}

struct ButtonPair {
  form::Button ours;
  QMessageBox::StandardButton theirs;
};
constexpr ButtonPair kButtons[] = {{form::Button::ok, QMessageBox::Ok},
                                   {form::Button::cancel, QMessageBox::Cancel},
                                   {form::Button::yes, QMessageBox::Yes},
                                   {form::Button::no, QMessageBox::No},
                                   {form::Button::retry, QMessageBox::Retry}};

QMessageBox::StandardButton standardOf(form::Button button) {
  for (const ButtonPair& pair : kButtons)
    if (pair.ours == button) return pair.theirs;
  return QMessageBox::NoButton;
}

// "PDF files (*.pdf)|*.pdf|All|*.*" as the toolkit writes it.
QString filterOf(const std::string& filter) {
  const QStringList parts = shown(filter).split('|');
  QStringList names;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
    names << parts[i].section(" (", 0, 0) + " (" + QString(parts[i + 1]).replace("*.*", "*") + ")";
  return names.join(";;");
}

}  // namespace

QtPerson::QtPerson() = default;
QtPerson::~QtPerson() = default;

QWidget* QtPerson::owner() const { return front_ ? front_->active() : nullptr; }

void QtPerson::settle() {
  hourglass(false);
  progress_.reset();
  if (front_) front_->sync();
}

form::Button QtPerson::ask(const form::Dialog& dialog) {
  settle();
  QMessageBox box(owner());
  box.setIcon(iconOf(dialog.tone));
  box.setWindowTitle(shown(dialog.title()));
  box.setTextFormat(Qt::PlainText);
  box.setText(shown(dialog.text));
  // Plain, as the buttons of all windows are; some styles would draw icons of their own on them.
  for (const form::Button button : dialog.buttons) box.addButton(standardOf(button))->setIcon({});
  box.setDefaultButton(standardOf(dialog.standard));
  const bool dismissable = dialog.buttons.size() > 1;
  if (dismissable) box.setEscapeButton(standardOf(dialog.dismissal()));
  const int pressed = box.exec();
  for (const ButtonPair& pair : kButtons)
    if (pair.theirs == pressed) return pair.ours;
  return dialog.dismissal();
}

std::optional<std::string> QtPerson::askText(const std::string& caption, const std::string& prompt,
                                             const std::string& initial) {
  settle();
  QInputDialog dialog(owner());
  dialog.setWindowTitle(shown(caption));
  dialog.setLabelText(shown(prompt));
  dialog.findChild<QLabel*>()->setTextFormat(Qt::PlainText);
  dialog.setTextValue(shown(initial));
  return dialog.exec() == QDialog::Accepted ? std::optional(typed(dialog.textValue())) : std::nullopt;
}

std::optional<std::string> QtPerson::chooseFile(const form::FileQuestion& question) {
  settle();
  QFileDialog dialog(owner(), shown(question.title), {}, filterOf(question.filter));
  dialog.setAcceptMode(question.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(question.saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  if (!question.name.empty()) dialog.selectFile(shown(question.name));
  if (!question.extension.empty()) dialog.setDefaultSuffix(shown(question.extension));
  if (question.saving)  // a name without an ending gets that of the kind which is chosen
    QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog](const QString& kind) {
      const QString suffix = kind.section("*.", 1, 1).section(')', 0, 0);
      if (!suffix.isEmpty() && suffix != "*") dialog.setDefaultSuffix(suffix);
    });
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return typed(dialog.selectedFiles().front());
}

std::optional<std::string> QtPerson::chooseFolder(const std::string& title, const std::string& initial) {
  settle();
  const QString folder = QFileDialog::getExistingDirectory(owner(), shown(title), shown(initial));
  return folder.isEmpty() ? std::nullopt : std::optional(typed(folder));
}

std::optional<form::PrintChoice> QtPerson::choosePrint(const form::PrintQuestion& question) {
  settle();
  return askPrint(owner(), question);
}

void QtPerson::runModal(form::Screen& screen) {
  Window* window = front_->windowOf(screen);
  if (window != nullptr && !window->isVisible()) window->makeModal();
  settle();
  QEventLoop loop;
  while (screen.visible()) loop.processEvents(QEventLoop::WaitForMoreEvents);
  front_->sync();
}

void QtPerson::work(form::Screen& screen, const std::function<bool()>& step) {
  settle();
  QCoreApplication::processEvents();  // what there is already is on view before the rest is worked out
  while (screen.visible() && step()) {
    front_->sync();
    QCoreApplication::processEvents();
  }
  front_->sync();
}

// Only its own Cancel is delivered: it is modal, and nothing else can be reached while it shows.
bool QtPerson::progress(const form::Progress& progress) {
  if (Window* window = front_->active(); window != nullptr && window->show(progress)) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return true;
  }
  if (!progress_) {
    progress_ = std::make_unique<QProgressDialog>(owner());
    progress_->setWindowModality(Qt::ApplicationModal);
    auto* words = new QLabel;
    words->setTextFormat(Qt::PlainText);
    progress_->setLabel(words);
    progress_->setAutoClose(false);
    progress_->setAutoReset(false);
    progress_->setMinimumDuration(400);
    if (!progress.cancellable) progress_->setCancelButton(nullptr);
  }
  progress_->setLabelText(shown(progress.text));
  // Sizes in bytes would not fit.
  constexpr long kSteps = 1000;
  progress_->setMaximum(progress.total > 0 ? static_cast<int>(kSteps) : 0);
  progress_->setValue(progress.total > 0 ? static_cast<int>(progress.done * kSteps / progress.total) : 0);
  QCoreApplication::processEvents(progress_->isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
  return !progress_->wasCanceled();
}

void QtPerson::hourglass(bool on) {
  if (on == waiting_) return;
  waiting_ = on;
  if (on)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

void QtPerson::clipboard(const std::string& text) { QApplication::clipboard()->setText(shown(text)); }

void QtPerson::openOutside(const std::string& pathOrLink) { desktop_->openOutside(pathOrLink); }

}  // namespace quillon::desktop
