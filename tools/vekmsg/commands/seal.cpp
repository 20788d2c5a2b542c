// vekmsg seal: valid messages from anything readable.
#include "vek/inspect/change/seal.hpp"
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/messageOutput.hpp"

namespace vek::tool {

namespace {

class sealTask_t final : public messageTask_t {
public:
    explicit sealTask_t(const options_t &options) : messageTask_t(options) {
        sealing_.echoTag = options.echoTag;
        sealing_.sequenceNumber = options.sequenceNumber;
        if (options.id)
            sealing_.id = idsNamed({*options.id}).front();
    }

private:
    std::optional<std::string> made(const item_t &item) override {
        inspect::formResult_t result = inspect::seal(item.text, sealing_);
        if (result.isRead())
            return std::move(result.text);
        complain(item.place() + ": error: " + result.error);
        return std::nullopt;
    }

    inspect::sealOptions_t sealing_;
};

} // namespace

int runSeal(const options_t &options) {
    sealTask_t task(options);
    return writeMessages(options, task);
}

} // namespace vek::tool
