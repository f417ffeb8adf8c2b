#include "platform/qt/window/widgets/text_label.h"

#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QtMath>

#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr int unlimitedWidth = 1 << 20;
constexpr double disabledOpacity = 0.6;

// In each line, the toolkit searches for the end of the word again: a word of a megabyte would take minutes.
constexpr int longestUnbrokenWord = 500;

bool hasLongWord(const QString& text) {
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        if (length > longestUnbrokenWord) return true;
    }
    return false;
}

// Breaks the text into lines of `width` and returns their size.
QSizeF breakIntoLines(QTextLayout& layout, int width) {
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

}  // namespace

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);  // Otherwise the toolkit doesn't call heightForWidth().
}

void TextLabel::setContent(const Text& content, Color color) {
    const QFont newFont = toolkitFont(content.style, content.weight);
    const QString newText = QString::fromStdString(content.text);
    if (newFont != font()) setFont(newFont);
    if (newText != text()) {
        forgetLines();
        setText(newText);
    }
    if (color != color_) {
        color_ = color;
        update();
    }
}

void TextLabel::breakAt(int width) const {
    if (width == brokenWidth_) return;
    if (!brokenWidth_) {
        lines_.setText(text().replace(QLatin1Char('\n'), QChar::LineSeparator));
        lines_.setFont(font());
        QTextOption option;
        option.setWrapMode(hasLongWord(lines_.text()) ? QTextOption::WrapAnywhere
                                                      : QTextOption::WrapAtWordBoundaryOrAnywhere);
        option.setAlignment(text().isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft);
        lines_.setTextOption(option);
    }
    const QSizeF size = breakIntoLines(lines_, width);
    brokenSize_ = {qCeil(size.width()), qMax(qCeil(size.height()), fontMetrics().height())};
    brokenWidth_ = width;
}

void TextLabel::forgetLines() {
    brokenWidth_.reset();
    unbrokenSize_.reset();
}

QSize TextLabel::sizeHint() const {
    if (!unbrokenSize_) {
        breakAt(unlimitedWidth);
        unbrokenSize_ = brokenSize_;
    }
    return *unbrokenSize_;
}

QSize TextLabel::minimumSizeHint() const { return {fontMetrics().averageCharWidth(), fontMetrics().height()}; }

// Breaking again is slow, and layouts often ask about widths at which the text fits.
int TextLabel::heightForWidth(int width) const {
    if (width >= sizeHint().width()) return sizeHint().height();
    breakAt(width);
    return brokenSize_.height();
}

void TextLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) forgetLines();
    QLabel::changeEvent(event);
}

void TextLabel::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(disabledOpacity);
    painter.setPen(toolkitColor(color_, palette()));
    const bool isUnbroken = width() >= sizeHint().width() && !text().isRightToLeft();
    breakAt(isUnbroken ? unlimitedWidth : width());
    lines_.draw(&painter, QPointF(0, 0), {}, event->rect());
}

}  // namespace platform
