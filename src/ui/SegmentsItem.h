#pragma once
// What a ring and a stacked bar share: parts laid along an extent over a track, drawn with
// QPainter (so they look the same with every scene graph backend), revealed for an entrance.
#include "ui/SegmentLayout.h"
#include "ui/SegmentPaint.h"

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

class SegmentsItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ANONYMOUS
    // A list of {id, value, color, hatched, striped}; `color` is a colour or a palette name.
    Q_PROPERTY(QVariantList segments READ segments WRITE setSegments NOTIFY changed)
    // What the whole extent stands for; below the sum of the values the sum is used.
    Q_PROPERTY(double total READ total WRITE setTotal NOTIFY changed)
    Q_PROPERTY(double gap READ gap WRITE setGap NOTIFY changed) // points between two parts
    Q_PROPERTY(QColor track READ track WRITE setTrack NOTIFY changed)
    // How much of the extent is drawn, 0 to 1, for an entrance.
    Q_PROPERTY(double reveal READ reveal WRITE setReveal NOTIFY changed)

public:
    explicit SegmentsItem(QQuickItem* parent = nullptr);

    [[nodiscard]] QVariantList segments() const { return raw; }
    void setSegments(const QVariantList& v);
    [[nodiscard]] double total() const { return totalValue; }
    void setTotal(double v);
    [[nodiscard]] double gap() const { return gapValue; }
    void setGap(double v);
    [[nodiscard]] QColor track() const { return trackColour; }
    void setTrack(const QColor& c);
    [[nodiscard]] double reveal() const { return revealValue; }
    void setReveal(double v);

signals:
    void changed();

protected:
    // Redraws and tells QML; for the settings of subclasses too.
    void touch();
    // The parts laid over `extent`, with the gap and least length given in its own units.
    [[nodiscard]] std::vector<SegmentLayout::Span> layOut(double extent, double gap, double minimum, bool closed) const;
    // The id of the part at `position` along the extent.
    [[nodiscard]] QString idAt(const std::vector<SegmentLayout::Span>& spans, double position) const;

    std::vector<SegmentPaint::Segment> parts;

private:
    QVariantList raw;
    double totalValue = 0, gapValue = 2, revealValue = 1;
    QColor trackColour{0x26, 0x28, 0x2E};
};
