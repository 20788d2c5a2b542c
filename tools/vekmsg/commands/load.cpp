// vekmsg load: messages into a database; which one, its name tells.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct loadArguments_t {
    loadOptions_t load;

    void declare(argumentList_t &list) {
        load.reading.files.clear();
        list.add(load.reading.files, {"LOG", "Logs, also packed ones; - for standard input", ""});
        list.add(load.target,
                 {.names = "--into",
                  .about =
                      "The database: a file, which is made when there is none; or http://HOST:8123/DATABASE of a "
                      "ClickHouse server, where the tables are made, and with ?cluster=NAME behind it distributed over "
                      "a cluster",
                  .type = "FILE.sqlite|URL",
                  .isRequired = true});
        load.source.declare(list);
        list.add(load.device,
                 {"--device", "The device whose logs these are; a log of another one is another log", "NAME"});
        list.add(load.site, {"--site", "Where it stands; told apart as devices are", "NAME"});
        list.add(load.host, {"--host", "The machine that wrote them; told apart as devices are", "NAME"});
        list.add(load.pattern,
                 {"--pattern",
                  "How the end of the logs' names says all that: {site}/{device}.log; besides {host}, and * "
                  "for anything but a /",
                  "PATTERN"});
        list.addFlag(load.isReplacing, "--replace",
                     "Load logs anew that are there already, also when they are others now under their names: the new "
                     "rows take the place of the old ones at once");
        list.add(load.forgotten, {"--forget",
                                  "Take this log out of the database, with all that is known of it; before others are "
                                  "loaded, or alone",
                                  "SOURCE"});
        list.add(load.keep, {"--keep",
                             "Then take away messages that are older than this: 90d, 12h; what is loaded of "
                             "the logs stays known, so that they don't come again",
                             "TIME"});
        load.reading.declareTime(list);
        load.reading.declareFollowing(list);
        list.addFlag(load.isQuiet, "-q,--quiet", "Don't say how much was loaded");
    }
};

int runLoad(const loadArguments_t &arguments) {
    loadOptions_t load = arguments.load;
    if (load.reading.files.empty() && load.forgotten.empty() && load.keep.empty())
        load.reading.files = {"-"};
#ifdef VEK_DATABASES
    try {
        const bool isServer = load.target.find("://") != std::string::npos;
        checkArguments(load, isServer || identityOf(load.target));
        return loadInto(isServer ? *openCluster(load.target, load.reading.follows) : *openSqlite(load.target), load);
    } catch (const databaseError_t &error) {
        complain(error.what());
        return exitUsage;
    }
#else
    throw usageError_t("--into " + load.target +
                       ": this build of vekmsg has no databases; load on Linux, or write the rows with vekmsg json "
                       "--rows");
#endif
}

const commandOf_t<loadArguments_t>
    loadCommand({.order = 130,
                 .name = "load",
                 .about = "Load the messages of logs into a database, to be asked in SQL",
                 .examples = "  vekmsg load --into archive.sqlite device.log\n"
                             "  sqlite3 -box archive.sqlite 'SELECT log_time, low_status FROM device_status'\n"
                             "  vekmsg load --into archive.sqlite --follow device-*.log\n"
                             "  vekmsg load --into archive.sqlite --keep 90d\n"
                             "  vekmsg load --into 'http://HOST:8123/fleet?cluster=all' device-*.log"},
                runLoad);

} // namespace

} // namespace vek::tool
