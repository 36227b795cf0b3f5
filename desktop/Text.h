#pragma once

#include <QString>
#include <QTextDocument>
#include <string>
#include <string_view>

namespace quillon::desktop {

// The program's texts in a window: lines end with "\r" there.
inline QString shown(std::string_view text) {
  QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  result.replace("\r\n", "\n");
  result.replace('\r', '\n');
  return result;
}

// The same for a tooltip, which would take marks in a text for markup.
inline QString tip(std::string_view text) {
  const QString plain = shown(text);
  return Qt::mightBeRichText(plain) ? "<span>" + plain.toHtmlEscaped() + "</span>" : plain;
}

// What a person typed, for the program.
inline std::string typed(const QString& text) {
  QString result = text;
  result.replace('\n', '\r');
  return result.toStdString();
}

}  // namespace quillon::desktop
