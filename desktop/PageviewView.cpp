// Prepared pages, as a preview shows them: one page as it will be on paper, at a zoom. Paper is white in dark palettes,
// too. Glyphs come from the report's own font file, at the places that paper and PDF have them.
#include <QAbstractScrollArea>
#include <QGlyphRun>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRawFont>
#include <QScrollBar>
#include <QWheelEvent>
#include <map>

#include "base/Text.h"
#include "desktop/ControlView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/PageView.h"
#include "form/Screen.h"
#include "reports/Fonts.h"
#include "reports/Pages.h"
#include "reports/Picture.h"

namespace quillon::desktop {
namespace {

using reports::Element;

constexpr int kAround = 12;  // pixels of desk around the paper

QColor inkOf(const reports::Style& style) {
  const int shade = style.quiet ? reports::kQuietShade : 0;
  return {shade, shade, shade};
}

class PageArea final : public QAbstractScrollArea {
 public:
  PageArea(Hands& hands, form::Control& control, QWidget& parent)
      : QAbstractScrollArea(&parent), hands_(hands), control_(control) {
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setBackgroundRole(QPalette::Mid);
    setMinimumSize(300, 200);
  }

  void sync() {
    const form::PageView& view = *control_.pageView();
    const bool turned = view.page != page_ || view.pages.get() != pages_;
    page_ = view.page;
    pages_ = view.pages.get();
    resizePaper();
    if (turned) {
      verticalScrollBar()->setValue(0);
      link_.reset();
    }
    setAccessibleDescription(paper() ? shown(paper()->pageText(page_)) : QString());
    viewport()->update();
  }

  // A letter page in its full width and length, where the desktop has the room.
  QSize sizeHint() const override { return {scaled(*this, 860), scaled(*this, 1090)}; }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QAbstractScrollArea::resizeEvent(event);
    resizePaper();
  }

  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(viewport());
    if (paper() == nullptr) return;
    const QRectF sheet(origin(), QSizeF(paper()->width * scale(), paper()->height * scale()));
    painter.fillRect(sheet, Qt::white);
    painter.setPen(QPen(QColor(0x90, 0x90, 0x90), 1));
    painter.drawRect(sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(origin());
    const reports::Page& page = paper()->page(page_);
    std::size_t link = 0;
    for (const Element& element : page.elements) draw(painter, page, element, element.jump > 0 && link_ == link++);
  }

