// vekmsg load: messages into a database; which one, its name tells.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/problem.hpp"

#include <algorithm>

namespace vek::tool {

int runLoad(const options_t &options) {
#ifdef VEK_DATABASES
    return options.target.find("://") != std::string::npos ? loadIntoCluster(options) : loadIntoSqlite(options);
#else
    throw usageError_t("--into " + options.target +
                       ": this build of vekmsg has no databases; load on Linux, or write the rows with vekmsg json "
                       "--rows");
#endif
}

} // namespace vek::tool
