#include "platform/qt/widgets/address_field.h"

#include <QApplication>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyleHints>
#include <limits>

#include "platform/qt/widgets/palette.h"

namespace platform {

namespace {

constexpr int fieldHeight = 22;
constexpr double borderRadius = 5;
constexpr int textInset = 4;  // Beyond the two pixels that the toolkit keeps by itself.

// Long enough to be found; a window that nobody touches should then cost nothing.
constexpr int blinkingTime = 10'000;  // milliseconds

}  // namespace

AddressField::AddressField(QWidget* parent)
    : QLineEdit(parent), flashTime_(QGuiApplication::styleHints()->cursorFlashTime()) {
    setFrame(false);
    setTextMargins(textInset, 0, textInset, 0);
    setMaxLength(std::numeric_limits<int>::max());
    setAttribute(Qt::WA_MacShowFocusRect, false);
    // The background is painted here, rounded; the toolkit's own would lie over it, square.
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
    // Not only what is typed: a screen reader or a paste menu sets the text as a whole.
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (onChange_) onChange_(text.toStdString());
    });
}

void AddressField::setContent(const TextField& field) {
    onChange_ = field.onChange;
    setFixedHeight(qRound(fieldHeight * textScale()));
    if (const QFont newFont = toolkitFont(TextStyle::body, std::nullopt); newFont != font()) setFont(newFont);
    setPlaceholderText(QString::fromStdString(field.placeholder));
    setAccessibleName(QString::fromStdString(field.accessibleName));
    const QString newText = QString::fromStdString(field.text);
    if (newText == text()) return;
    const QSignalBlocker noEcho(this);
    setText(newText);
}

bool AddressField::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::FocusIn:
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress: blinkForAWhile(); break;
        default: break;
    }
    return QLineEdit::event(event);
}

void AddressField::blinkForAWhile() {
    if (!blinking_.isActive()) QGuiApplication::styleHints()->setCursorFlashTime(flashTime_);
    blinking_.start(blinkingTime, this);
}

// The caret stands still where it is.
void AddressField::timerEvent(QTimerEvent* event) {
    if (event->timerId() != blinking_.timerId()) return QLineEdit::timerEvent(event);
    blinking_.stop();
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

void AddressField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor border = hasFocus() ? toolkitColor(Color::blue, palette()) : toolkitColor(Color::gray, palette());
        painter.setPen(QPen(border, hasFocus() ? 2 : 1));
        painter.setBrush(QApplication::palette().brush(QPalette::Base));
        const double inset = hasFocus() ? 1 : 0.5;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), borderRadius, borderRadius);
    }
    QLineEdit::paintEvent(event);
}

}  // namespace platform
