#include "tools/vekmsg/reading/following.hpp"

#include "tools/vekmsg/reading/input.hpp"

#include <algorithm>
#include <filesystem>

namespace vek::tool {

followedLog_t::followedLog_t(const std::string &name, bool isGrowing)
    : name_(name), latest_(milliseconds()), isGrowing_(isGrowing) {
    if (!open())
        complain(name_ + " is not there yet; waiting for it");
}

// False when there is no file of this name, which may come.
bool followedLog_t::open() {
    try {
        file_ = std::make_unique<rawFile_t>(name_);
    } catch (const usageError_t &) {
        std::error_code error;
        if (std::filesystem::status(name_, error).type() != std::filesystem::file_type::not_found)
            throw;
    }
    return file_ != nullptr;
}

// Waits for a pipe until something comes, but not for long; what comes to files is asked for.
void followedLog_t::rest(unsigned pause) const {
    if (file_ != nullptr && !file_->identity().isRegular)
        (void)file_->comesUntil(milliseconds() + pause);
    else
        sleepMilliseconds(pause);
}

// For what is there: of thousands of logs most have nothing new, and little room.
void followedLog_t::makeRoom(const fileIdentity_t &file) {
    constexpr std::uint64_t least = 512;
    const std::uint64_t there = file.size - std::min(file.size, taken_);
    const std::size_t room =
        file.isRegular ? static_cast<std::size_t>(std::clamp<std::uint64_t>(there, least, source_t::blockSize))
                       : source_t::blockSize;
    if (room > block_.size() || room * 4 < block_.size())
        block_ = std::string(room, '\0');
}

// Takes what has come; false when nothing had.
bool followedLog_t::read() {
    if ((file_ == nullptr && !open()) || (file_->canWait() && !file_->comesUntil(0)))
        return false;
    const fileIdentity_t own = file_->identity();
    makeRoom(own);
    if (const std::size_t size = file_->read(block_.data(), block_.size()); size > 0) {
        taken_ += size;
        take({block_.data(), size});
        return true;
    }
    const std::optional<fileIdentity_t> named = name_ == "-" ? own : identityOf(name_);
    const bool isRotated = own.isRegular && named && (!named->isSameFile(own) || own.size < taken_);
    isEnded_ = !own.isRegular || !isGrowing_;
    if (!isRotated && !isEnded_)
        return false;
    end(isRotated);
    if (isRotated)
        file_.reset();
    taken_ = 0;
    return true;
}

bool followedLog_t::step() {
    constexpr std::uint64_t stillness = 1000; // milliseconds
    bool isBusy = false;
    attempt([&] {
        isBusy = read();
        if (isBusy) {
            latest_ = milliseconds();
            isStill_ = false;
        } else if (!isStill_ && milliseconds() - latest_ >= stillness) {
            isStill_ = true;
            standStill();
        }
    });
    return isBusy;
}

void followedLog_t::attempt(const std::function<void()> &action) {
    try {
        action();
    } catch (const usageError_t &error) {
        isEnded_ = true;
        fail(error);
    }
}

void follow(std::vector<std::unique_ptr<followedLog_t>> logs, const std::function<bool(bool isBusy)> &round) {
    constexpr std::uint64_t shortest = 20, longest = 500, share = 9; // milliseconds, and times what a round takes
    std::uint64_t begun = milliseconds();
    for (bool isBusy = true; !logs.empty();) {
        if (!isBusy)
            logs.front()->rest(static_cast<unsigned>(std::clamp((milliseconds() - begun) * share, shortest, longest)));
        begun = milliseconds();
        isBusy = false;
        for (const auto &log : logs)
            isBusy |= log->step();
        if (!round(isBusy))
            return;
        std::erase_if(logs, [](const auto &log) { return log->isEnded_; });
    }
}

} // namespace vek::tool
