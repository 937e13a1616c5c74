package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;

/**
 * A storage with the fault that {@code jstore.test.fault} names, in the write whose number is
 * {@code jstore.test.write}.
 */
public final class FaultyProvider extends DelegatingProvider {
    private final String fault = System.getProperty("jstore.test.fault", "");
    private final int faultyWrite = Integer.getInteger("jstore.test.write", 0);

    private boolean is(String name) {
        return fault.equals(name);
    }

    private void failIf(String name, StorageURI location) throws ProviderException {
        if (is(name)) {
            throw new ProviderException(ErrorCode.STORAGE_FULL, location, name);
        }
    }

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive)
            throws ProviderException {
        return new FaultyChannel(location, super.getChannel(location, create, truncate, exclusive));
    }

    @Override
    public void createFile(StorageURI location) throws ProviderException {
        failIf("create", location);
        super.createFile(location);
    }

    @Override
    public void setLastModified(StorageURI location, long lastModified) throws ProviderException {
        failIf("time", location);
        super.setLastModified(location, lastModified);
    }

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        failIf("move", source);
        super.moveFile(source, target, replace);
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        ProviderChannel channel = super.getReadOnlyChannel(location);
        return is("read") ? new EndingChannel(location, channel) : channel;
    }

    /** Hidden files are what is being written. */
    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        failIf("attributes" + (location.getText().endsWith(".tmp") ? "" : "-of-source"), location);
        return super.getFileAttributes(location);
    }

    /** Fails in its second read. */
    private static final class EndingChannel extends DelegatingChannel {
        private final StorageURI location;
        private int reads;

        EndingChannel(StorageURI location, ProviderChannel real) {
            super(real);
            this.location = location;
        }

        @Override
        public int read(ByteBuffer target) throws ProviderException {
            if (++reads == 2) {
                throw new ProviderException(ErrorCode.UNAVAILABLE, location, "gone");
            }
            return super.read(target);
        }
    }

    /** Counts its writes. */
    private final class FaultyChannel extends DelegatingChannel {
        private static final int SHORT = 1000;

        private final StorageURI location;
        private int writes;

        FaultyChannel(StorageURI location, ProviderChannel real) {
            super(real);
            this.location = location;
        }

        @Override
        public int write(ByteBuffer source) throws ProviderException {
            if (++writes == faultyWrite || faultyWrite == 0) {
                return faulty(source);
            }
            return super.write(source);
        }

        private int faulty(ByteBuffer source) throws ProviderException {
            switch (fault) {
                case "fail":
                    throw new ProviderException(ErrorCode.STORAGE_FULL, location, "full");
                case "fail-halfway":
                    super.write(source.limit(source.position() + source.remaining() / 2));
                    throw new ProviderException(ErrorCode.STORAGE_FULL, location, "full");
                case "crash":
                    throw new IllegalStateException("a mistake in the back end");
                case "short":
                    return super.write(source.limit(Math.min(source.limit(), source.position() + SHORT)));
                case "lose":
                    return source.remaining();
                case "nothing":
                    return 0;
                case "too-much":
                    return super.write(source) + 1;
                default:
                    return super.write(source);
            }
        }

        @Override
        public void position(long position) throws ProviderException {
            if (is("no-position")) {
                throw new ProviderException(ErrorCode.NOT_SUPPORTED, location, fault);
            }
            super.position(position);
        }

        @Override
        public void close() throws ProviderException {
            super.close();
            failIf("close", location);
        }
    }
}
