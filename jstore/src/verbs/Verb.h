#pragma once

#include <CLI/App.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/ExitCode.h"
#include "manual/Grammar.h"
#include "options/VerbHelp.h"
#include "work/Context.h"

namespace jstore {

/// One verb of the command line. The parser fills in its arguments, then it runs once.
class Verb {
public:
    virtual ~Verb() = default;

    Verb(const Verb&) = delete;
    Verb& operator=(const Verb&) = delete;

    [[nodiscard]] virtual std::string name() const = 0;

    /// What a user needs to know about the verb besides its options.
    [[nodiscard]] virtual VerbHelp help() const = 0;

    /// Adds the verb's arguments and options to its command; what the parser reads goes into this object.
    virtual void declare(CLI::App& command) = 0;

    /// Does the work and reports it. Throws CommandError when the command fails before its operations begin, and
    /// OutputError when standard output cannot be written.
    [[nodiscard]] virtual ExitCode run(Context& context) = 0;

protected:
    Verb() = default;
};

/// All verbs, in the order in which --help lists them. `grammar` returns the whole command line as data; the completion
/// verb needs it.
[[nodiscard]] std::vector<std::unique_ptr<Verb>> allVerbs(std::function<manual::Grammar()> grammar);

[[nodiscard]] std::unique_ptr<Verb> makeCat();
[[nodiscard]] std::unique_ptr<Verb> makeCompletion(std::function<manual::Grammar()> grammar);
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
