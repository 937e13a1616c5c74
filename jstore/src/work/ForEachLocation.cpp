#include "work/ForEachLocation.h"

#include "process/Interrupt.h"
#include "work/ReportFailure.h"

namespace jstore {

using foundation::storage::provider::IProvider;

namespace {

ExitCode attempt(Context& context, const Location& location,
                 const std::function<ExitCode(const Location&)>& operation) {
    try {
        stopIfInterrupted();
        return operation(location);
    } catch (...) {
        return reportFailure(context, location);
    }
}

}  // namespace

ExitCode forEachLocation(Context& context, const std::vector<Location>& locations,
                         const std::function<ExitCode(const Location&)>& operation) {
    std::vector<ExitCode> codes;
    for (const auto& location : locations) {
        codes.push_back(attempt(context, location, operation));
    }
    return combine(codes);
}

ExitCode forEachArgument(Context& context, const std::vector<std::string>& arguments,
                         const std::function<void(const IProvider&, const Location&)>& operation) {
    const auto locations = toLocations(arguments);
    const auto& provider = context.provider();
    context.progress().count("done");
    return forEachLocation(context, locations, [&](const Location& location) {
        operation(provider, location);
        context.progress().countItem();
        context.reporter().done(location);
        return ExitCode::Done;
    });
}

}  // namespace jstore
