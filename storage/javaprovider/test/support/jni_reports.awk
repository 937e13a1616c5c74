# Reads what virtual machines that watch JNI calls have written (-XX:+LogVMOutput), and prints a line for each report
# about the product: WARNING… | FUNCTION. `program` stands in for the function where the stack names none.
#
# Threads write at once. Where another one goes on, the machine says <writer thread='…'/>, even inside a line; so each
# thread's text is put together by itself first. The pieces of a line that are not its first begin with a blank.
#
# A process may exit while another of its threads is writing. A last report whose stack is cut off before the first
# native frame says nothing about its caller, and is left out.

function endOfReport(thread) {
    if (said[thread] != "" && place[thread] !~ /(^|::)test::/) {
        print said[thread] " | " (place[thread] == "" ? program : place[thread])
    }
    said[thread] = place[thread] = ""
    cut[thread] = 0
}

function take(thread, text) {
    if (text ~ /^(WARNING|FATAL ERROR)/) {
        endOfReport(thread)
        sub(/refs: [0-9]+, exceeds capacity: [0-9]+/, "refs", text)
        said[thread] = text
    } else if (text ~ /^Native frames:/) {
        cut[thread] = 1
    } else if (text ~ /^C  /) {
        cut[thread] = 0
    }
    if (said[thread] != "" && place[thread] == "" && text ~ /^C  / && text !~ /JNIEnv_::|Replacement&lt;/) {
        sub(/^C  \[[^]]*\] */, "", text)
        gsub(/\(anonymous namespace\)::/, "", text)
        sub(/[(+].*/, "", text)
        place[thread] = text
    }
}

function finishLine(thread) {
    if (thread in line) {
        take(thread, line[thread])
        delete line[thread]
    }
}

function finishFile(    thread) {
    for (thread in line) {
        finishLine(thread)
    }
    for (thread in said) {
        if (cut[thread]) {
            said[thread] = ""
        }
        endOfReport(thread)
    }
    writer = ""
}

FNR == 1 { finishFile() }
/^<writer thread=/ {
    writer = $0
    resumed = 1
    next
}
{
    if (resumed && writer in line && /^ /) {
        line[writer] = line[writer] $0
    } else {
        finishLine(writer)
        line[writer] = $0
    }
    resumed = 0
}
END { finishFile() }
