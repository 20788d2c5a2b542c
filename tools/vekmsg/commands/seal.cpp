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
    bool isForced = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        header.declare(list);
        list.add(id, {.names = "--as",
                      .about = "The message that it is, when it does not say so itself",
                      .type = "ID|NAME",
                      .pages = {"names"}});
        inPlace.declare(list);
        list.addFlag(isForced, "--force,--raw",
                     "Write what check would call an error, or what can only be guessed, too");
        reading.declare(list, true, false);
    }
};

class sealTask_t final : public messageTask_t {
public:
    explicit sealTask_t(const sealArguments_t &arguments) : isInPlace_(arguments.inPlace.isInPlace) {
        sealing_.strictness = arguments.isForced ? inspect::strictness_t::forced : inspect::strictness_t::judged;
        sealing_.echoTag = arguments.header.echoTag;
        sealing_.sequenceNumber = arguments.header.sequenceNumber;
        if (arguments.id)
            sealing_.id = idsNamed({*arguments.id}, "--as").front();
    }

    std::optional<std::int32_t> id() const { return sealing_.id; }

private:
    std::optional<std::string> made(const item_t &item) override {
        inspect::sealOptions_t sealing = sealing_;
        sealing.strictness = item.isRaw ? inspect::strictness_t::forced : sealing.strictness;
        inspect::formResult_t result = inspect::seal(item.text, sealing);
        if (!result.isRead()) {
            const bool needsId = result.missing == inspect::missing_t::id;
            const bool needsNumbers = result.missing == inspect::missing_t::numbers;
            complain(item.place() + ": error: " + result.error + (needsId ? " (--as)" : "") +
                     (needsNumbers ? " (--echo, --seq)" : ""));
            for (const inspect::refusal_t &refusal : result.further)
                complain(item.place() + ": error: " + refusal.words);
            return std::nullopt;
        }
        const std::string changes = isInPlace_ ? inspect::changesOf(item.text, result.text) : std::string();
        if (!changes.empty())
            complain(item.place() + ": " + changes);
        return std::move(result.text);
    }

    inspect::sealOptions_t sealing_;
    bool isInPlace_;
};

int runSeal(const sealArguments_t &arguments) {
    sealTask_t task(arguments);
    readingOptions_t reading = arguments.reading;
    reading.forms = {task.id(), arguments.isForced};
    return writeMessages(reading, arguments.inPlace.isInPlace, task);
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
