#include "desktop/PrintDialog.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "desktop/Text.h"

namespace quillon::desktop {

std::optional<form::PrintChoice> askPrint(QWidget* owner, const form::PrintQuestion& question) {
  constexpr int kMostCopies = 999;
  QDialog dialog(owner);
  dialog.setWindowTitle("Print");
  QFormLayout form(&dialog);
  QComboBox printer;
  for (const std::string& name : question.printers) printer.addItem(shown(name));
  if (question.printers.empty()) printer.addItem(shown(question.offered.printer));
  printer.setCurrentText(shown(question.offered.printer));
  form.addRow("&Printer:", &printer);
  QRadioButton all("&All pages"), range("Pages &from");
  QSpinBox from, to, copies;
  for (QSpinBox* number : {&from, &to}) number->setRange(1, question.pages);
  from.setValue(question.offered.fromPage);
  to.setValue(question.offered.toPage);
  all.setChecked(true);
  QLabel until("to");
  QHBoxLayout pages;
  for (QWidget* some : std::initializer_list<QWidget*>{&range, &from, &until, &to}) pages.addWidget(some);
  pages.addStretch();
  if (question.pages > 1) {
    form.addRow("Pages:", &all);
    form.addRow("", &pages);
    for (QSpinBox* number : {&from, &to})
      QObject::connect(number, &QSpinBox::valueChanged, &range, [&range] { range.setChecked(true); });
  }
  copies.setRange(1, kMostCopies);
  copies.setValue(question.offered.copies);
  form.addRow("&Copies:", &copies);
  QDialogButtonBox buttons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons.button(QDialogButtonBox::Ok)->setText("&Print");
  for (QAbstractButton* button : buttons.buttons()) button->setIcon({});
  form.addRow(&buttons);
  QObject::connect(&buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(&buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return {};
  form::PrintChoice choice = question.offered;
  choice.printer = printer.currentText().toStdString();
  if (range.isChecked() && question.pages > 1) {
    choice.fromPage = std::min(from.value(), to.value());
    choice.toPage = std::max(from.value(), to.value());
  }
  choice.copies = copies.value();
  return choice;
}

}  // namespace quillon::desktop
