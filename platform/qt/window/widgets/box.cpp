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

QMargins marginsOf(const Padding& padding) {
    const int length = padding.length;
    switch (padding.edges) {
        case Edges::all: return {length, length, length, length};
        case Edges::horizontal: return {length, 0, length, 0};
        case Edges::top: return {0, length, 0, 0};
        case Edges::trailing: return {0, 0, length, 0};
    }
    return {};
}

// The button whose label the widget belongs to; null if there is none.
const QAbstractButton* buttonAround(const QWidget* widget) {
    for (const QWidget* ancestor = widget; ancestor != nullptr; ancestor = ancestor->parentWidget()) {
        if (const auto* button = qobject_cast<const QAbstractButton*>(ancestor)) return button;
    }
    return nullptr;
}

}  // namespace

Qt::Alignment toolkitAlignment(Alignment alignment) {
    return alignment == Alignment::leading ? Qt::AlignLeft : Qt::AlignHCenter;
}

bool Box::shows(const Modifier& modifier) {
    return std::holds_alternative<Padding>(modifier) || std::holds_alternative<Stretch>(modifier) ||
           std::holds_alternative<Frame>(modifier) || std::holds_alternative<Background>(modifier);
}

Box::Box(QWidget* content, bool fills, const Modifier& modifier, QWidget* parent) : QWidget(parent) {
    Qt::Alignment alignment;
    if (const auto* stretch = std::get_if<Stretch>(&modifier)) alignment = toolkitAlignment(stretch->alignment);
    if (const auto* frame = std::get_if<Frame>(&modifier)) {
        alignment = toolkitAlignment(frame->alignment);
        setFixedWidth(frame->width);
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content, 0, fills ? Qt::Alignment() : alignment);
    setModifier(modifier);
}

void Box::setModifier(const Modifier& modifier) {
    if (const auto* padding = std::get_if<Padding>(&modifier)) layout()->setContentsMargins(marginsOf(*padding));
    if (const auto* background = std::get_if<Background>(&modifier);
        background != nullptr && background_ != *background) {
        background_ = *background;
        update();
    }
}

void Box::paintEvent(QPaintEvent*) {
    if (!background_) return;
    QColor fill = toolkitColor(background_->color, palette());
    const QAbstractButton* button = buttonAround(this);
    if (button != nullptr && button->isDown()) fill = fill.darker(pressedDarkness);
    fill.setAlphaF(static_cast<float>(background_->opacity));

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (button != nullptr && !isEnabled()) painter.setOpacity(disabledOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const int radius = background_->cornerRadius;
    painter.drawRoundedRect(rect(), radius, radius);

    if (button == nullptr || !button->hasFocus()) return;
    painter.setPen(QPen(Qt::white, focusRingWidth));
    painter.setBrush(Qt::NoBrush);
    const QRectF ring = QRectF(rect()).adjusted(focusRingInset, focusRingInset, -focusRingInset, -focusRingInset);
    painter.drawRoundedRect(ring, radius - focusRingInset, radius - focusRingInset);
}

}  // namespace platform
