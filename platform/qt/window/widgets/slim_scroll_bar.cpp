#include "platform/qt/window/widgets/slim_scroll_bar.h"

#include <QMouseEvent>
#include <QPainter>

#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr double thumbInset = 2;
constexpr double shortestThumb = 18;
constexpr double thumbOpacity = 0.5;

}  // namespace

SlimScrollBar::SlimScrollBar(QScrollBar* scrolled, QWidget* parent) : QWidget(parent), scrolled_(scrolled) {
    connect(scrolled, &QScrollBar::valueChanged, this, [this] { update(); });
    connect(scrolled, &QScrollBar::rangeChanged, this, [this](int minimum, int maximum) {
        setVisible(maximum > minimum);
        update();
    });
    hide();
}

// Only while there is something to scroll.
QRectF SlimScrollBar::thumb() const {
    const double range = scrolled_->maximum() - scrolled_->minimum();
    const double track = height() - 2 * thumbInset;
    const double length = qMax(shortestThumb, track * scrolled_->pageStep() / (range + scrolled_->pageStep()));
    const double top = (track - length) * (scrolled_->value() - scrolled_->minimum()) / range;
    return {thumbInset, thumbInset + top, width() - 2 * thumbInset, length};
}

void SlimScrollBar::moveThumbTo(double top) {
    const double room = height() - 2 * thumbInset - thumb().height();
    if (room <= 0) return;
    const double share = (top - thumbInset) / room;
    scrolled_->setValue(scrolled_->minimum() + qRound(share * (scrolled_->maximum() - scrolled_->minimum())));
}

void SlimScrollBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = toolkitColor(Color::primary, palette());
    color.setAlphaF(thumbOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const QRectF shape = thumb();
    painter.drawRoundedRect(shape, shape.width() / 2, shape.width() / 2);
}

void SlimScrollBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const QRectF shape = thumb();
    const double pressed = event->position().y();
    grip_ = pressed >= shape.top() && pressed <= shape.bottom() ? pressed - shape.top() : shape.height() / 2;
    moveThumbTo(pressed - *grip_);
}

void SlimScrollBar::mouseMoveEvent(QMouseEvent* event) {
    if (grip_) moveThumbTo(event->position().y() - *grip_);
}

void SlimScrollBar::mouseReleaseEvent(QMouseEvent*) { grip_.reset(); }

}  // namespace platform
