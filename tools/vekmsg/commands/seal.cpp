// vekmsg seal: valid messages from anything readable.
#include "vek/inspect/change/seal.hpp"
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/messageOutput.hpp"

namespace vek::tool {

namespace {

struct sealArguments_t {
    readingOptions_t reading;
    headerOptions_t header;
    inPlaceOption_t inPlace;
    std::optional<std::string> id; ///< or name

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        header.declare(list);
        list.add(id, {"--as", "The message that it is, when it does not say so itself", "ID|NAME"});
        inPlace.declare(list);
        reading.declare(list, true, false);
    }
};

class sealTask_t final : public messageTask_t {
public:
    explicit sealTask_t(const sealArguments_t &arguments) {
        sealing_.echoTag = arguments.header.echoTag;
        sealing_.sequenceNumber = arguments.header.sequenceNumber;
        if (arguments.id)
            sealing_.id = idsNamed({*arguments.id}).front();
    }

private:
    std::optional<std::string> made(const item_t &item) override {
        inspect::formResult_t result = inspect::seal(item.text, sealing_);
        if (result.isRead())
            return std::move(result.text);
        complain(item.place() + ": error: " + result.error + (result.needsId ? " (--as)" : ""));
        return std::nullopt;
    }

    inspect::sealOptions_t sealing_;
};

int runSeal(const sealArguments_t &arguments) {
    sealTask_t task(arguments);
    return writeMessages(arguments.reading, arguments.inPlace.isInPlace, task);
}

const commandOf_t<sealArguments_t>
    sealCommand({.order = 30,
                 .name = "seal",
                 .about = "Make valid messages of anything readable: right length, numbers and markers",
                 .examples = "  vekmsg seal --in-place edited.txt\n"
                             "  vekmsg show focus.txt | sed 's/3.25/3.5/' | vekmsg seal > new.txt\n"
                             "  echo '{FOCUS_VALUE=3;}' | vekmsg seal --as FocusValue --seq 12"},
                runSeal);

} // namespace

} // namespace vek::tool
