#include "manual/ManPage.h"

#include <fmt/format.h>

#include <sstream>

#include "base/ExitCode.h"

namespace jstore::manual {

namespace {

/// When the hand-written sections were last revised.
constexpr const char* Date = "2026-11-21";

constexpr const char* Locations = R"(.SH LOCATIONS
.TP
\fBjava:///\fIabsolute/path\fR
A file or folder of the back end. With the default back end, one on this machine.
.TP
\fBjava://\fIMOUNT\fB/\fIpath\fR
A file or folder in the mount that \fB\-\-mount\fR \fIMOUNT\fB=\fR... names. Nothing leads out of a mount.
.PP
Write \fB#\fR as \fB%23\fR and \fB?\fR as \fB%3F\fR; spaces need no encoding.
Anything without a scheme is a local path, relative to the working folder.
After \fB\-\-\fR every argument is a location.
.SH PROGRESS
After half a second, a command shows its progress in a line on standard error, and clears the line at the end.
The line appears only on a terminal. There is none with \fB\-\-no\-progress\fR, \fB\-\-log\fR or \fBTERM=dumb\fR,
in the background, or when standard output goes into a pipe.
For a single file, the line shows a percentage and the time left. Several files and folders are not counted beforehand;
for these, the line shows what has been done.
.SH ENVIRONMENT
.TP
\fBJAVA_HOME\fR
The Java to use without \fB\-\-java\-home\fR. If it is not usable, jstore tries \fBjava\fR on \fBPATH\fR, then the
system's folders.
.TP
\fBJSTORE_CLASS_PATH\fR
Jars and folders to search for classes after those of \fB\-\-class\-path\fR, separated by colons.
.TP
\fBTERM\fR
The kind of terminal. With \fBdumb\fR there is no progress line.
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

/// The lines of a text, with a paragraph macro in place of each empty line.
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
    for (const std::string& name : option.names) {
        names += (names.empty() ? "" : ", ") + bold(name);
    }
    const std::string value = option.value.empty() ? "" : ' ' + italic(option.value);
    return ".TP\n" + names + value + '\n' + escaped(option.help) + ".\n";
}

std::string examplesText(const std::vector<std::string>& examples) {
    std::string text = ".PP\n.nf\n.RS\n";
    for (const std::string& example : examples) {
        text += escaped(example) + '\n';
    }
    return examples.empty() ? "" : text + ".RE\n.fi\n";
}

std::string verbText(const Verb& verb) {
    std::string text = fmt::format(".SS {}\n.B jstore\n.RI [ options ]\n{}\n", escaped(verb.name), bold(verb.name));
    for (const Option& argument : verb.arguments) {
        text += italic(argument.names.front()) + '\n';
    }
    text += ".PP\n" + escaped(verb.help.summary) + ".\n";
    for (const Option& option : verb.options) {
        text += optionText(option);
    }
    const std::string more = paragraph(verb.help.text);
    return text + (more.empty() ? "" : ".PP\n" + more) + examplesText(verb.help.examples);
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
    std::string page = fmt::format(".TH JSTORE 1 {} \"jstore {}\" \"User Commands\"\n", Date, version);
    page += ".SH NAME\njstore \\- work with the files and folders of Java storage back ends\n";
    page += ".SH SYNOPSIS\n.B jstore\n.RI [ options ]\n.I VERB\n.RI [ options ]\n.IR argument ...\n";
    page += ".SH DESCRIPTION\n" + paragraph(grammar.help) + ".SH OPTIONS\nThese may come before or after the verb.\n";
    for (const Option& option : grammar.options) {
        page += optionText(option);
    }
    page += ".SH VERBS\n";
    for (const Verb& verb : grammar.verbs) {
        page += verbText(verb);
    }
    return page + Locations + exitStatus() + SeeAlso;
}

}  // namespace jstore::manual
