#include "tools/vekmsg/reading/input.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/log/unwrapping.hpp"
#include "vek/inspect/words/utf16.hpp"

#include <zlib.h>
#ifdef VEK_ZSTD
#    include <zstd.h>
#endif

namespace vek::tool {

namespace {

// The file's own bytes.
class plainSource_t final : public source_t {
public:
    explicit plainSource_t(const std::string &name) : file_(name), block_(blockSize, '\0') {
        const fileIdentity_t identity = file_.identity();
        size_ = identity.isRegular ? identity.size : 0;
    }

    std::string_view next() override {
        if (hasPeeked_) {
            hasPeeked_ = false;
            return {block_.data(), peeked_};
        }
        return fill();
    }
    bool isShort() const override { return isShort_; }
    std::uint64_t taken() const override { return taken_; }
    std::uint64_t size() const override { return size_; }
    bool skip(std::uint64_t bytes) override {
        if (size_ == 0 || hasPeeked_)
            return false;
        taken_ += bytes;
        file_.seek(taken_);
        return true;
    }
    bool comesUntil(std::uint64_t moment) override { return size_ > 0 || file_.comesUntil(moment); }
    const std::string &name() const { return file_.name(); }

    // The first block, which the first call of next() gives again.
    std::string_view peek() {
        const std::string_view block = fill();
        hasPeeked_ = true;
        peeked_ = block.size();
        return block;
    }

private:
    std::string_view fill() {
        const std::size_t size = file_.read(block_.data(), block_.size());
        isShort_ = size < block_.size();
        taken_ += size;
        return {block_.data(), size};
    }

    rawFile_t file_;
    std::string block_;
    std::uint64_t taken_ = 0, size_ = 0;
    std::size_t peeked_ = 0;
    bool hasPeeked_ = false, isShort_ = false;
};

// A source whose bytes are unpacked from a plain one's.
class packedSource_t : public source_t {
public:
    explicit packedSource_t(std::unique_ptr<plainSource_t> packed)
        : packed_(std::move(packed)), unpacked_(blockSize, '\0') {}

    std::string_view next() override {
        while (true) {
            if (input_.empty() && (!wasFull_ || isComplete())) {
                input_ = packed_->next();
                if (input_.empty())
                    return atEnd();
            }
            const std::size_t size = unpack(input_, unpacked_);
            wasFull_ = size == unpacked_.size();
            if (size > 0)
                return {unpacked_.data(), size};
        }
    }
    bool isShort() const override { return packed_->isShort() && input_.empty(); }
    std::uint64_t taken() const override { return packed_->taken() - input_.size(); }
    std::uint64_t size() const override { return packed_->size(); }
    bool isPlain() const override { return false; }
    bool isPacked() const override { return true; }
    bool comesUntil(std::uint64_t moment) override { return isPacked() && packed_->comesUntil(moment); }

protected:
    // Unpacks from the front of `input`, and takes off what was used.
    virtual std::size_t unpack(std::string_view &input, std::string &room) = 0;
    virtual bool isComplete() const = 0;

    [[noreturn]] void fail(const std::string &why) const {
        throw usageError_t(packed_->name() + ": " + why + " near byte " + std::to_string(taken()) +
                           "; nothing behind that can be read");
    }

private:
    std::string_view atEnd() const {
        if (!isComplete())
            fail("the file is cut off");
        return {};
    }

    std::unique_ptr<plainSource_t> packed_;
    std::string unpacked_;
    std::string_view input_;
    bool wasFull_ = false; // there may be more of what was taken
};

class gzipSource_t final : public packedSource_t {
public:
    explicit gzipSource_t(std::unique_ptr<plainSource_t> packed) : packedSource_t(std::move(packed)) {
        if (inflateInit2(&stream_, 15 + 16) != Z_OK)
            throw std::bad_alloc();
    }
    ~gzipSource_t() override { inflateEnd(&stream_); }

private:
    std::size_t unpack(std::string_view &input, std::string &room) override {
        if (isComplete_) { // several members one behind the other are one file
            inflateReset(&stream_);
            isComplete_ = false;
        }
        stream_.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(input.data()));
        stream_.avail_in = static_cast<uInt>(input.size());
        stream_.next_out = reinterpret_cast<Bytef *>(room.data());
        stream_.avail_out = static_cast<uInt>(room.size());
        const int result = inflate(&stream_, Z_NO_FLUSH);
        input.remove_prefix(input.size() - stream_.avail_in);
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            fail("the packed file is damaged");
        isComplete_ = result == Z_STREAM_END;
        return room.size() - stream_.avail_out;
    }
    bool isComplete() const override { return isComplete_; }

    z_stream stream_{};
    bool isComplete_ = false;
};

// UTF-16, handed on as UTF-8.
class utf16Source_t final : public packedSource_t {
public:
    utf16Source_t(std::unique_ptr<plainSource_t> packed, inspect::utf16_t::order_t order)
        : packedSource_t(std::move(packed)), text_(order) {}
    bool isPacked() const override { return false; }

private:
    std::size_t unpack(std::string_view &input, std::string &room) override {
        const std::string_view piece = input.substr(0, room.size() / 2); // two bytes become three at most
        input.remove_prefix(piece.size());
        utf8_.clear();
        text_.feed(piece, utf8_);
        utf8_.copy(room.data(), room.size());
        return utf8_.size();
    }
    bool isComplete() const override { return text_.isComplete(); }

