#include "tools/vekmsg/commandLine.hpp"

#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/problem.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/schema/schema.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <thread>

namespace vek::tool {

namespace {

constexpr const char *about =
    "Shows, checks, mends, changes and compares the text messages of a laser exposure device. Wherever messages are "
    "read, they may stand in a log amid other words, in a file of their own, in the readable form, in JSON or in the "
    "flat form; as they are or packed with gzip or zstd.";

// A page of help with its long lines broken, in the column where the words of options and commands begin.
std::string wrappedPage(const std::string &page, std::size_t width) {
    constexpr std::size_t column = 30;
    std::string out;
    for (std::size_t at = 0; at < page.size();) {
        const std::size_t end = std::min(page.find('\n', at), page.size());
        const std::string line = page.substr(at, end - at);
        at = end + 1;
        const bool hasColumn = line.size() > column && line.starts_with("  ") && line.compare(column - 2, 2, "  ") == 0;
        out += wrapped(line, width, hasColumn ? column : 0) + "\n";
    }
    return out;
}

constexpr const char *timeWords =
    "Where the time stands on a line, when it is unusual: its first group in a usual form, or six "
    "groups for year, month, day, hour, minute, second";
constexpr const char *followWords = "Go on when the file grows, also when another takes its name; each message at once";
constexpr const char *exitCodes = "Exit code: 0 fine; 1 differences, invalid messages or none; 2 usage or files.";

} // namespace

commandLine_t::commandLine_t() : app_(about, "vekmsg") {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "vekmsg " VEK_VERSION, "The version");
    app_.set_help_flag("-h,--help", "This help; after a command, its own");
    app_.footer(std::string(exitCodes) + "\nvekmsg COMMAND --help says more, with examples.");
    app_.failure_message([](const CLI::App *, const CLI::Error &error) { return std::string(error.what()); });
    declareViews();
    declareChanges();
    declareForms();
    declareLogs();
    declareTables();
    declareCatalogue();
    CLI::App *page = app_.add_subcommand("page", "The manual page and completions")->group("");
    page->add_option("KIND", options_.page)->required();
}

CLI::App *commandLine_t::command(const std::string &name, const std::string &words, command_t runs,
                                 const std::string &examples) {
    CLI::App *app = app_.add_subcommand(name, words);
    app->footer("Examples:\n" + examples);
    app->callback([this, runs, name] {
        chosen_ = runs;
        options_.command = name;
    });
    return app;
}

void commandLine_t::color(CLI::App *app) {
    app->add_option("--color", options_.color, "Colours: auto (on a terminal, unless NO_COLOR is set), always, never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

void commandLine_t::files(CLI::App *app, const std::string &name) {
    app->add_option(name, options_.files, "Files, - for standard input (which is read when none is named)")
        ->type_name("");
}

// The options of every command that reads messages.
void commandLine_t::reading(CLI::App *app, bool isStream, bool canSplit) {
    app->add_option("--id", options_.ids, "Only messages of this id or name; several times for several")
        ->type_name("ID|NAME")
        ->allow_extra_args(false);
    app->add_option("--where", options_.conditions,
                    "Only messages in which a value is so: PATH=VALUE, !=, <, >, or ~ (contains); quote it")
        ->type_name("PATH=VALUE")
        ->allow_extra_args(false);
    app->add_option("--since", options_.since, "Only messages of log lines of this time and later")->type_name("TIME");
    app->add_option("--until", options_.until, "Only messages of log lines of this time and earlier")
        ->type_name("TIME");
    app->add_option("--time", options_.timeExpression, timeWords)->type_name("REGEX");
    app->add_option("-n,--head", options_.head, "Only the first N messages")->type_name("N");
    app->add_option("--longest", options_.longest,
                    "Pass over messages of more than N characters and say so; 99999 when it is not said, the most that "
                    "hosts read")
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, inspect::logScanner_t::largestMessage));
    if (isStream)
        app->add_flag("-f,--follow", options_.follows, followWords);
    if (canSplit)
        app->add_option("-j,--jobs", options_.jobs, "Read a plain file on N processors (0: all there are)")
            ->type_name("N")
            ->check(CLI::Range(0, 64));
}

void commandLine_t::header(CLI::App *app) {
    app->add_option("--echo", options_.echoTag, "The echo tag to write")->type_name("N");
    app->add_option("--seq", options_.sequenceNumber, "The sequence number to write")->type_name("N");
}

