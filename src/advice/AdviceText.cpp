#include "advice/AdviceText.h"

#include "foundation/Text.h"

namespace AdviceText {

std::vector<std::string> lines(const std::vector<Rec>& recs) {
    std::vector<std::string> out;
    for (const Rec& rec : recs)
        out.push_back("[" + std::string(rec.now ? "now" : "later") + "] [" + std::string(RecReasons::label(rec.reason)) +
                      "] " + Text::visible(rec.title));
    return out;
}

} // namespace AdviceText
