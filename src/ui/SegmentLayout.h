#pragma once
// Where the parts of a ring or a stacked bar go. Pure arithmetic, shared by both drawings:
// values share an extent (degrees of a ring, points of a bar) in proportion, with gaps between
// the visible parts, and no part that holds something is drawn too thin to see.
#include <vector>

namespace SegmentLayout {

struct Span {
    int index = 0;       // position in the values given
    double start = 0;    // from the beginning of the extent
    double length = 0;
};

struct Options {
    double extent = 0;   // the whole length to share
    double total = 0;    // what the extent stands for; below the sum of the values the sum is used
    double gap = 0;      // between two visible parts
    double minimum = 0;  // the least length of a part that holds more than nothing
    bool closed = false; // a ring: the last part meets the first, so it needs a gap as well
};

// One span per value above 0 (negative and non-finite values count as 0), in order. Lengths
// and gaps never run past the extent: gaps shrink first when room is short, then the minimum.
[[nodiscard]] std::vector<Span> layout(const std::vector<double>& values, const Options& options);

// The index of the value whose span holds `position`, or -1 (a gap, the empty rest).
[[nodiscard]] int hit(const std::vector<Span>& spans, double position);

} // namespace SegmentLayout