void commandLine_t::source(CLI::App *app) {
    app->add_option("--source", options_.source, "What the log is called in the tables, instead of the file's name")
        ->type_name("NAME");
}

void commandLine_t::inPlace(CLI::App *app) {
    app->add_flag("-i,--in-place", options_.isInPlace,
                  "Replace the messages in their files; everything else in them stays, and owner and mode too");
}

void commandLine_t::declareViews() {
    CLI::App *show = command("show", "Show messages as a readable tree, which seal reads back", runShow,
                             "  vekmsg show device.log --id DeviceStatus --head 1\n"
                             "  vekmsg show focus.txt > focus.show; vekmsg seal focus.show\n"
                             "  vekmsg show --follow --changes device.log");
    files(show);
    show->add_flag("--as-read", options_.asRead, "What a host keeps of the message, with what changes by that");
    show->add_flag("--changes", options_.onlyChanges, "Only what differs from the previous message of that kind");
    reading(show);
    color(show);

    CLI::App *check =
        command("check", "Find every departure from the format, and say what a host makes of it", runCheck,
                "  vekmsg check focus.txt\n"
                "  vekmsg check --ignore missing-key device.log.gz\n"
                "  vekmsg check --quiet focus.txt && send focus.txt");
    files(check);
    check->add_option("--ignore", options_.ignored, "Leave out findings of this name, which stands behind each in []")
        ->type_name("NAME")
        ->delimiter(',')
        ->allow_extra_args(false);
    check->add_flag("-q,--quiet", options_.isQuiet, "Only the exit code");
    check->add_flag("--json", options_.isJson, "A JSON object a finding");
    reading(check);
    color(check);
}

void commandLine_t::declareChanges() {
    CLI::App *seal =
        command("seal", "Make valid messages of anything readable: right length, numbers and markers", runSeal,
                "  vekmsg seal --in-place edited.txt\n"
                "  vekmsg show focus.txt | sed 's/3.25/3.5/' | vekmsg seal > new.txt\n"
                "  echo '{FOCUS_VALUE=3;}' | vekmsg seal --as FocusValue --seq 12");
    files(seal);
    header(seal);
    seal->add_option("--as", options_.id, "The message that it is, when it does not say so itself")
        ->type_name("ID|NAME");
    inPlace(seal);
    reading(seal, true, false);

    CLI::App *get = command("get", "Print one value of each message", runGet,
                            "  vekmsg get FOCUS_VALUE focus.txt\n"
                            "  vekmsg get 'ARRAY_CASSETTE[0].VERSION.TYPE' cassettes.txt\n"
                            "  vekmsg get @seq device.log");
    get->add_option("PATH", options_.path, "The key, with those it stands in; @id, @echo, @seq, @length")->required();
    files(get);
    reading(get);

    CLI::App *set = command("set", "Change values and seal; every other byte stays", runSet,
                            "  vekmsg set FOCUS_VALUE=3.5 focus.txt > new.txt\n"
                            "  vekmsg set --in-place 'ARRAY_CASSETTE[0].NAME=Plates' @seq=12 cassettes.txt");
    set->add_option("PATH=VALUE", options_.words, "What to change; then the files, - or none for standard input")
        ->required();
    inPlace(set);
    set->add_flag("-q,--quiet", options_.isQuiet, "Don't say what changed");
    reading(set, true, false);

    CLI::App *edit =
        command("edit", "Edit a message in its readable form, until it is right; then seal it in its place", runEdit,
                "  vekmsg edit focus.txt\n"
                "  EDITOR=nano vekmsg edit device.log --id FocusValue --where @seq=41");
    edit->add_option("FILE", options_.files, "The file, with one message (or one chosen by the options)")
        ->required()
        ->expected(1);
    reading(edit, false, false);
}

