#include "platform/qt/widgets/text_label.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

#include "platform/qt/widgets/palette.h"

namespace platform {

namespace {

constexpr int unlimitedWidth = 1 << 20;
constexpr double disabledOpacity = 0.6;

QString shownText(const QLabel& label) {
    QString text = label.text();
    return text.replace(QLatin1Char('\n'), QChar::LineSeparator);
}

// Breaks the text into lines of `width` and returns the space they take.
QSizeF breakIntoLines(QTextLayout& layout, int width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal height = 0;
    qreal widest = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += line.height();
        widest = qMax(widest, line.naturalTextWidth());
    }
    layout.endLayout();
    return {widest, height};
}

QSize spaceFor(const QLabel& label, int width) {
    QTextLayout layout(shownText(label), label.font());
    const QSizeF space = breakIntoLines(layout, width);
    return {qCeil(space.width()), qMax(qCeil(space.height()), label.fontMetrics().height())};
}

}  // namespace

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void TextLabel::setContent(const Text& content, Color color) {
    const QFont newFont = toolkitFont(content.style, content.weight);
    const QString newText = QString::fromStdString(content.text);
    if (newFont != font()) setFont(newFont);
    if (newText != text()) setText(newText);
    if (color != color_) {
        color_ = color;
        update();
    }
}

QSize TextLabel::sizeHint() const { return spaceFor(*this, unlimitedWidth); }

QSize TextLabel::minimumSizeHint() const { return {fontMetrics().averageCharWidth(), fontMetrics().height()}; }

int TextLabel::heightForWidth(int width) const { return spaceFor(*this, width).height(); }

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(disabledOpacity);
    painter.setPen(toolkitColor(color_, palette()));
    QTextLayout layout(shownText(*this), font());
    breakIntoLines(layout, width());
    layout.draw(&painter, QPointF(0, 0));
}

}  // namespace platform
