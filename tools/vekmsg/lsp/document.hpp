// document_t: a text that an editor shows, with its messages.
//
// What is asked of it comes from the text as it is now. One thread at a time.
#pragma once

#include "tools/vekmsg/lsp/pieces.hpp"
#include "tools/vekmsg/lsp/text.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vek::tool::lsp {

struct range_t {
    position_t start, end;
};

/// What an editor has changed; without a range the whole text is new.
struct edit_t {
    std::optional<range_t> range;
    std::string text;
};

class document_t {
public:
    document_t(std::string itsUri, std::string text, std::int64_t itsVersion, encoding_t encoding)
        : uri(std::move(itsUri)), version(itsVersion), text_(std::move(text)), encoding_(encoding),
          pieces_(text_.view()) {}

    void change(std::vector<edit_t> edits, std::int64_t newVersion);

    std::string_view text() const { return text_.view(); }
    const pieces_t &pieces() const { return pieces_; }
    const text_t &lines() const { return text_; }
    positions_t positions() const { return {text_, encoding_}; }
    std::size_t offsetOf(position_t position) const { return text_.offsetOf(position, encoding_); }
    place_t placeOf(const range_t &range) const;

    const std::string uri;
    std::int64_t version;
    bool isToldAnew = true; ///< its problems were not told since it changed

private:
    bool changeAtOnce(std::vector<edit_t> &edits);

    text_t text_;
    const encoding_t encoding_;
    pieces_t pieces_;
};

} // namespace vek::tool::lsp
