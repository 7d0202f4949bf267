#include "ui/RingView.h"

#include <QPainterPathStroker>

#include <algorithm>
#include <cmath>
#include <numbers>

RingView::RingView(QQuickItem* parent) : SegmentsItem(parent) {}

void RingView::setLineWidth(double v) {
    v = std::max(0.5, v);
    if (v == widthValue) return;
    widthValue = v;
    touch();
}

void RingView::setRoundCaps(bool on) {
    if (on == round) return;
    round = on;
    touch();
}

double RingView::radius() const { return std::max(0.0, std::min(width(), height()) / 2 - widthValue / 2); }

std::vector<SegmentLayout::Span> RingView::spans() const {
    const double r = radius();
    if (r <= 0) return {};
    // Gaps and the least visible part are asked for in points and laid out in degrees.
    const double degreesPerPoint = 360.0 / (2 * std::numbers::pi * r);
    return layOut(360, gap() * degreesPerPoint, 2.0 * degreesPerPoint, true);
}

void RingView::paint(QPainter* p) {
    const double r = radius();
    if (r <= 0) return;
    p->setRenderHint(QPainter::Antialiasing);
    const QPointF c(width() / 2, height() / 2);
    const QRectF box(c.x() - r, c.y() - r, 2 * r, 2 * r);
    p->setPen(QPen(track(), widthValue));
    p->drawEllipse(box);

    QPainterPathStroker stroker;
    stroker.setWidth(widthValue);
    stroker.setCapStyle(round ? Qt::RoundCap : Qt::FlatCap);
    const double shown = 360 * reveal();
    for (const auto& s : spans()) {
        if (s.start >= shown) break;
        const double length = std::min(s.length, shown - s.start);
        QPainterPath arc;
        // Qt counts angles anticlockwise from three o'clock; the ring runs clockwise from twelve.
        arc.arcMoveTo(box, 90 - s.start);
        arc.arcTo(box, 90 - s.start, -length);
        SegmentPaint::fill(*p, stroker.createStroke(arc), parts[std::size_t(s.index)]);
    }
}

QString RingView::segmentAt(double x, double y) const {
    const double dx = x - width() / 2, dy = y - height() / 2;
    if (std::abs(std::hypot(dx, dy) - radius()) > widthValue / 2 + 2) return {};
    double angle = std::atan2(dx, -dy) * 180 / std::numbers::pi; // clockwise from twelve
    if (angle < 0) angle += 360;
    return idAt(spans(), angle);
}
