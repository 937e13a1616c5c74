#include "Arguments.h"
#include "OpenFile.h"
#include "verbs/ForEachLocation.h"
#include "verbs/Verb.h"

namespace jstore {

namespace {

class Cat final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("cat", "Write the bytes of files to standard output");
        addArguments(verb, "FILE...", m_arguments, "The files, one after the other");
        verb.footer("The bytes are written as they are; --json, which is text, does not go with them.");
        return verb;
    }

    ExitCode run(Context& context) override {
        if (context.options().json) {
            throw usageError("cat writes bytes and has no --json (see jstore cat --help)");
        }
        const auto locations = toLocations(m_arguments);
        const auto& provider = context.provider();
        return forEachLocation(context, locations, [&](const Location& file) {
            OpenFile from(provider.openReadOnlyByteStream(file.iri()), file.iri());
            from.readAll(writeOutput);
            return ExitCode::Done;
        });
    }

private:
    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeCat() { return std::make_unique<Cat>(); }

}  // namespace jstore
