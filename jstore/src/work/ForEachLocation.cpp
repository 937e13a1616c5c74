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

std::vector<Location> startWith(Context& context, const std::vector<std::string>& arguments) {
    std::vector<Location> locations = toLocations(arguments);
    context.startBackEnd();
    return locations;
}

ExitCode forEachLocation(Context& context, const std::vector<Location>& locations,
                         const std::function<ExitCode(const Location&)>& operation) {
    std::vector<ExitCode> codes;
    codes.reserve(locations.size());
    for (const Location& location : locations) {
        codes.push_back(attempt(context, location, operation));
    }
    return combine(codes);
}

ExitCode forEachArgument(Context& context, const std::vector<std::string>& arguments,
                         const std::function<void(const IProvider&, const Location&)>& operation) {
    const std::vector<Location> locations = startWith(context, arguments);
    const IProvider& provider = context.provider();
    context.progress().count("done");
    return forEachLocation(context, locations, [&](const Location& location) {
        operation(provider, location);
        context.progress().countItem();
        context.reporter().done(location);
        return ExitCode::Done;
    });
}

}  // namespace jstore
