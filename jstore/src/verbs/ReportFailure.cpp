#include "verbs/ReportFailure.h"

#include <exception>

#include "Interrupt.h"
#include "Problem.h"

namespace jstore {

ExitCode reportFailure(Context& context, const Location& location) {
    try {
        throw;
    } catch (const OutputError&) {
        throw;
    } catch (const Interruption&) {
        throw;
    } catch (const CommandError& error) {
        context.reporter().failed(location, error.problem());
        return error.problem().exitCode;
    } catch (const std::exception& error) {
        const auto problem = context.problemOf(error, location);
        context.reporter().failed(location, problem);
        return problem.exitCode;
    }
}

}  // namespace jstore
