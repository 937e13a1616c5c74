package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** The overview of the package names each class once. The sources are found by a system property of the build. */
class PackageOverviewTest {
    private static final Path SOURCES = Path.of("../../main/java/com/corvallen/storage/backend/nio");
    private static final String OVERVIEW = "package-info";

    /** In the lists, every word with a capital letter is the name of a class. */
    private static final Pattern CLASS = Pattern.compile("\\b[A-Z]\\w+");

    private static Path sources() {
        String tests = System.getProperty("storage.sources");
        assertNotNull(tests, "run with -Dstorage.sources=...");
        return Path.of(tests).resolve(SOURCES).normalize();
    }

    private static List<String> classes() throws Exception {
        try (Stream<Path> files = Files.list(sources())) {
            return files.map(file -> file.getFileName().toString().replace(".java", ""))
                    .filter(name -> !name.equals(OVERVIEW) && !name.equals("NioProvider"))
                    .sorted()
                    .collect(Collectors.toList());
        }
    }

    private static List<String> named() throws Exception {
        String overview = Files.readString(sources().resolve(OVERVIEW + ".java"));
        Matcher lists = Pattern.compile("<ul>.*?</ul>", Pattern.DOTALL).matcher(overview);
        return lists.results()
                .flatMap(list -> CLASS.matcher(list.group()).results())
                .map(match -> match.group())
                .sorted()
                .collect(Collectors.toList());
    }

    @Test
    void eachClassIsNamedOnce() throws Exception {
        assertEquals(classes(), named());
    }
}
