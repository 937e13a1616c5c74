package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.io.BufferedReader;
import java.io.File;
import java.io.IOException;
import java.io.InputStreamReader;
import java.io.PrintStream;
import java.net.URI;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.TimeUnit;

/** A second process with its own provider. It executes each line of its input and answers with a line. */
final class OtherProcess implements AutoCloseable {
    private final Process process;
    private final BufferedReader answers;
    private final PrintStream orders;

    /** Starts it, with options for the virtual machine if any. */
    OtherProcess(String locale, String... options) throws IOException {
        List<String> words = new ArrayList<>();
        words.add(Path.of(System.getProperty("java.home"), "bin", "java").toString());
        words.add("-Xshare:auto");
        words.addAll(List.of(options));
        words.add("-cp");
        words.add(String.join(
                File.pathSeparator, place(NioProvider.class), place(StorageProvider.class), place(getClass())));
        words.add(getClass().getName());
        ProcessBuilder builder = new ProcessBuilder(words);
        builder.environment().put("LC_ALL", locale);
        process = builder.redirectError(ProcessBuilder.Redirect.INHERIT).start();
        answers = new BufferedReader(new InputStreamReader(process.getInputStream(), StandardCharsets.UTF_8));
        orders = new PrintStream(process.getOutputStream(), /* autoFlush= */ true, StandardCharsets.UTF_8);
    }

    static String place(Class<?> type) {
        return Path.of(URI.create(type.getProtectionDomain().getCodeSource().getLocation().toString()))
                .toString();
    }

    /** Executes a verb on a location; returns "ok" with the result, or the name of an error code. */
    String ask(String verb, StorageURI location) throws IOException {
        orders.println(verb + " " + location);
        return answers.readLine();
    }

    /** Kills it, whatever it is doing, and waits until it is gone. */
    void kill() {
        process.destroyForcibly();
        process.onExit().orTimeout(30, TimeUnit.SECONDS).join();
    }

    @Override
    public void close() {
        orders.close();
        try {
            process.onExit().orTimeout(30, TimeUnit.SECONDS).join();
        } finally {
            process.destroyForcibly();
        }
    }

    public static void main(String[] args) throws IOException {
        PrintStream out = new PrintStream(System.out, /* autoFlush= */ true, StandardCharsets.UTF_8);
        NioProvider provider = new NioProvider();
        BufferedReader in = new BufferedReader(new InputStreamReader(System.in, StandardCharsets.UTF_8));
        for (String line = in.readLine(); line != null; line = in.readLine()) {
            String[] words = line.split(" ", 2);
            out.println(answer(provider, words[0], new StorageURI(words[1])));
        }
        provider.dispose();
    }

    private static String answer(NioProvider provider, String verb, StorageURI location) {
        try {
            return "ok" + result(provider, verb, location);
        } catch (ProviderException e) {
            return e.getErrorCode().name();
        }
    }

    private static String result(NioProvider provider, String verb, StorageURI location) throws ProviderException {
        switch (verb) {
            case "list":
                StringBuilder names = new StringBuilder();
                for (FolderListEntry entry : provider.listFolder(location)) {
                    names.append(' ').append(location.resolve(entry.getName()));
                }
                return names.toString();
            case "create":
                provider.createFile(location);
                return "";
            case "write":
                provider.getChannel(location, false, /* truncate= */ true, false).close();
                return "";
            case "put":
                put(location);
                return "";
            case "hold":
                ProviderChannel held = provider.getChannel(location, false, false, /* exclusive= */ true);
                return " " + held.position();
            case "release":
                provider.dispose();
                return "";
            default:
                throw new IllegalArgumentException(verb);
        }
    }

    /** Creates a file with a new provider, and ends that provider. */
    static void put(StorageURI file) throws ProviderException {
        NioProvider provider = new NioProvider();
        try {
            provider.createFile(file);
        } finally {
            provider.close();
        }
    }
}
