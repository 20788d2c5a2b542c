// follow(): growing files, all at once, through rotation: when another file has a name, the rest of the old one is read
// and then the new one from its start. A file that is not there yet is waited for.
//
// One thread at a time.
#pragma once

#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vek::tool {

/// A followed file, and what becomes of its bytes. What follow() calls may throw usageError_t, which goes to fail().
class followedLog_t {
public:
    /// `isGrowing`: the end of a file is not the end.
    explicit followedLog_t(const std::string &name, bool isGrowing = true);
    followedLog_t(const followedLog_t &) = delete;
    followedLog_t &operator=(const followedLog_t &) = delete;
    virtual ~followedLog_t() = default;

    const std::string &name() const { return name_; }

    /// Does something with the log between two rounds; when it throws usageError_t, that goes to fail().
    void attempt(const std::function<void()> &action);

protected:
    /// The next bytes.
    virtual void take(std::string_view block) = 0;
    /// The file ends here for good: what comes next is another one's that has its name now, or it was a pipe.
    virtual void end(bool isRotated) = 0;
    /// Nothing has come for a second: what was cut off will not go on soon. Called once, until more comes.
    virtual void standStill() = 0;
    /// It can't be followed any more.
    virtual void fail(const usageError_t &error) = 0;

private:
    friend void follow(std::vector<std::unique_ptr<followedLog_t>> logs, const std::function<bool(bool)> &round);
    bool step();
    bool open();
    void makeRoom(const fileIdentity_t &file);
    bool read();
    void rest(unsigned pause) const;

    std::string name_;
    std::unique_ptr<rawFile_t> file_; // null while there is none
    std::string block_;
    std::uint64_t taken_ = 0, latest_ = 0; // bytes of the file, and when they came
    const bool isGrowing_;
    bool isStill_ = false, isEnded_ = false;
};

/// Follows logs until all have ended, as pipes do. After each round `round` is called, with whether anything came; it
/// gives false when it has enough.
void follow(std::vector<std::unique_ptr<followedLog_t>> logs, const std::function<bool(bool isBusy)> &round);

} // namespace vek::tool
