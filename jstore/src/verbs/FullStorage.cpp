#include "verbs/FullStorage.h"

#include "EndOfCommand.h"
#include "Problem.h"

namespace jstore {

void endByFullStorage(Context& context, const Location& location,
                      const foundation::storage::provider::Exception& error) {
    auto problem = context.problemOf(error, location);
    problem.text = messageOf(problem) + "; " + context.progress().counted() + " until then";
    context.reporter().failed(location, problem);
    throw EndOfCommand(problem.exitCode);
}

}  // namespace jstore
