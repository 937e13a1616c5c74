package com.corvallen.bench;

/** The least that a Java program can do: it starts, and prints a word. */
public final class Word {
    private Word() {}

    public static void main(String[] arguments) {
        System.out.println("word");
    }
}
