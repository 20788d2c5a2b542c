#include "tools/vekmsg/lsp/document.hpp"

#include <algorithm>

namespace vek::tool::lsp {

place_t document_t::placeOf(const range_t &range) const {
    const std::size_t start = offsetOf(range.start), end = offsetOf(range.end);
    return {static_cast<std::uint32_t>(std::min(start, end)), static_cast<std::uint32_t>(std::max(start, end))};
}

void document_t::change(std::vector<edit_t> edits, std::int64_t newVersion) {
    version = newVersion;
    isToldAnew = true;
    if (edits.size() > 1 && changeAtOnce(edits))
        return;
    std::optional<change_t> all;
    for (edit_t &edit : edits) {
        place_t place{0, static_cast<std::uint32_t>(text().size())};
        const std::size_t size = edit.text.size();
        if (edit.range) {
            place = placeOf(*edit.range);
            text_.replace(place, edit.text);
        } else {
            text_ = text_t(std::move(edit.text));
        }
        const change_t one{place.start, place.end, place.start + size};
        if (all)
            all->join(one);
        else
            all = one;
    }
    if (all)
        pieces_.find(text(), *all);
}

// Replacements all over a text come from its end to its start: each place is one of the text before all of them.
bool document_t::changeAtOnce(std::vector<edit_t> &edits) {
    std::vector<text_t::replacement_t> all;
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
        if (!edit->range)
            return false;
        const place_t place = placeOf(*edit->range);
        if (!all.empty() &&
            (place.start < all.back().place.end || text_.lineOf(place.start) <= text_.lineOf(all.back().place.end)))
            return false; // in the same line, columns may be those behind another replacement
        all.push_back({place, {}});
    }
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i].by = std::move(edits[edits.size() - 1 - i].text);
    const std::size_t before = text().size(), oldEnd = all.back().place.end, start = all.front().place.start;
    text_.replace(all);
    pieces_.find(text(), {start, oldEnd, oldEnd + text().size() - before});
    return true;
}

} // namespace vek::tool::lsp
