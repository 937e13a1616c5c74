package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertNull;

import java.util.concurrent.CompletableFuture;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

class LastFailureTest {
    private static final StorageURI PLACE = new StorageURI("java://m/a");

    @BeforeEach
    void forget() {
        LastFailure.take();
    }

    private static LastFailure reported(ProviderException exception) {
        exception.getErrorCodeNumber();
        LastFailure last = LastFailure.take();
        assertNotNull(last);
        return last;
    }

    private static String reasonOf(String message) {
        return reported(new ProviderException(ErrorCode.IN_USE, PLACE, message)).getReason();
    }

    @Test
    void nothingIsKnownBeforeAFailureIsReported() {
        assertNull(LastFailure.take());
        new ProviderException(ErrorCode.IN_USE, PLACE, "made, and not reported");
        assertNull(LastFailure.take());
    }

    @Test
    void codeLocationAndWordsAreThoseOfTheException() {
        LastFailure last = reported(new ProviderException(ErrorCode.IN_USE, PLACE, "another writer has it open"));
        assertEquals(ErrorCode.IN_USE, last.getErrorCode());
        assertEquals(10, last.getErrorCodeNumber());
        assertEquals("java://m/a", last.getLocationString());
        assertEquals("another writer has it open", last.getReason());
    }

    @Test
    void takingForgets() {
        reported(new ProviderException(ErrorCode.IN_USE, PLACE, "once"));
        assertNull(LastFailure.take());
    }

    @Test
    void laterFailureTakesThePlaceOfAnEarlierOne() {
        new ProviderException(ErrorCode.IN_USE, PLACE, "first").getErrorCodeNumber();
        LastFailure last = reported(new ProviderException(ErrorCode.NOT_FOUND, null));
        assertEquals(ErrorCode.NOT_FOUND, last.getErrorCode());
        assertNull(last.getLocationString());
        assertNull(last.getReason());
    }

    @Test
    void threadsKnowTheirOwnFailuresOnly() {
        new ProviderException(ErrorCode.IN_USE, PLACE, "mine").getErrorCodeNumber();
        assertNull(CompletableFuture.supplyAsync(LastFailure::take, command -> new Thread(command).start())
                .join());
        assertEquals("mine", LastFailure.take().getReason());
    }

    @Test
    void codeAndLocationAroundTheWordsAreLeftOut() {
        assertEquals("another writer", reasonOf("IN_USE: java://m/a: another writer"));
        assertEquals("is open already", reasonOf("java://m/a is open already"));
        assertEquals("another writer", reasonOf("IN_USE: another writer"));
        assertEquals("java://m/ab is open", reasonOf("java://m/ab is open"));
        assertEquals("IN_USED", reasonOf("IN_USED"));
        assertEquals("no such name", reasonOf("no such name: java://m/a"));
        assertEquals("what java://m/a is", reasonOf("what java://m/a is"));
    }

    @Test
    void messageThatSaysNoMoreIsNoReason() {
        assertNull(reasonOf(null));
        assertNull(reasonOf(""));
        assertNull(reasonOf(" \n"));
        assertNull(reasonOf("IN_USE: java://m/a"));
        assertNull(reasonOf("java://m/a"));
    }

    @Test
    void reasonIsOneLineAndNotWithoutAnEnd() {
        assertEquals("one two three", reasonOf(" one\n\ttwo\r\nthree "));
        assertEquals(LastFailure.LONGEST, reasonOf("x".repeat(1_000_000)).length());
    }

    @Test
    void messageThatThrowsDoesNotHideTheNumber() {
        class Mute extends ProviderException {
            private static final long serialVersionUID = 1L;

            Mute() {
                super(ErrorCode.IN_USE, PLACE);
            }

            @Override
            public String getMessage() {
                throw new IllegalStateException("no words");
            }
        }
        new ProviderException(ErrorCode.IN_USE, PLACE, "earlier words").getErrorCodeNumber();
        assertEquals(10, new Mute().getErrorCodeNumber());
        assertNull(LastFailure.take().getReason());
    }
}
