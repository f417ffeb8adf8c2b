#include "platform/qt/window/widgets/address_field.h"

#include <QApplication>
#include <QPainter>
#include <QSignalBlocker>
#include <limits>

#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr int fieldHeight = 22;
constexpr double borderRadius = 5;
constexpr int textInset = 4;  // The toolkit adds two pixels.

}  // namespace

AddressField::AddressField(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    setTextMargins(textInset, 0, textInset, 0);
    setMaxLength(std::numeric_limits<int>::max());
    setAttribute(Qt::WA_MacShowFocusRect, false);
    // The toolkit's square background would cover the rounded one.
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
    // Not textEdited, because a screen reader sets the text as a whole.
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        const auto onChange = onChange_;  // A copy, because the change may replace it.
        if (onChange) onChange(text.toStdString());
    });
}

void AddressField::setContent(const TextField& field) {
    onChange_ = field.onChange;
    setFixedHeight(qRound(fieldHeight * textScale()));
    if (const QFont newFont = toolkitFont(TextStyle::body, std::nullopt); newFont != font()) setFont(newFont);
    setPlaceholderText(QString::fromStdString(field.placeholder));
    const QString name = QString::fromStdString(field.accessibleName);
    if (name != accessibleName()) setAccessibleName(name);  // Each call is announced.
    // Compared as bytes: made of them, a text loses a leading byte order mark that the field still has.
    if (field.text == text().toStdString()) return;
    const QSignalBlocker noEcho(this);
    setText(QString::fromStdString(field.text));
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
