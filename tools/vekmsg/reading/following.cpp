#include "tools/vekmsg/reading/following.hpp"

#include "tools/vekmsg/reading/input.hpp"

namespace vek::tool {

followedLog_t::followedLog_t(const std::string &name)
    : name_(name), file_(std::make_unique<rawFile_t>(name)), block_(source_t::blockSize, '\0'),
      latest_(milliseconds()) {}

// Takes what has come; false when nothing had.
bool followedLog_t::read() {
    if (const std::size_t size = file_->read(block_.data(), block_.size()); size > 0) {
        taken_ += size;
        take({block_.data(), size});
        return true;
    }
    const fileIdentity_t own = file_->identity();
    const std::optional<fileIdentity_t> named = name_ == "-" ? own : identityOf(name_);
    const bool isRotated = own.isRegular && named && (!named->isSameFile(own) || own.size < taken_);
    isEnded_ = !own.isRegular;
    if (!isRotated && !isEnded_)
        return false;
    end(isRotated);
    if (isRotated)
        file_ = std::make_unique<rawFile_t>(name_);
    taken_ = 0;
    return true;
}

bool followedLog_t::step() {
    constexpr std::uint64_t stillness = 1000; // milliseconds
    try {
        const bool isBusy = read();
        if (isBusy) {
            latest_ = milliseconds();
            isStill_ = false;
        } else if (!isStill_ && milliseconds() - latest_ >= stillness) {
            isStill_ = true;
            standStill();
        }
        return isBusy;
    } catch (const usageError_t &error) {
        isEnded_ = true;
        fail(error);
        return false;
    }
}

void follow(std::vector<std::unique_ptr<followedLog_t>> logs, const std::function<bool(bool isBusy)> &round) {
    constexpr unsigned pause = 20; // milliseconds
    for (bool isBusy = true; !logs.empty();) {
        if (!isBusy)
            sleepMilliseconds(pause);
        isBusy = false;
        for (const auto &log : logs)
            isBusy |= log->step();
        if (!round(isBusy))
            return;
        std::erase_if(logs, [](const auto &log) { return log->isEnded_; });
    }
}

} // namespace vek::tool