void commandLine_t::declareForms() {
    CLI::App *json =
        command("json", "Messages as JSON, one line each, with where they stood and their problems", runJson,
                "  vekmsg json device.log | jq -c 'select(.problems)'\n"
                "  vekmsg json focus.txt | jq -c '.focusValue_t.FOCUS_VALUE = 3' | vekmsg seal\n"
                "  vekmsg json --follow device.log | lnav\n"
                "  vekmsg json --table focus_value device.log");
    files(json);
    json->add_flag("--rows", options_.isRows,
                   "The rows of the tables of vekmsg schema, a line each, which begins with the table's name");
    json->add_option("--table", options_.table, "The rows of this table alone, without its name")->type_name("TABLE");
    source(json);
    reading(json);

    CLI::App *flat = command("flat", "Messages as lines of \"path = value\", for grep", runFlat,
                             "  vekmsg flat device.log | grep MEDIA_NAME\n"
                             "  diff <(vekmsg flat a.txt) <(vekmsg flat b.txt)");
    files(flat);
    reading(flat);

    CLI::App *table = command("table", "Values as a table (CSV, or TSV) for spreadsheets and plots", runTable,
                              "  vekmsg table --keys time,FOCUS_VALUE device.log > focus.csv\n"
                              "  vekmsg table --tsv --keys line,seq,STATUS,LOW_STATUS --id DeviceStatus device.log");
    files(table);
    table
        ->add_option("--keys", options_.keys,
                     "The columns: paths of values; time, file, line, offset, before, id, name, echo, seq, length")
        ->required()
        ->type_name("KEY,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    table->add_flag("--tsv", options_.isTabs, "Tabs instead of commas");
    reading(table);
}

void commandLine_t::declareLogs() {
    CLI::App *last = command("last", "The latest message of each kind: the device's state", runLast,
                             "  vekmsg last device.log\n"
                             "  vekmsg last --at 2026-03-01T12:00 device.log --id DeviceStatus");
    files(last);
    last->add_option("--at", options_.at, "The state at this time instead of the end")->type_name("TIME");
    last->add_flag("--json", options_.isJson, "As JSON lines");
    reading(last, false);
    color(last);

    CLI::App *summary =
        command("summary", "Count the messages of each kind, the damaged and the missing ones", runSummary,
                "  vekmsg summary device.log\n"
                "  vekmsg summary --jobs 0 --check *.log");
    files(summary);
    summary->add_flag("--check", options_.isChecked,
                      "Damaged is also what check finds an error in, not the envelope alone");
    reading(summary, false);
    color(summary);

    CLI::App *diff =
        command("diff", "Compare two messages, or two logs by id and sequence number, field by field", runDiff,
                "  vekmsg diff before.txt after.txt\n"
                "  vekmsg diff --tolerance 0.001 --ignore MEDIA_NAME yesterday.log today.log");
    diff->add_option("FILE", options_.files, "The two files");
    diff->add_option("--tolerance", options_.tolerance, "Numbers that differ by no more are the same")
        ->type_name("NUMBER")
        ->check(CLI::NonNegativeNumber);
    diff->add_option("--ignore", options_.ignored, "Leave out a path and all below it, or a key wherever it stands")
        ->type_name("PATH")
        ->delimiter(',')
        ->allow_extra_args(false);
    diff->add_flag("--header", options_.comparesHeader, "Compare echo tags and sequence numbers, too");
    reading(diff, false, false);
    color(diff);
}

void commandLine_t::declareTables() {
    CLI::App *load = command("load", "Load the messages of logs into a database, to be asked in SQL", runLoad,
                             "  vekmsg load --into archive.sqlite device.log\n"
                             "  sqlite3 -box archive.sqlite 'SELECT log_time, low_status FROM device_status'\n"
                             "  vekmsg load --into archive.sqlite --follow device-*.log\n"
                             "  vekmsg load --into 'http://HOST:8123/fleet?cluster=all' device-*.log");
    load->add_option("LOG", options_.files, "Logs, also packed ones; - for standard input")->type_name("");
    load->add_option("--into", options_.target,
                     "The database: a file, which is made when there is none; or http://HOST:8123/DATABASE of a "
                     "ClickHouse server, where the tables are made, and with ?cluster=NAME behind it distributed over "
                     "a cluster")
        ->type_name("FILE.sqlite|URL")
        ->required();
    source(load);
    load->add_option("--time", options_.timeExpression, timeWords)->type_name("REGEX");
    load->add_flag("-f,--follow", options_.follows, followWords);
    load->add_flag("-q,--quiet", options_.isQuiet, "Don't say how much was loaded");

    CLI::App *schema = command("schema", "The tables that messages are kept in for queries, as SQL", runSchema,
                               "  vekmsg schema --sql sqlite | sqlite3 empty.sqlite\n"
                               "  vekmsg schema --sql clickhouse FocusValue DeviceStatus | clickhouse-client -n");
    schema->add_option("ID|NAME", options_.words, "Only the tables of these messages, and those of all messages");
    schema->add_option("--sql", options_.sqlDialect, "Whose SQL: sqlite or clickhouse")
        ->type_name("DATABASE")
        ->required()
        ->check(CLI::IsMember({"sqlite", "clickhouse"}));
}

void commandLine_t::declareCatalogue() {
    CLI::App *list = command("list", "All messages there are", runList, "  vekmsg list | grep -i cassette");
    list->add_flag("--json", options_.isJson, "The whole catalogue with keys, kinds, names and defaults, as JSON");
    color(list);

    CLI::App *describe = command("describe",
                                 "The keys of a message with their kinds, names and defaults; or all messages "
                                 "that have a key",
                                 runDescribe,
                                 "  vekmsg describe 4112\n"
                                 "  vekmsg describe FocusValue\n"
                                 "  vekmsg describe MEDIA_NAME");
    describe->add_option("ID|NAME|KEY", options_.words, "An id, the name of a message, or a key")->required();
    color(describe);

    CLI::App *made = command("new", "A message with the defaults, to be changed", runNew,
                             "  vekmsg new FocusValue > focus.txt\n"
                             "  vekmsg new 4112 | vekmsg set FOCUS_VALUE=3.5");
    made->add_option("ID", options_.id, "The id or name of a message")->required();
    header(made);
}

// Of set: words with "=" are what to change, the others files.
void commandLine_t::sortWords() {
    if (options_.command != "set")
        return;
    std::vector<std::string> assignments;
    for (std::string &word : options_.words)
        (word.find('=') != std::string::npos && !identityOf(word) ? assignments : options_.files)
            .push_back(std::move(word));
    if (assignments.empty())
        throw usageError_t("what is to be set? Write PATH=VALUE in front of the file, for example FOCUS_VALUE=3.5");
    options_.words = std::move(assignments);
}

int commandLine_t::complainAbout(const CLI::ParseError &error, int argc, char **argv) {
    if (error.get_exit_code() == 0) { // help and version
        std::string text =
            dynamic_cast<const CLI::CallForVersion *>(&error) != nullptr ? std::string(error.what()) : std::string();
        if (text.empty()) {
            const std::vector<CLI::App *> chosen = app_.get_subcommands();
            text = chosen.empty() ? app_.help() : chosen.front()->help("vekmsg");
        }
        writeAll(1, wrappedPage(text, pageWidth()));
        return exitFine;
    }
    std::vector<std::string_view> names;
    std::vector<std::string> owned;
    for (const CLI::App *app : app_.get_subcommands({}))
        owned.push_back(app->get_name());
    names.assign(owned.begin(), owned.end());
    const std::string_view word = argc > 1 ? argv[1] : "";
    const bool isCommand = std::find(names.begin(), names.end(), word) != names.end();
    if (isCommand) {
        complain(std::string(error.what()) + "; vekmsg " + std::string(word) + " --help shows what it takes");
        return exitUsage;
    }
    const std::string_view near = inspect::nearest(word, names);
    if (word.empty())
        complain("which command? vekmsg --help shows all; vekmsg show FILE is a good first one");
    else if (identityOf(std::string(word)))
        complain(std::string(word) + " is a file; which command? vekmsg show " + std::string(word) +
                 " is a good first one");
    else if (near.empty())
        complain(std::string(word) + " is no command; vekmsg --help shows all");
    else
        complain(std::string(word) + " is no command; did you mean " + std::string(near) + "?");
    return exitUsage;
}

int commandLine_t::writePage() const {
    std::string page;
    if (options_.page == "man")
        page = manualPage(app_);
    else if (options_.page == "bash")
        page = bashCompletion(app_);
    else if (options_.page == "zsh")
        page = zshCompletion(app_);
    else if (options_.page == "names")
        for (const inspect::messageSchema_t &message : inspect::schema().messages())
            page += message.record != nullptr ? std::string(message.record->structure) + "\n" : std::string();
    else if (options_.page == "keys")
        for (const std::string_view key : inspect::schema().keys())
            page.append(key).append("\n");
    else
        throw usageError_t("there are the pages man, bash, zsh, names and keys");
    writeAll(1, page);
    return exitFine;
}

int commandLine_t::run(int argc, char **argv) {
    try {
        app_.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return complainAbout(error, argc, argv);
    }
    if (chosen_ == nullptr)
        return writePage();
    sortWords();
    if (options_.files.empty())
        options_.files.emplace_back("-");
    if (options_.jobs == 0)
        options_.jobs = std::max(1U, std::thread::hardware_concurrency());
    return chosen_(options_);
}

} // namespace vek::tool
