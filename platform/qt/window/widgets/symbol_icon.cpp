#include "platform/qt/window/widgets/symbol_icon.h"

#include <QPainter>

#include "platform/qt/window/widgets/colors_and_fonts.h"

namespace platform {

namespace {

constexpr int side = 16;

void drawMark(QPainter& painter, SymbolName name) {
    switch (name) {
        case SymbolName::checkmarkCircleFill:
            painter.drawPolyline(QPolygonF{{4.6, 8.4}, {7.0, 10.9}, {11.4, 5.4}});
            return;
        case SymbolName::xmarkCircleFill:
            painter.drawLine(QPointF(5.4, 5.4), QPointF(10.6, 10.6));
            painter.drawLine(QPointF(10.6, 5.4), QPointF(5.4, 10.6));
            return;
        case SymbolName::infoCircleFill:
            painter.drawLine(QPointF(8, 7.6), QPointF(8, 11.4));
            painter.drawPoint(QPointF(8, 4.8));
            return;
    }
}

}  // namespace

SymbolIcon::SymbolIcon(QWidget* parent) : QWidget(parent) { setFixedSize(side, side); }

void SymbolIcon::setContent(const Symbol& symbol) {
    symbol_ = symbol;
    update();
}

void SymbolIcon::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(toolkitColor(symbol_.tint, palette()));
    painter.drawEllipse(QRectF(1, 1, side - 2, side - 2));
    painter.setPen(QPen(Qt::white, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    drawMark(painter, symbol_.name);
}

}  // namespace platform
