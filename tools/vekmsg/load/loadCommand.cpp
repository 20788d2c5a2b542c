// vekmsg load: messages into a database; which one, its name tells.
#include "tools/vekmsg/commands.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/problem.hpp"

#include <algorithm>

namespace vek::tool {

int runLoad(const options_t &options) {
    if (options.target.find("://") != std::string::npos)
        throw usageError_t("--into " + options.target +
                           ": vekmsg loads into a file, for example --into archive.sqlite");
#ifdef VEK_SQLITE
    return loadIntoSqlite(options);
#else
    throw usageError_t("this build of vekmsg has no SQLite; load on Linux, or write the rows with vekmsg json --rows");
#endif
}

} // namespace vek::tool
