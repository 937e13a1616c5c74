#include <unistd.h>

#include "copy/OpenFile.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Base64.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

namespace {

class Cat final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("cat", "Write the bytes of files to standard output");
        addArguments(verb, "FILE...", m_arguments, "The files, one after the other");
        verb.footer(helpText(
            "The bytes are written as they are. With --json each portion is an object that holds them in base64,\n"
            "and an object with their number follows the last.",
            {"jstore cat report.txt",
             "jstore --mount \"zip=jar:file://$PWD/archive.zip\" cat java://zip/META-INF/MANIFEST.MF"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        static_cast<void>(context.provider());
        context.progress().count("written");
        // A line would stand in the middle of what a terminal shows.
        if (::isatty(STDOUT_FILENO) == 0) {
            context.progress().begin("written");
        }
        return forEachLocation(context, locations, [&](const Location& file) {
            write(context, file);
            context.progress().countItem();
            return ExitCode::Done;
        });
    }

private:
    static void write(Context& context, const Location& file) {
        const auto& provider = context.provider();
        auto& reporter = context.reporter();
        OpenFile from(provider.openReadOnlyByteStream(file.iri()), file.iri());
        context.progress().atFile(file, std::nullopt);
        std::uint64_t offset = 0;
        const auto count = from.readAll([&](std::string_view bytes) {
            if (reporter.json()) {
                reporter.done(file, {{"offset", offset}, {"content", base64(bytes)}});
            } else {
                writeOutput(bytes);
            }
            offset += bytes.size();
            context.progress().advance(bytes.size());
        });
        reporter.done(file, {{"bytes", count}});
    }

    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeCat() { return std::make_unique<Cat>(); }

}  // namespace jstore
