#include "ui/SegmentLayout.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace SegmentLayout {

std::vector<Span> layout(const std::vector<double>& values, const Options& o) {
    std::vector<Span> spans;
    if (!(o.extent > 0)) return spans;
    std::vector<double> clean(values.size());
    std::transform(values.begin(), values.end(), clean.begin(),
                   [](double v) { return std::isfinite(v) && v > 0 ? v : 0.0; });
    const double sum = std::accumulate(clean.begin(), clean.end(), 0.0);
    if (!(sum > 0)) return spans;
    const double total = std::isfinite(o.total) ? std::max(o.total, sum) : sum;
    const auto visible = static_cast<int>(std::count_if(clean.begin(), clean.end(), [](double v) { return v > 0; }));

    // A single part of a ring is whole and needs no gap; a bar needs one gap fewer than parts.
    int gaps = o.closed ? (visible > 1 ? visible : 0) : visible - 1;
    // An unfilled rest of a bar is separated from the last part by a gap too.
    const bool rest = total > sum * (1 + 1e-12);
    if (!o.closed && rest) ++gaps;
    double gap = std::max(o.gap, 0.0);
    // Gaps give way first: together they take at most half the extent.
    if (gaps > 0) gap = std::min(gap, o.extent * 0.5 / gaps);
    const double room = o.extent - gap * gaps;
    double minimum = std::clamp(o.minimum, 0.0, room / std::max(visible, 1));

    // Raise every thin part to the minimum and take what that costs from the others, in
    // proportion, so that the lengths still add up to the share of the extent they stand for.
    std::vector<double> length(clean.size());
    const double share = room * sum / total;
    for (std::size_t i = 0; i < clean.size(); ++i) length[i] = share * clean[i] / sum;
    for (int round = 0; round < 4 && minimum > 0; ++round) {
        double added = 0, donors = 0;
        for (std::size_t i = 0; i < clean.size(); ++i) {
            if (clean[i] <= 0) continue;
            if (length[i] < minimum) {
                added += minimum - length[i];
                length[i] = minimum;
            } else if (length[i] > minimum) {
                donors += length[i] - minimum;
            }
        }
        if (added <= 0 || donors <= 0) break;
        const double keep = std::max(0.0, 1 - added / donors);
        for (std::size_t i = 0; i < clean.size(); ++i)
            if (clean[i] > 0 && length[i] > minimum) length[i] = minimum + (length[i] - minimum) * keep;
    }

    double at = o.closed && gaps > 0 ? gap / 2 : 0;
    for (std::size_t i = 0; i < clean.size(); ++i) {
        if (clean[i] <= 0) continue;
        spans.push_back({static_cast<int>(i), at, length[i]});
        at += length[i] + gap;
    }
    return spans;
}

int hit(const std::vector<Span>& spans, double position) {
    for (const Span& s : spans)
        if (position >= s.start && position < s.start + s.length) return s.index;
    return -1;
}

} // namespace SegmentLayout
