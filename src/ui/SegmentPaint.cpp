#include "ui/SegmentPaint.h"

#include "ui/Palette.h"

#include <cmath>

namespace SegmentPaint {

namespace {

QColor colourOf(const QVariant& v) {
    if (v.metaType().id() == QMetaType::QColor) return v.value<QColor>();
    const QString name = v.toString();
    if (auto c = Palette::lookup(name.toStdString())) return *c;
    QColor parsed(name); // "#AARRGGBB" and named colours
    return parsed.isValid() ? parsed : *Palette::lookup("other");
}

QColor withAlpha(QColor c, double a) {
    c.setAlphaF(float(c.alphaF() * a));
    return c;
}

} // namespace

std::vector<Segment> parse(const QVariantList& list) {
    std::vector<Segment> out;
    for (const QVariant& item : list) {
        if (!item.canConvert<QVariantMap>()) continue;
        const QVariantMap m = item.toMap();
        if (m.isEmpty()) continue;
        Segment s;
        s.id = m.value(QStringLiteral("id")).toString();
        bool ok = false;
        double v = m.value(QStringLiteral("value")).toDouble(&ok);
        s.value = ok && std::isfinite(v) ? v : 0;
        s.color = colourOf(m.value(QStringLiteral("color")));
        if (m.value(QStringLiteral("hatched")).toBool()) s.fill = Fill::hatched;
        else if (m.value(QStringLiteral("striped")).toBool()) s.fill = Fill::striped;
        out.push_back(s);
    }
    return out;
}

std::vector<double> values(const std::vector<Segment>& segments) {
    std::vector<double> v;
    v.reserve(segments.size());
    for (const Segment& s : segments) v.push_back(s.value);
    return v;
}

void fill(QPainter& p, const QPainterPath& shape, const Segment& s) {
    if (s.fill == Fill::plain) {
        p.fillPath(shape, s.color);
        return;
    }
    // Hatching: fine lines over a faint wash. Stripes: broad bands over a stronger one.
    const bool hatched = s.fill == Fill::hatched;
    p.save();
    p.setClipPath(shape, Qt::IntersectClip);
    p.fillPath(shape, withAlpha(s.color, hatched ? 0.22 : 0.45));
    QPen pen(s.color, hatched ? 1.4 : 2.5);
    pen.setCapStyle(Qt::FlatCap);
    p.setPen(pen);
    const QRectF box = shape.boundingRect();
    const double step = hatched ? 4.5 : 6;
    for (double x = box.left() - box.height(); x < box.right(); x += step)
        p.drawLine(QPointF(x, box.bottom()), QPointF(x + box.height(), box.top()));
    p.restore();
}

} // namespace SegmentPaint
