#include "manual/ManPage.h"

#include <fmt/format.h>

#include <sstream>

#include "base/ExitCode.h"

namespace jstore::manual {

namespace {

/// When the hand-written sections were last gone over.
constexpr const char* Date = "2026-11-21";

constexpr const char* Locations = R"(.SH LOCATIONS
.TP
\fBjava:///\fIabsolute/path\fR
A file or folder of the back end; with the default one, of this machine.
.TP
\fBjava://\fIMOUNT\fB/\fIpath\fR
The same in what \fB\-\-mount\fR \fIMOUNT\fB=\fR... gives. Nothing leads out of a mount.
.PP
Blanks and the like may stand as they are; \fB#\fR and \fB?\fR are written \fB%23\fR and \fB%3F\fR.
Anything without a scheme is a local path, relative to the working folder.
After \fB\-\-\fR every argument is a location.
.SH PROGRESS
A command that takes longer than half a second shows a line on standard error that tells how far it is, and clears it at
the end.
The line is for people: there is none unless standard error is a terminal, nor with \fB\-\-no\-progress\fR,
with \fB\-\-log\fR, with \fBTERM=dumb\fR, in the background, or when standard output goes into a pipe.
A single file has a percentage and the time left; for several files and whole folders, which are not counted beforehand,
the line tells what is done.
.SH ENVIRONMENT
.TP
\fBJAVA_HOME\fR
The Java to use, unless \fB\-\-java\-home\fR says so. After it come \fBjava\fR on \fBPATH\fR and the system's folders.
.TP
\fBJSTORE_CLASS_PATH\fR
Jars and folders, with colons between, that classes are looked for in after those of \fB\-\-class\-path\fR.
.TP
\fBTERM\fR
Whether a progress line can be drawn.
)";

constexpr const char* SeeAlso = R"(.SH SEE ALSO
.BR cp (1),
.BR java (1)
)";

/// Text as the formatter shows it.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const bool lineStart = result.empty() || result.back() == '\n';
        if (lineStart && (c == '.' || c == '\'')) {
            result += "\\&";
        }
        if (c == '\\') {
            result += "\\e";
        } else if (c == '-') {
            result += "\\-";
        } else {
            result += c;
        }
    }
    return result;
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + escaped(text) + "\\fR"; }

/// The lines of a text without those that are empty, each sentence on a line of its own where the text has it so.
std::string paragraph(const std::string& text) {
    std::string result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        result += line.empty() ? (result.empty() ? "" : ".PP\n") : escaped(line) + '\n';
    }
    while (result.ends_with(".PP\n")) {
        result.resize(result.size() - 4);
    }
    return result;
}

std::string optionText(const Option& option) {
    std::string names;
    for (const auto& name : option.names) {
        names += (names.empty() ? "" : ", ") + bold(name);
    }
    const auto value = option.value.empty() ? "" : ' ' + italic(option.value);
    return ".TP\n" + names + value + '\n' + escaped(option.help) + ".\n";
}

std::string examplesText(const std::vector<std::string>& examples) {
    std::string text = ".PP\n.nf\n.RS\n";
    for (const auto& example : examples) {
        text += escaped(example) + '\n';
    }
    return examples.empty() ? "" : text + ".RE\n.fi\n";
}

std::string verbText(const Verb& verb) {
    auto text = fmt::format(".SS {}\n.B jstore\n.RI [ options ]\n{}\n", escaped(verb.name), bold(verb.name));
    for (const auto& argument : verb.arguments) {
        text += italic(argument.names.front()) + '\n';
    }
    text += ".PP\n" + escaped(verb.help) + ".\n";
    for (const auto& option : verb.options) {
        text += optionText(option);
    }
    const auto more = paragraph(verb.text);
    return text + (more.empty() ? "" : ".PP\n" + more) + examplesText(verb.examples);
}

/// The rows of the table that --help shows.
std::string exitStatus() {
    std::string text = ".SH EXIT STATUS\n";
    std::istringstream in(exitCodeTable());
    std::string line;
    std::getline(in, line);
    for (int code = 0; in >> code && std::getline(in, line);) {
        text += fmt::format(".TP\n.B {}\n{}\n", code, escaped(line.substr(line.find_first_not_of(' '))));
    }
    return text;
}

}  // namespace

std::string manPage(const Grammar& grammar, const std::string& version) {
    auto page = fmt::format(".TH JSTORE 1 {} \"jstore {}\" \"User Commands\"\n", Date, version);
    page += ".SH NAME\njstore \\- work with the files and folders of Java storage back ends\n";
    page += ".SH SYNOPSIS\n.B jstore\n.RI [ options ]\n.I VERB\n.RI [ options ]\n.IR argument ...\n";
    page += ".SH DESCRIPTION\n" + paragraph(grammar.help) + ".SH OPTIONS\nThese may stand before or after the verb.\n";
    for (const auto& option : grammar.options) {
        page += optionText(option);
    }
    page += ".SH VERBS\n";
    for (const auto& verb : grammar.verbs) {
        page += verbText(verb);
    }
    return page + Locations + exitStatus() + SeeAlso;
}

}  // namespace jstore::manual
