#include "desktop/Icons.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

// The drawings lie in a library, from which nothing else would ask for them. Outside of any namespace, as it must be.
static void loadDrawings() { Q_INIT_RESOURCE(icons); }

namespace quillon::desktop {
namespace {

// The drawings have one ink, which becomes the palette's.
QIcon drawn(const QByteArray& svg) {
  QIcon icon;
  for (const auto& [mode, group] :
       {std::pair{QIcon::Normal, QPalette::Active}, {QIcon::Disabled, QPalette::Disabled}}) {
    QByteArray inked = svg;
    inked.replace("currentColor", QApplication::palette().color(group, QPalette::ButtonText).name().toLatin1());
    QSvgRenderer renderer(inked);
    for (const int size : {24, 36, 48, 72}) {
      QPixmap picture(size, size);
      picture.fill(Qt::transparent);
      QPainter painter(&picture);
      renderer.render(&painter);
      icon.addPixmap(picture, mode);
    }
  }
  return icon;
}

}  // namespace

QIcon iconNamed(std::string_view control) {
  loadDrawings();
  QFile file(":/icons/" + QString::fromUtf8(control.data(), static_cast<qsizetype>(control.size())) + ".svg");
  return file.open(QIODevice::ReadOnly) ? drawn(file.readAll()) : QIcon();
}

QIcon programIcon() {
  loadDrawings();
  return QIcon(":/icons/quillon.svg");
}

}  // namespace quillon::desktop
