#pragma once

#include <QString>
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

// What a person typed, for the program.
inline std::string typed(const QString& text) {
  QString result = text;
  result.replace('\n', '\r');
  return result.toStdString();
}

}  // namespace quillon::desktop
