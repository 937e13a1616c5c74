#include <unistd.h>

#include "copy/ReadAll.h"
#include "foundation/storage/provider/ClosingStream.h"
#include "options/Arguments.h"
#include "verbs/Base64.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::ClosingStream;
using foundation::storage::provider::IProvider;

namespace {

class Cat final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "cat"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Write the bytes of files to standard output",
                .text =
                    "Bytes are written unchanged. With --json, each portion of a file is an object with the bytes\n"
                    "in base64; a last object gives the number of bytes in the file.",
                .examples = {"jstore cat report.txt",
                             "jstore --mount \"zip=jar:file://$PWD/archive.zip\" cat java://zip/META-INF/MANIFEST.MF"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "FILE...", m_arguments, "Files to write, one after the other");
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        context.progress().count("written");
        // A progress line would appear in the middle of the file that a terminal shows.
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
        const IProvider& provider = context.provider();
        Reporter& reporter = context.reporter();
        const ClosingStream from(provider.openReadOnlyByteStream(file.iri()));
        context.progress().atFile(file, std::nullopt);
        std::uint64_t offset = 0;
        const std::uint64_t count = readAll({*from, file.iri()}, [&](std::string_view bytes) {
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
