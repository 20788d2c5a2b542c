// vekmsg export: what an archive holds, as logs or as rows of a table.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/tableNames.hpp"
#include "tools/vekmsg/load/exporter.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

namespace vek::tool {

namespace {

struct exportArguments_t {
    exportOptions_t given;
    std::string table;

    void declare(argumentList_t &list) {
        list.add(given.target, {.names = "--from",
                                .about = "The database, as load takes it: a file, or http://HOST:8123/DATABASE",
                                .type = "FILE.sqlite|URL",
                                .isRequired = true});
        list.add(given.sources, {"--source", "Only the log of this name; several times for several", "NAME"});
        list.add(given.devices, {"--device", "Only logs of this device", "NAME"});
        list.add(given.sites, {"--site", "Only logs of this site", "NAME"});
        list.add(given.hosts, {"--host", "Only logs of this machine", "NAME"});
        list.add(given.since,
                 {"--since", "Only messages of this time and later: a time, a date, -2h, today, yesterday", "TIME"});
        list.add(given.until, {"--until", "Only messages of this time and earlier", "TIME"});
        list.add(given.folder, {"--to",
                                "A file for each log in this folder, instead of all in the order of time to "
                                "standard output",
                                "FOLDER"});
        list.add(table, {"--table", "The rows of this table as JSON lines, instead of the logs", "TABLE"});
        list.addFlag(given.isCsv, "--csv", "The rows as CSV, lists in them as JSON");
    }
};

int runExport(const exportArguments_t &arguments) {
#ifdef VEK_DATABASES
    exportOptions_t options = arguments.given;
    options.table = tableNamed(arguments.table);
    if (options.isCsv && options.table == nullptr)
        throw usageError_t("--csv needs --table TABLE: which rows?");
    try {
        const bool isServer = options.target.find("://") != std::string::npos;
        return exportFrom(isServer ? *openClusterReader(options.target) : *openSqliteReader(options.target), options);
    } catch (const databaseError_t &error) {
        complain(error.what());
        return exitUsage;
    }
#else
    throw usageError_t("--from " + arguments.given.target + ": this build of vekmsg has no databases; export on Linux");
#endif
}

const commandOf_t<exportArguments_t>
    exportCommand({.order = 135,
                   .name = "export",
                   .about = "Give logs back from a database byte for byte, or the rows of its tables",
                   .examples = "  vekmsg export --from archive.sqlite --to logs\n"
                               "  vekmsg export --from archive.sqlite --source device.log | cmp - device.log\n"
                               "  vekmsg export --from archive.sqlite --since 2026-03-01 --device drum-1\n"
                               "  vekmsg export --from archive.sqlite --table focus_value --csv > focus.csv"},
                  runExport);

} // namespace

} // namespace vek::tool
