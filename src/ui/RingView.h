#pragma once
// A ring of parts, drawn clockwise from the top over a track: the disk ring, a progress ring.
#include "ui/SegmentsItem.h"

class RingView : public SegmentsItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double lineWidth READ lineWidth WRITE setLineWidth NOTIFY changed)
    Q_PROPERTY(bool roundCaps READ roundCaps WRITE setRoundCaps NOTIFY changed)

public:
    explicit RingView(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;
    // The id of the part under a point of the item, empty for none.
    Q_INVOKABLE [[nodiscard]] QString segmentAt(double x, double y) const;

    [[nodiscard]] double lineWidth() const { return widthValue; }
    void setLineWidth(double v);
    [[nodiscard]] bool roundCaps() const { return round; }
    void setRoundCaps(bool on);

private:
    [[nodiscard]] std::vector<SegmentLayout::Span> spans() const;
    [[nodiscard]] double radius() const;

    double widthValue = 10;
    bool round = false;
};
