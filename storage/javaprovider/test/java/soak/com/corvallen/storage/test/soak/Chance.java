package com.corvallen.storage.test.soak;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.util.SplittableRandom;
import java.util.concurrent.atomic.AtomicLong;

/** What happens at random in the soak: repeatable for one thread, as the threads come along for several. */
final class Chance {
    private static final int PROVIDER_FAILURE_ONE_IN = 8;
    private static final int OTHER_FAILURE_ONE_IN = 64;
    private static final ErrorCode[] CODES = ErrorCode.values();
    private static final AtomicLong SEED = new AtomicLong(1);

    private static final ThreadLocal<SplittableRandom> RANDOM =
            ThreadLocal.withInitial(() -> new SplittableRandom(SEED.getAndAdd(0x9E3779B97F4A7C15L)));

    private Chance() {}

    /** Sets what the numbers of threads that have asked for none yet begin from. */
    static void seed(long seed) {
        SEED.set(seed);
    }

    static int below(int bound) {
        return RANDOM.get().nextInt(bound);
    }

    /** Fails now and then, with an exception of the contract or with one that no contract knows. */
    static void mayFail(StorageURI location) throws ProviderException {
        if (below(PROVIDER_FAILURE_ONE_IN) == 0) {
            throw new ProviderException(CODES[below(CODES.length)], below(4) == 0 ? null : location);
        }
        if (below(OTHER_FAILURE_ONE_IN) == 0) {
            throwAnother();
        }
    }

    private static void throwAnother() {
        switch (below(4)) {
            case 0:
                throw new IllegalStateException("at random");
            case 1:
                throw new NullPointerException();
            case 2:
                throw new OutOfMemoryError("only said so");
            default:
                throw new StackOverflowError();
        }
    }
}
