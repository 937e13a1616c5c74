#pragma once

#include <CLI/App.hpp>

#include <memory>
#include <string>
#include <vector>

#include "base/ExitCode.h"
#include "work/Context.h"

namespace jstore {

/// One verb of the command line. A verb is told its arguments by the parser, then runs once.
class Verb {
public:
    virtual ~Verb() = default;

    Verb(const Verb&) = delete;
    Verb& operator=(const Verb&) = delete;

    /// Adds the verb, its options and its help to the command line; what the parser reads goes into this object.
    virtual CLI::App& declare(CLI::App& commandLine) = 0;

    /// Does the work and reports it. Throws CommandError when the command fails before its operations begin, and
    /// OutputError when standard output cannot be written.
    [[nodiscard]] virtual ExitCode run(Context& context) = 0;

protected:
    Verb() = default;
};

/// All verbs, in the order in which --help lists them.
[[nodiscard]] std::vector<std::unique_ptr<Verb>> allVerbs();

[[nodiscard]] std::unique_ptr<Verb> makeCat();
[[nodiscard]] std::unique_ptr<Verb> makeCompletion();
[[nodiscard]] std::unique_ptr<Verb> makeCp();
[[nodiscard]] std::unique_ptr<Verb> makeDf();
[[nodiscard]] std::unique_ptr<Verb> makeDoctor();
[[nodiscard]] std::unique_ptr<Verb> makeDu();
[[nodiscard]] std::unique_ptr<Verb> makeExists();
[[nodiscard]] std::unique_ptr<Verb> makeFeatures();
[[nodiscard]] std::unique_ptr<Verb> makeFind();
[[nodiscard]] std::unique_ptr<Verb> makeLs();
[[nodiscard]] std::unique_ptr<Verb> makeMkdir();
[[nodiscard]] std::unique_ptr<Verb> makeMv();
[[nodiscard]] std::unique_ptr<Verb> makeRm();
[[nodiscard]] std::unique_ptr<Verb> makeStat();
[[nodiscard]] std::unique_ptr<Verb> makeTouch();
[[nodiscard]] std::unique_ptr<Verb> makeTree();
[[nodiscard]] std::unique_ptr<Verb> makeWatch();

}  // namespace jstore