    inspect::utf16_t text_;
    std::string utf8_;
};

#ifdef VEK_ZSTD
class zstdSource_t final : public packedSource_t {
public:
    explicit zstdSource_t(std::unique_ptr<plainSource_t> packed)
        : packedSource_t(std::move(packed)), stream_(ZSTD_createDStream()) {
        if (stream_ == nullptr)
            throw std::bad_alloc();
        // Files packed with a larger window would take more memory than the tool may have.
        ZSTD_DCtx_setParameter(stream_, ZSTD_d_windowLogMax, 24);
    }
    zstdSource_t(const zstdSource_t &) = delete;
    zstdSource_t &operator=(const zstdSource_t &) = delete;
    ~zstdSource_t() override { ZSTD_freeDStream(stream_); }

private:
    std::size_t unpack(std::string_view &input, std::string &room) override {
        ZSTD_inBuffer in{input.data(), input.size(), 0};
        ZSTD_outBuffer out{room.data(), room.size(), 0};
        const std::size_t result = ZSTD_decompressStream(stream_, &out, &in);
        if (ZSTD_isError(result))
            fail(std::string("the packed file can't be unpacked: ") + ZSTD_getErrorName(result) +
                 " (of long windows, unpack it with zstd -dc --long=31 and give its output to vekmsg),");
        input.remove_prefix(in.pos);
        isComplete_ = result == 0;
        return out.pos;
    }
    bool isComplete() const override { return isComplete_; }

    ZSTD_DStream *stream_;
    bool isComplete_ = false;
};
#endif

// A source whose bytes are the log in the wrapping of another one's.
class wrappedSource_t final : public source_t {
public:
    wrappedSource_t(std::unique_ptr<source_t> wrapped, std::string start, inspect::wrapping_t wrapping, bool isAll)
        : wrapped_(std::move(wrapped)), start_(std::move(start)), wrapping_(wrapping), unwrapper_(wrapping),
          isAll_(isAll) {}

    std::string_view next() override {
        while (!isEnded_) {
            const std::string_view block = !isBegun_ ? std::string_view(start_)
                                           : isAll_  ? std::string_view()
                                                     : wrapped_->next();
            isBegun_ = true;
            isEnded_ = block.empty();
            const std::string_view text = isEnded_ ? unwrapper_.finish() : unwrapper_.take(block);
            if (!text.empty())
                return text;
        }
        return {};
    }
    bool isUtf16() const {
        return wrapping_ == inspect::wrapping_t::utf16LittleEnd || wrapping_ == inspect::wrapping_t::utf16BigEnd;
    }
    bool isShort() const override { return wrapped_->isShort(); }
    bool isAllAtOnce() const override { return isAll_ && wrapping_ == inspect::wrapping_t::none; }
    std::uint64_t taken() const override { return wrapped_->taken(); }
    std::uint64_t size() const override { return wrapped_->size(); }
    bool isPlain() const override { return wrapping_ == inspect::wrapping_t::none && wrapped_->isPlain(); }
    bool isPacked() const override { return wrapped_->isPacked(); }
    bool skip(std::uint64_t bytes) override {
        return isBegun_ && wrapping_ == inspect::wrapping_t::none && wrapped_->skip(bytes);
    }

private:
    std::unique_ptr<source_t> wrapped_;
    std::string start_;
    inspect::wrapping_t wrapping_;
    inspect::unwrapper_t unwrapper_;
    const bool isAll_; // the start
    bool isBegun_ = false, isEnded_ = false;
};

std::unique_ptr<source_t> openPlainOrPacked(const std::string &name) {
    if (name == "-" && isTerminal(0))
        complain(std::string("reading what is typed or pasted here; ") + endOfTyping);
    auto plain = std::make_unique<plainSource_t>(name);
    const std::string_view start = plain->peek();
    if (start.starts_with("\x1f\x8b"))
        return std::make_unique<gzipSource_t>(std::move(plain));
    if (start.starts_with("\x28\xb5\x2f\xfd")) {
#ifdef VEK_ZSTD
        return std::make_unique<zstdSource_t>(std::move(plain));
#else
        throw usageError_t(name + " is packed with zstd, which this build can't read; unpack it first: zstd -d " +
                           name);
#endif
    }
    if (const auto order = inspect::utf16_t::orderOf(start); order != inspect::utf16_t::order_t::none) {
        complain(name + " is UTF-16, and read as UTF-8");
        return std::make_unique<utf16Source_t>(std::move(plain), order);
    }
    return plain;
}

std::unique_ptr<wrappedSource_t> unwrapped(std::unique_ptr<source_t> source) {
    // A pipe may give its first line in pieces. A message that it ends with soon is all that a host gets of it.
    constexpr std::uint64_t soon = 300; // milliseconds
    std::string start;
    bool isEnded = false;
    for (std::uint64_t moment = 0; !isEnded && start.size() < source_t::blockSize;) {
        if (inspect::showsWhatItIs(start)) {
            moment = moment > 0 ? moment : milliseconds() + soon;
            if (!source->comesUntil(moment))
                break;
        }
        const std::string_view piece = source->next();
        start += piece;
        isEnded = piece.empty();
    }
    const inspect::wrapping_t wrapping = inspect::wrappingOfLog(start, isEnded);
    return std::make_unique<wrappedSource_t>(std::move(source), std::move(start), wrapping, isEnded);
}

} // namespace

std::unique_ptr<source_t> openSource(const std::string &name) {
    std::unique_ptr<wrappedSource_t> log = unwrapped(openPlainOrPacked(name));
    if (log->isUtf16()) // packed, which may be of one that has a wrapping, too
        log = unwrapped(std::move(log));
    return log;
}

} // namespace vek::tool
