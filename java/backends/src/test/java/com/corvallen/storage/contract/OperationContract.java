package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.Callable;
import java.util.concurrent.CyclicBarrier;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.api.function.Executable;

/** What the cases of all operations share: a fresh storage, and helpers for its content. */
@Timeout(60)
public abstract class OperationContract {
    private final StorageUnderTest.Opener opener;

    /** The storage of the running test. */
    protected StorageUnderTest storage;

    /** Its provider. */
    protected StorageProvider provider;

    protected OperationContract(StorageUnderTest.Opener opener) {
        this.opener = opener;
    }

    @BeforeEach
    final void openStorage() throws Exception {
        storage = opener.open();
        provider = storage.provider();
    }

    @AfterEach
    final void closeStorage() throws Exception {
        storage.tearDown();
    }

    protected final StorageURI at(String... names) throws ProviderException {
        return storage.at(names);
    }

    /** Makes a file with a content. */
    protected final StorageURI file(String content, String... names) throws Exception {
        StorageURI location = at(names);
        provider.createFile(location);
        storage.write(location, content);
        return location;
    }

    /** Makes a folder; its parent must exist. */
    protected final StorageURI folder(String... names) throws Exception {
        StorageURI location = at(names);
        provider.createFolder(location);
        return location;
    }

    protected final void assertFile(String content, StorageURI location) throws Exception {
        assertTrue(provider.fileExists(location), () -> location + " is not a file");
        assertEquals(content, storage.read(location));
    }

    protected final void assertFolder(StorageURI location) throws ProviderException {
        assertTrue(provider.folderExists(location), () -> location + " is not a folder");
    }

    protected final void assertMissing(StorageURI location) throws ProviderException {
        assertFalse(provider.fileExists(location), () -> location + " is a file");
        assertFalse(provider.folderExists(location), () -> location + " is a folder");
    }

    /** Asserts that an operation fails with a code and reports this location. */
    protected static void assertFails(ErrorCode code, StorageURI location, Executable operation) {
        ProviderException failure = assertThrows(ProviderException.class, operation);
        assertEquals(code, failure.getErrorCode(), failure.getMessage());
        assertEquals(location.getText(), failure.getLocationString(), failure.getMessage());
    }

    /** Runs a job at the same time for each number from 0; returns the code that each failed with, null for none. */
    protected static List<ErrorCode> atTheSameTime(int count, Job job) throws Exception {
        ExecutorService threads = Executors.newFixedThreadPool(count);
        try {
            CyclicBarrier start = new CyclicBarrier(count);
            List<Callable<ErrorCode>> calls = new ArrayList<>();
            for (int i = 0; i < count; i++) {
                int number = i;
                calls.add(() -> {
                    start.await();
                    return codeOf(job, number);
                });
            }
            List<ErrorCode> codes = new ArrayList<>();
            for (Future<ErrorCode> result : threads.invokeAll(calls)) {
                codes.add(result.get());
            }
            return codes;
        } finally {
            threads.shutdownNow();
        }
    }

    private static ErrorCode codeOf(Job job, int number) throws Exception {
        try {
            job.run(number);
            return null;
        } catch (ProviderException e) {
            return e.getErrorCode();
        }
    }

    /** A job that runs several times at once. */
    @FunctionalInterface
    protected interface Job {
        void run(int number) throws Exception;
    }

    /** Asserts that exactly one succeeded and all others failed with a code. */
    protected static void assertOneWinner(ErrorCode others, List<ErrorCode> codes) {
        assertEquals(1, codes.stream().filter(code -> code == null).count(), codes::toString);
        assertEquals(codes.size() - 1, codes.stream().filter(others::equals).count(), codes::toString);
    }
}
