#include "platform/qt/window/widgets/flexible_scroll_area.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include "platform/qt/window/desktop_conventions.h"
#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr int smallestHeight = 24;  // Still shows a line of text.
constexpr int lineHeight = 28;      // About a row, for each press of an arrow key.

// A scroll bar without buttons at its ends, slim and transparent, because it lies over the content.
constexpr int slimBarWidth = 11;
constexpr const char* slimBarLook =
    "QScrollBar { background: transparent; }"
    "QScrollBar::handle { background: rgb(128, 128, 128); border-radius: 3px; margin: 2px; min-height: 14px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: none; }";

// Lies over the whole area, but lets the mouse through.
class FocusRing : public QWidget {
  public:
    explicit FocusRing(QWidget* area) : QWidget(area) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        constexpr double width = 2;
        constexpr double radius = 8;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(toolkitColor(Color::blue, palette()), width));
        painter.drawRoundedRect(QRectF(rect()).adjusted(width / 2, width / 2, -width / 2, -width / 2), radius, radius);
    }
};

}  // namespace

FlexibleScrollArea::FlexibleScrollArea() : focusRing_(new FocusRing(this)) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    if (!desktopConventions::usesThePlatformsScrollBars()) {
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);  // It would take space from the content.
        verticalScrollBar()->setParent(this);
        verticalScrollBar()->setStyleSheet(slimBarLook);
        verticalScrollBar()->hide();
    }
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(lineHeight);

    setFocusPolicy(Qt::NoFocus);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this](int minimum, int maximum) {
        const bool scrolls = maximum > minimum;
        if (!desktopConventions::usesThePlatformsScrollBars()) verticalScrollBar()->setVisible(scrolls);
        setFocusPolicy(scrolls ? Qt::TabFocus : Qt::NoFocus);
        if (!scrolls) clearFocus();
    });
}

QSize FlexibleScrollArea::sizeHint() const {
    const QWidget* content = widget();
    if (content == nullptr) return minimumSizeHint();
    const QSize wanted = content->sizeHint();
    const int height = content->hasHeightForWidth() ? content->heightForWidth(viewport()->width()) : wanted.height();
    return {wanted.width(), qMin(height, maximumHeight())};
}

QSize FlexibleScrollArea::minimumSizeHint() const { return {0, smallestHeight}; }

// The content's size may change by itself: a longer value takes more lines.
bool FlexibleScrollArea::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

bool FlexibleScrollArea::event(QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        focusRing_->setVisible(event->type() == QEvent::FocusIn);
        focusRing_->raise();
    }
    return QScrollArea::event(event);
}

void FlexibleScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    if (!desktopConventions::usesThePlatformsScrollBars()) {
        verticalScrollBar()->setGeometry(width() - slimBarWidth, 0, slimBarWidth, height());
    }
    focusRing_->setGeometry(rect());
}

void FlexibleScrollArea::keyPressEvent(QKeyEvent* event) {
    QScrollBar* bar = verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_Home: bar->setValue(bar->minimum()); return;
        case Qt::Key_End: bar->setValue(bar->maximum()); return;
        case Qt::Key_Space: bar->triggerAction(QAbstractSlider::SliderPageStepAdd); return;
        default: QScrollArea::keyPressEvent(event);
    }
}

}  // namespace platform
