package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.ByteBuffer;
import java.nio.file.Files;
import java.util.Random;
import java.util.function.BiFunction;
import java.util.function.UnaryOperator;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** A disk that fails, or corrupts data, while the new archive is written. */
class ArchiveFaultsTest extends ArchiveCase {
    private final PrintStream errors = System.err;

    /** The platform's file system prints the failures that it ignores. */
    @BeforeEach
    void silence() {
        System.setErr(new PrintStream(OutputStream.nullOutputStream()));
    }

    @AfterEach
    void restore() {
        System.setErr(errors);
    }

    /** A disk whose n-th write fails, the first being 1; later writes succeed. */
    private abstract static class FaultyContent extends DelegatingContent {
        private int untilFault;

        FaultyContent(Content content, int fault) {
            super(content);
            this.untilFault = fault;
        }

        abstract void fail(ByteBuffer source) throws IOException;

        boolean hasFailed() {
            return untilFault <= 0;
        }

        @Override
        public int write(ByteBuffer source, long position) throws IOException {
            untilFault--;
            if (untilFault == 0) {
                fail(source);
            }
            return super.write(source, position);
        }
    }

    private static FaultyContent refusing(Content content, int fault, String words) {
        return new FaultyContent(content, fault) {
            @Override
            void fail(ByteBuffer source) throws IOException {
                throw new IOException(words);
            }
        };
    }

    /** Silently flips one bit of what is written. */
    private static FaultyContent lying(Content content, int fault) {
        return new FaultyContent(content, fault) {
            @Override
            void fail(ByteBuffer source) {
                int at = source.position() + source.remaining() / 2;
                source.put(at, (byte) (source.get(at) ^ 1));
            }
        };
    }

    private Archive changed(UnaryOperator<Content> disk) throws Exception {
        Archive opened = Archive.open(archive, NioStorage.archives(), disk);
        opened.beginWriting();
        byte[] noise = new byte[20_000];
        new Random(1).nextBytes(noise);
        for (String name : new String[] {"/a", "/b", "/c"}) {
            Files.write(opened.system().getPath(name), noise);
        }
        return opened;
    }

    /** Lets one write after the other fail until there are no more; returns how many there are. */
    private int eachWrite(BiFunction<Content, Integer, FaultyContent> disk) throws Exception {
        for (int fault = 1; ; fault++) {
            int number = fault;
            FaultyContent[] used = new FaultyContent[1];
            Archive opened = changed(content -> used[0] = disk.apply(content, number));
            if (!ends(opened, used)) {
                return fault - 1;
            }
            assertUntouched();
        }
    }

    private boolean ends(Archive opened, FaultyContent[] used) throws Exception {
        try {
            opened.close();
        } catch (IOException e) {
            assertTrue(used[0].hasFailed(), e::toString);
            return true;
        }
        assertTrue(!used[0].hasFailed(), "a fault went unseen, with " + used[0].untilFault + " writes after it");
        return false;
    }

    @Test
    void noFailureToWriteIsOverlooked() throws Exception {
        int writes = eachWrite((content, fault) -> refusing(content, fault, "Input/output error"));
        assertTrue(writes >= 4, writes + " writes");
        assertEquals(4, files().size());
    }

    @Test
    void failureHasTheWordsOfTheSystem() throws Exception {
        Archive opened = changed(content -> refusing(content, 2, "No space left on device"));
        IOException failure = assertThrows(IOException.class, opened::close);
        assertEquals(ErrorCode.STORAGE_FULL, ErrorTable.codeOf(failure));
        assertUntouched();
    }

    @Test
    void noDamageIsOverlooked() throws Exception {
        int writes = eachWrite(ArchiveFaultsTest::lying);
        assertTrue(writes >= 4, writes + " writes");
    }
}
