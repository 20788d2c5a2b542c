// The library itself, through its four calls.
#include "bench/peer.hpp"
#include "vek/api/vekParams2ASCII.h"

namespace bench {

namespace {

class library_t : public peer_t {
public:
    explicit library_t(const row_t &row) : row_(row) {
        for (const content_t &content : row.contents) {
            texts_.push_back(message(row.id, content));
            std::int32_t id = 0;
            vekStrToVal(texts_.back().c_str(), &id, &structures_.emplace_back());
            const auto body = [](const std::string &text) { return text.substr(text.find('{')); };
            check("library", row, body(texts_.back()), body(text(texts_.size() - 1)));
        }
    }
    ~library_t() override {
        for (void *structure : structures_)
            vekParamsDeleteStruct(row_.id, &structure);
    }
    library_t(const library_t &) = delete;
    library_t &operator=(const library_t &) = delete;

    void read(std::size_t index) override {
        std::int32_t id = 0;
        void *structure = nullptr;
        vekStrToVal(texts_[index].c_str(), &id, &structure);
        vekParamsDeleteStruct(id, &structure);
    }
    void write(std::size_t index) override {
        char *written = nullptr;
        vekValToStr(row_.id, structures_[index], &written);
        vekParamsDelete(written);
    }
    std::string text(std::size_t index) override {
        char *written = nullptr;
        vekValToStr(row_.id, structures_[index], &written);
        std::string copy(written);
        vekParamsDelete(written);
        return copy;
    }

private:
    const row_t &row_;
    std::vector<std::string> texts_;
    std::vector<void *> structures_;
};

} // namespace

std::unique_ptr<peer_t> makeLibrary(const row_t &row) {
    return std::make_unique<library_t>(row);
}

} // namespace bench
