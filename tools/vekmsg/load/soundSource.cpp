#include "tools/vekmsg/load/soundSource.hpp"

#include "tools/vekmsg/terminal/problem.hpp"

#include <cstdio>
#include <stdlib.h>
#include <unistd.h>

namespace vek::tool {

namespace {

// All that a source gave, in a file that has no name any more.
class asideSource_t final : public source_t {
public:
    explicit asideSource_t(source_t &source) : block_(blockSize, '\0') {
        std::string name = environment("TMPDIR").value_or("/tmp") + "/vekmsg-XXXXXX";
        const int descriptor = mkstemp(name.data());
        if (descriptor < 0)
            failOnFile("make", name);
        unlink(name.c_str());
        file_.reset(fdopen(descriptor, "w+b"));
        for (std::string_view block = source.next(); !block.empty(); block = source.next()) {
            size_ += block.size();
            if (std::fwrite(block.data(), 1, block.size(), file_.get()) != block.size())
                failOnFile("write", name);
        }
        if (std::fflush(file_.get()) != 0)
            failOnFile("write", name);
        std::rewind(file_.get());
    }

    std::string_view next() override {
        const std::size_t size = std::fread(block_.data(), 1, block_.size(), file_.get());
        taken_ += size;
        return {block_.data(), size};
    }
    bool isShort() const override { return taken_ == size_; }
    std::uint64_t taken() const override { return taken_; }
    std::uint64_t size() const override { return size_; }
    bool isPlain() const override { return false; }

private:
    struct closer_t {
        void operator()(std::FILE *file) const { static_cast<void>(std::fclose(file)); }
    };
    std::unique_ptr<std::FILE, closer_t> file_;
    std::string block_;
    std::uint64_t taken_ = 0, size_ = 0;
};

} // namespace

std::unique_ptr<source_t> openSound(const std::string &name) {
    std::unique_ptr<source_t> source = openSource(name);
    if (!source->isPacked())
        return source;
    if (name == "-" || source->size() == 0)
        return std::make_unique<asideSource_t>(*source);
    while (!source->next().empty()) {
    }
    return openSource(name);
}

} // namespace vek::tool
