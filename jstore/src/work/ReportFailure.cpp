#include "work/ReportFailure.h"

#include <exception>
#include <string>

#include "base/Problem.h"
#include "process/Interrupt.h"
#include "work/EndOfCommand.h"

namespace jstore {

ExitCode reportFailure(Context& context, const Location& location) {
    try {
        throw;
    } catch (const OutputError&) {
        throw;
    } catch (const Interruption&) {
        throw;
    } catch (const EndOfCommand&) {
        throw;
    } catch (const CommandError& error) {
        context.reporter().failed(location, error.problem());
        return error.problem().exitCode;
    } catch (const std::exception& error) {
        const Problem problem = context.problemOf(error, location);
        context.reporter().failed(location, problem);
        return problem.exitCode;
    }
}

void reportInterruption(Context& context) {
    const std::string counted = context.progress().counted();
    const std::string text = "interrupted" + (counted.empty() ? std::string() : ": " + counted);
    context.reporter().failed({"Interrupted", {}, text, interruptionCode()});
}

}  // namespace jstore
