#include "work/FullStorage.h"

#include "base/Problem.h"
#include "work/EndOfCommand.h"

namespace jstore {

void endByFullStorage(Context& context, const Location& location,
                      const foundation::storage::provider::Exception& error) {
    Problem problem = context.problemOf(error, location);
    problem.text = messageOf(problem) + "; " + context.progress().counted() + " before that";
    context.reporter().failed(location, problem);
    throw EndOfCommand(problem.exitCode);
}

}  // namespace jstore
