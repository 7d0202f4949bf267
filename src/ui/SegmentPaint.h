#pragma once
// The parts of a ring or bar as QML hands them over, and how one part is filled: plainly, or
// hatched or striped for swap, which is memory parked on the disk rather than files.
#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QString>
#include <QVariantList>

#include <vector>

namespace SegmentPaint {

enum class Fill { plain, hatched, striped };

struct Segment {
    QString id;
    double value = 0;
    QColor color;
    Fill fill = Fill::plain;
};

// From a list of maps {id, value, color, hatched, striped}; `color` is a colour or a palette
// name. Entries that are not maps are skipped; a missing colour is the neutral `other`.
[[nodiscard]] std::vector<Segment> parse(const QVariantList& list);
[[nodiscard]] std::vector<double> values(const std::vector<Segment>& segments);

// Fills `shape` in the colour of the segment with its pattern.
void fill(QPainter& painter, const QPainterPath& shape, const Segment& segment);

} // namespace SegmentPaint
