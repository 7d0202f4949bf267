#pragma once
// A bar of parts side by side over a track, with rounded ends: the storage bar, the memory
// bar, the tiles' bars.
#include "ui/SegmentsItem.h"

class StackedBarView : public SegmentsItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed) // -1: half the height

public:
    explicit StackedBarView(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;
    // The id of the part under a point of the item, empty for none.
    Q_INVOKABLE [[nodiscard]] QString segmentAt(double x, double y) const;

    [[nodiscard]] double radius() const { return radiusValue; }
    void setRadius(double v);

private:
    [[nodiscard]] std::vector<SegmentLayout::Span> spans() const;

    double radiusValue = -1;
};
