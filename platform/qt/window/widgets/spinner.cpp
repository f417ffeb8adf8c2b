#include "platform/qt/window/widgets/spinner.h"

#include <QPainter>

#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr int naturalSize = 16;  // A line of text, so that a busy button is as high as an idle one.
constexpr int spokes = 8;
constexpr int millisecondsPerStep = 100;

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) { setFixedSize(naturalSize, naturalSize); }

void Spinner::setContent(const ProgressIndicator& indicator, Color color) {
    scale_ = indicator.scale;
    color_ = color;
}

void Spinner::showEvent(QShowEvent*) { timer_.start(millisecondsPerStep, this); }

void Spinner::hideEvent(QHideEvent*) { timer_.stop(); }

void Spinner::timerEvent(QTimerEvent*) {
    step_ = (step_ + 1) % spokes;
    update();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);
    painter.scale(scale_, scale_);
    painter.rotate(360.0 / spokes * step_);
    QPen pen(toolkitColor(color_, palette()), naturalSize / 8.0, Qt::SolidLine, Qt::RoundCap);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        painter.setOpacity((spoke + 1.0) / spokes);
        painter.setPen(pen);
        painter.drawLine(QPointF(0, -naturalSize * 0.25), QPointF(0, -naturalSize * 0.43));
        painter.rotate(360.0 / spokes);
    }
}

}  // namespace platform
