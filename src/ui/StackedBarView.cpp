#include "ui/StackedBarView.h"

#include <algorithm>

StackedBarView::StackedBarView(QQuickItem* parent) : SegmentsItem(parent) {}

void StackedBarView::setRadius(double v) {
    if (v == radiusValue) return;
    radiusValue = v;
    touch();
}

std::vector<SegmentLayout::Span> StackedBarView::spans() const {
    return layOut(width(), gap(), std::min(3.0, height()), false);
}

void StackedBarView::paint(QPainter* p) {
    if (width() <= 0 || height() <= 0) return;
    p->setRenderHint(QPainter::Antialiasing);
    const double r = radiusValue < 0 ? height() / 2 : std::min(radiusValue, height() / 2);
    QPainterPath whole;
    whole.addRoundedRect(QRectF(0, 0, width(), height()), r, r);
    p->fillPath(whole, track());
    p->setClipPath(whole);
    const double shown = width() * reveal();
    for (const auto& s : spans()) {
        if (s.start >= shown) break;
        QPainterPath part;
        // Parts meet the gaps with slightly rounded corners; the ends follow the bar's own.
        const double inner = std::min(1.5, r);
        part.addRoundedRect(QRectF(s.start, 0, std::min(s.length, shown - s.start), height()), inner, inner);
        SegmentPaint::fill(*p, part, parts[std::size_t(s.index)]);
    }
}

QString StackedBarView::segmentAt(double x, double y) const {
    if (y < 0 || y > height()) return {};
    return idAt(spans(), x);
}
