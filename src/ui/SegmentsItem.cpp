#include "ui/SegmentsItem.h"

#include <algorithm>
#include <cmath>

SegmentsItem::SegmentsItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &QQuickItem::widthChanged, this, [this] { update(); });
    connect(this, &QQuickItem::heightChanged, this, [this] { update(); });
}

void SegmentsItem::touch() {
    emit changed();
    update();
}

void SegmentsItem::setSegments(const QVariantList& v) {
    raw = v;
    parts = SegmentPaint::parse(v);
    touch();
}

void SegmentsItem::setTotal(double v) {
    if (v == totalValue) return;
    totalValue = v;
    touch();
}

void SegmentsItem::setGap(double v) {
    v = std::max(0.0, v);
    if (v == gapValue) return;
    gapValue = v;
    touch();
}

void SegmentsItem::setTrack(const QColor& c) {
    if (c == trackColour) return;
    trackColour = c;
    touch();
}

void SegmentsItem::setReveal(double v) {
    v = std::clamp(std::isfinite(v) ? v : 1.0, 0.0, 1.0);
    if (v == revealValue) return;
    revealValue = v;
    touch();
}

std::vector<SegmentLayout::Span> SegmentsItem::layOut(double extent, double gap, double minimum, bool closed) const {
    SegmentLayout::Options o;
    o.extent = extent;
    o.total = totalValue;
    o.gap = gap;
    o.minimum = minimum;
    o.closed = closed;
    return SegmentLayout::layout(SegmentPaint::values(parts), o);
}

QString SegmentsItem::idAt(const std::vector<SegmentLayout::Span>& spans, double position) const {
    const int i = SegmentLayout::hit(spans, position);
    return i < 0 ? QString() : parts[std::size_t(i)].id;
}
