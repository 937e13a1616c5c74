package com.corvallen.storage.provider;

/** Removes from a message what a host shows anyway: the code and location before the text, or the location after it. */
final class ReasonText {
    private ReasonText() {}

    /** Returns the rest of a message as one line; null if nothing is left. */
    static String of(ErrorCode code, String location, String message) {
        if (message == null) {
            return null;
        }
        String rest = message.strip();
        rest = without(rest, code.name());
        rest = without(rest, location);
        rest = withoutEnd(rest, location);
        rest = rest.replaceAll("\\s+", " ").strip();
        return rest.isEmpty() ? null : rest;
    }

    private static String withoutEnd(String text, String location) {
        boolean ends = location != null && !location.isEmpty() && text.endsWith(": " + location);
        return ends ? text.substring(0, text.length() - location.length() - 2) : text;
    }

    /** Removes a beginning, and a colon after it, if the text ends there or a colon or space follows. */
    private static String without(String text, String beginning) {
        if (beginning == null || beginning.isEmpty() || !text.startsWith(beginning)) {
            return text;
        }
        String rest = text.substring(beginning.length());
        if (!rest.isEmpty() && rest.charAt(0) != ':' && !Character.isWhitespace(rest.charAt(0))) {
            return text;
        }
        return (rest.startsWith(":") ? rest.substring(1) : rest).strip();
    }
}
