// Prints the manual page; run by the build.
#include <cstdio>
#include <exception>

#include "CommandLine.h"
#include "manual/ManPage.h"
#include "output/Reporter.h"

int main() {
    try {
        const jstore::CommandLine commandLine;
        jstore::writeOutput(jstore::manual::manPage(commandLine.grammar(), JSTORE_VERSION));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
