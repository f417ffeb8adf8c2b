#include "platform/qt/window/widgets/box.h"

#include <QAbstractButton>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr double disabledOpacity = 0.5;
constexpr double focusRingInset = 3;  // Inside the fill, where white is visible in light and dark.
constexpr double focusRingWidth = 2;
constexpr int pressedDarkness = 115;  // Per cent, as QColor counts it.

// The button whose label the widget belongs to; null if there is none.
const QAbstractButton* buttonAround(const QWidget* widget) {
    for (const QWidget* ancestor = widget; ancestor != nullptr; ancestor = ancestor->parentWidget()) {
        if (const auto* button = qobject_cast<const QAbstractButton*>(ancestor)) return button;
    }
    return nullptr;
}

}  // namespace

void Box::setContent(QWidget* content, Qt::Alignment alignment) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(look_.padding);
    layout->addWidget(content, 0, alignment);
}

void Box::setLook(const BoxLook& look) {
    look_ = look;
    if (layout() != nullptr) layout()->setContentsMargins(look.padding);
    update();
}

void Box::paintEvent(QPaintEvent*) {
    if (!look_.background) return;
    QColor fill = toolkitColor(look_.background->color, palette());
    const QAbstractButton* button = buttonAround(this);
    if (button != nullptr && button->isDown()) fill = fill.darker(pressedDarkness);
    fill.setAlphaF(static_cast<float>(look_.background->opacity));

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (button != nullptr && !isEnabled()) painter.setOpacity(disabledOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect(), look_.cornerRadius, look_.cornerRadius);

    if (button == nullptr || !button->hasFocus()) return;
    painter.setPen(QPen(Qt::white, focusRingWidth));
    painter.setBrush(Qt::NoBrush);
    const QRectF ring = QRectF(rect()).adjusted(focusRingInset, focusRingInset, -focusRingInset, -focusRingInset);
    painter.drawRoundedRect(ring, look_.cornerRadius - focusRingInset, look_.cornerRadius - focusRingInset);
}

}  // namespace platform