  // What is left of the page comes before the next one, although its button has the key.
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride) {
      const auto& key = *static_cast<QKeyEvent*>(event);
      if (scrollsBy(key) || isStep(key) || (isEnter(key) && link_)) event->accept();
    }
    return QAbstractScrollArea::event(event);
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (leads(*event)) return;
    if (scrollsBy(*event))
      return verticalScrollBar()->triggerAction(event->key() == Qt::Key_PageDown ? QAbstractSlider::SliderPageStepAdd
                                                                                 : QAbstractSlider::SliderPageStepSub);
    switch (event->key()) {
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_Left:
      case Qt::Key_Right:
        QAbstractScrollArea::keyPressEvent(event);
        break;
      default:
        if (const std::string key = keyName(*event); !key.empty()) hands_.key(key);
    }
  }

  // At the end of a page the next one follows.
  void wheelEvent(QWheelEvent* event) override {
    const int turn = event->angleDelta().y();
    const QScrollBar& bar = *verticalScrollBar();
    if ((event->modifiers() & Qt::ControlModifier) != 0)
      hands_.key(turn > 0 ? "Ctrl++" : "Ctrl+-");
    else if (turn < 0 && bar.value() == bar.maximum())
      turnTo(1);
    else if (turn > 0 && bar.value() == bar.minimum())
      turnTo(-1);
    else
      QAbstractScrollArea::wheelEvent(event);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    choose(linkAt(event->position()));
    viewport()->setCursor(link_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
  }
  void leaveEvent(QEvent* event) override {
    choose({});
    QAbstractScrollArea::leaveEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    choose(linkAt(event->position()));
    follow();
  }

 private:
  const reports::PreparedPages* paper() const {
    const auto* all = static_cast<const reports::PreparedPages*>(control_.pageView()->pages.get());
    return all != nullptr && page_ >= 1 && page_ <= all->pageCount() ? all : nullptr;
  }
  // Pixels for 1/1000 inch.
  double scale() const { return logicalDpiX() / 1000.0 * control_.pageView()->zoom / 100.0; }

  QPointF origin() const {
    const double width = paper()->width * scale();
    const double x = std::max<double>(kAround, (viewport()->width() - width) / 2);
    return {x - horizontalScrollBar()->value(), static_cast<double>(kAround - verticalScrollBar()->value())};
  }

  void resizePaper() {
    if (paper() == nullptr) return;
    const int width = static_cast<int>(paper()->width * scale()) + 2 * kAround;
    const int height = static_cast<int>(paper()->height * scale()) + 2 * kAround;
    horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(40);
    horizontalScrollBar()->setSingleStep(40);
  }

  // The page looks as it prints; of the figures that lead on, one is marked: that below the mouse, or to which keys
  // went.
  void choose(std::optional<std::size_t> link) {
    if (std::exchange(link_, link) != link) viewport()->update();
  }
  void follow() {
    if (link_) hands_.act([&](form::Input& input) { input.follow(hands_.screen(), control_, page_, *link_); });
  }

  static bool isStep(const QKeyEvent& key) {
    return key.modifiers() == Qt::ControlModifier && (key.key() == Qt::Key_Down || key.key() == Qt::Key_Up);
  }
  static bool isEnter(const QKeyEvent& key) { return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter; }

  bool leads(const QKeyEvent& key) {
    if (isEnter(key) && link_) return follow(), true;
    if (!isStep(key)) return false;
    const std::vector<form::PageLink> links = paper() ? paper()->links(page_) : std::vector<form::PageLink>();
    if (links.empty()) return true;
    const std::size_t last = links.size() - 1;
    if (key.key() == Qt::Key_Down)
      choose(link_ ? std::min(*link_ + 1, last) : 0);
    else
      choose(link_ ? std::max<std::size_t>(*link_, 1) - 1 : last);
    showLink(links[*link_]);
    return true;
  }

  void showLink(const form::PageLink& link) {
    const QRectF box(link.x * scale(), link.y * scale(), link.width * scale(), link.height * scale());
    const QRectF seen = box.translated(origin());
    QScrollBar &down = *verticalScrollBar(), &right = *horizontalScrollBar();
    if (seen.top() < 0 || seen.bottom() > viewport()->height())
      down.setValue(down.value() + static_cast<int>(seen.center().y()) - viewport()->height() / 2);
    if (seen.left() < 0 || seen.right() > viewport()->width())
      right.setValue(right.value() + static_cast<int>(seen.center().x()) - viewport()->width() / 2);
  }

  bool scrollsBy(const QKeyEvent& key) const {
    const QScrollBar& bar = *verticalScrollBar();
    if ((key.modifiers() & ~Qt::KeypadModifier) != 0) return false;
    return (key.key() == Qt::Key_PageDown && bar.value() < bar.maximum()) ||
           (key.key() == Qt::Key_PageUp && bar.value() > bar.minimum());
  }

  void turnTo(int step) {
    const int wanted = page_ + step;
    if (paper() == nullptr || wanted < 1 || wanted > paper()->pageCount()) return;
    hands_.key(step > 0 ? "PgDn" : "PgUp");
    if (step < 0) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  }

  std::optional<std::size_t> linkAt(QPointF place) const {
    if (paper() == nullptr) return {};
    const QPointF at = (place - origin()) / scale();
    const std::vector<form::PageLink> links = paper()->links(page_);
    for (std::size_t i = 0; i < links.size(); ++i)
      if (QRectF(links[i].x, links[i].y, links[i].width, links[i].height).contains(at)) return i;
    return {};
  }

  void draw(QPainter& painter, const reports::Page& page, const Element& element, bool isMarked) {
    const QRectF box(element.box.x * scale(), element.box.y * scale(), element.box.width * scale(),
                     element.box.height * scale());
    if (isMarked) painter.fillRect(box, QColor(0xD5, 0xE5, 0xF8));
    switch (element.kind) {
      case Element::Kind::text:
        drawText(painter, page.textOf(element), element, box, isMarked);
        break;
      case Element::Kind::line:
      case Element::Kind::rectangle:
        painter.setPen(QPen(inkOf(element.style), std::max(0.5, reports::kLineWidth * scale())));
        if (element.kind == Element::Kind::line)
          painter.drawLine(box.topLeft(), box.bottomRight());
        else
          painter.drawRect(box);
        break;
      case Element::Kind::picture:
        drawPicture(painter, element);
        break;
    }
  }

  void drawText(QPainter& painter, std::string_view text, const Element& element, const QRectF& box, bool isMarked) {
    const std::string& found = control_.pageView()->found;
    if (!found.empty() && foldCase(text).find(foldCase(found)) != std::string::npos)
      painter.fillRect(box, QColor(0xFF, 0xE8, 0x8A));
    const reports::Font& font = reports::Font::of(element.style.face);
    font.shape(text, glyphs_);
    const reports::Pen pen = reports::penOf(element, text);
    const double unit = font.scale(element.style.size) * scale();
    QList<quint32> ids;
    QList<QPointF> places;
    double x = pen.x * scale();
    for (const reports::Glyph& glyph : glyphs_) {
      ids.append(glyph.id);
      places.append(QPointF(x + glyph.right * unit, pen.y * scale() - glyph.above * unit));
      x += glyph.advance * unit;
    }
    QGlyphRun run;
    run.setRawFont(rawFont(element.style, unit * font.unitsPerEm()));
    run.setGlyphIndexes(ids);
    run.setPositions(places);
    painter.setPen(isMarked ? QColor(0x10, 0x3C, 0x8C) : inkOf(element.style));
    painter.drawGlyphRun({}, run);
  }

  const QRawFont& rawFont(const reports::Style& style, double pixels) {
    const std::pair<int, int> key{static_cast<int>(style.face), static_cast<int>(pixels * 16)};
    const auto [place, isNew] = fonts_.try_emplace(key);
    if (isNew)
      place->second =
          QRawFont(QString::fromStdString(reports::Font::of(style.face).path()), pixels, QFont::PreferNoHinting);
    return place->second;
  }

  // A picture that is none leaves its place empty.
  void drawPicture(QPainter& painter, const Element& element) {
    if (element.text >= paper()->pictures.size()) return;
    const std::string& bytes = paper()->pictures[element.text];
    const QImage picture = QImage::fromData(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (picture.isNull()) return;
    const reports::PicturePlace place = reports::placeOf(element, picture.width(), picture.height());
    painter.drawImage(QRectF(place.x * scale(), place.y * scale(), place.width * scale(), place.height * scale()),
                      picture);
  }

  Hands& hands_;
  form::Control& control_;
  int page_ = 1;
  std::optional<std::size_t> link_;  // of the page's, the one that is marked
  const form::PageSource* pages_ = nullptr;
  std::vector<reports::Glyph> glyphs_;
  std::map<std::pair<int, int>, QRawFont> fonts_;
};

class PageviewView final : public ControlView {
 public:
  PageviewView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), area_(new PageArea(hands, control, parent)) {
    area_->setAccessibleName("Page");
  }
  QWidget* widget() const override { return area_; }
  QWidget* focusWidget() const override { return area_; }
  bool stretches() const override { return true; }
  void sync() override {
    syncLooks();
    area_->sync();
  }

 private:
  PageArea* area_;
};

}  // namespace

ViewPtr makePageviewView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<PageviewView>(hands, control, parent);
}

}  // namespace quillon::desktop
