package com.corvallen.storage.test;

import java.util.ArrayList;
import java.util.List;

/**
 * A class loader that returns the answer set, whatever class it is asked for, and notes each question.
 *
 * <p>An answer is a word: {@code null}, {@code missing} (throws ClassNotFoundException), or {@code known} (gives
 * {@link Answer}, so that a test can tell the loader's answer from a class found some other way).
 */
public final class ScriptedLoader extends ClassLoader {
    private static final List<String> QUESTIONS = new ArrayList<>();

    private final String name;
    private final String answer;

    /** What a loader gives that knows the class. */
    public static final class Answer {
        private Answer() {}
    }

    private ScriptedLoader(String name, String answer, ClassLoader parent) {
        super(parent);
        this.name = name;
        this.answer = answer;
    }

    /**
     * Makes loaders, each the parent of the one before it, and forgets the questions so far.
     *
     * @param answers the answers, separated by blanks, that of the first loader first
     * @return the first loader
     */
    public static Object chain(String answers) {
        forget();
        String[] words = answers.split(" ");
        ClassLoader loader = null;
        for (int i = words.length - 1; i >= 0; i--) {
            loader = new ScriptedLoader("loader" + (i + 1), words[i], loader);
        }
        return loader;
    }

    /** The questions since the last chain was made: the loader's number and the name it was asked for. */
    public static synchronized String[] questions() {
        return QUESTIONS.toArray(new String[0]);
    }

    /** The loader of the class path. */
    public static Object system() {
        return ClassLoader.getSystemClassLoader();
    }

    /** The class of that name, loaded and not yet initialised. */
    public static Object uninitialised(String className) throws ClassNotFoundException {
        return Class.forName(className, false, ScriptedLoader.class.getClassLoader());
    }

    private static synchronized void forget() {
        QUESTIONS.clear();
    }

    private static synchronized void note(String question) {
        QUESTIONS.add(question);
    }

    @Override
    public Class<?> loadClass(String className) throws ClassNotFoundException {
        note(name + " " + className);
        switch (answer) {
            case "null":
                return null;
            case "known":
                return Answer.class;
            default:
                throw new ClassNotFoundException(name + " does not know " + className);
        }
    }
}
