#include "tools/vekmsg/reading/rewriter.hpp"

#include "tools/vekmsg/reading/input.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <filesystem>

namespace vek::tool {

namespace {

const std::string &changeable(const std::string &name) {
    if (name == "-")
        throw usageError_t("--in-place needs a file; without it the result goes to standard output");
    if (!openSource(name)->isPlain())
        throw usageError_t(name + " is packed or wrapped, so it can't be changed in place; unpack it first");
    return name;
}

// A copy beside the file, under a name that no other one has; taken away again unless it is kept.
class backup_t {
public:
    explicit backup_t(const std::string &name) : backup_(name + ".bak") {
        for (int number = 2; identityOf(backup_); ++number)
            backup_ = name + ".bak" + std::to_string(number);
        std::error_code error;
        if (!std::filesystem::copy_file(name, backup_, error)) {
            remove();
            throw usageError_t("cannot keep a copy of " + name + " as " + backup_ + ": " + error.message());
        }
    }
    backup_t(const backup_t &) = delete;
    backup_t &operator=(const backup_t &) = delete;
    ~backup_t() {
        if (!isKept_)
            remove();
    }

    void keep() { isKept_ = true; }

private:
    void remove() const {
        std::error_code error;
        std::filesystem::remove(backup_, error);
    }

    std::string backup_;
    bool isKept_ = false;
};

} // namespace

rewriter_t::rewriter_t(const std::string &name)
    : original_(std::in_place, changeable(name)), identity_(identityOf(name).value_or(fileIdentity_t{})),
      replacement_(name) {}

void rewriter_t::copyUntil(std::uint64_t offset) {
    std::string block(source_t::blockSize, '\0');
    original_->seek(done_);
    while (done_ < offset) {
        const std::size_t size = original_->read(
            block.data(), static_cast<std::size_t>(std::min<std::uint64_t>(block.size(), offset - done_)));
        if (size == 0)
            break;
        replacement_.write({block.data(), size});
        done_ += size;
    }
}

void rewriter_t::replace(const item_t &item, std::string_view text) {
    const std::uint64_t stretch = item.stretch + (item.whole.size() - item.text.size());
    isChanged_ = isChanged_ || stretch != text.size() || item.whole != text;
    copyUntil(item.offset);
    replacement_.write(text);
    done_ = item.offset + stretch;
}

void rewriter_t::commit(bool keepsBackup) {
    if (!isChanged_)
        return;
    copyUntil(UINT64_MAX);
    const std::string name = original_->name();
    original_.reset();
    const std::optional<fileIdentity_t> now = identityOf(name);
    if (!now || !now->isSameFile(identity_) || now->size < identity_.size)
        throw usageError_t(name + " was written anew or moved away meanwhile, and stays as it is now; try again");
    std::optional<backup_t> backup;
    if (keepsBackup)
        backup.emplace(name);
    replacement_.commit();
    if (backup)
        backup->keep();
}

} // namespace vek::tool
