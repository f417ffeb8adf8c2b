#include "platform/qt/widgets/flexible_scroll_area.h"

#include <QEvent>

namespace platform {

namespace {

constexpr int smallestHeight = 24;  // Still shows a line of text.

}  // namespace

FlexibleScrollArea::FlexibleScrollArea(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    viewport()->setAutoFillBackground(false);
}

QSize FlexibleScrollArea::sizeHint() const {
    const QWidget* content = widget();
    if (content == nullptr) return minimumSizeHint();
    const QSize wanted = content->sizeHint();
    const int height = content->hasHeightForWidth() ? content->heightForWidth(viewport()->width()) : wanted.height();
    return {wanted.width(), qMin(height, maximumHeight())};
}

QSize FlexibleScrollArea::minimumSizeHint() const { return {0, smallestHeight}; }

// The content's own wishes change without this widget's doing: a longer value takes more lines.
bool FlexibleScrollArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)) {
        updateGeometry();
    }
    return QScrollArea::eventFilter(watched, event);
}

}  // namespace platform
