package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.FileInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.ByteBuffer;

/**
 * Holds files of 1000 bytes called {@code source…}, and takes copies of them. After the first half of one, reading
 * waits until the other end of the named pipe {@code jstore.test.gate} is opened and closed. Then it continues, or
 * fails if {@code jstore.test.fail} is set.
 */
public final class HalfwayProvider extends EmptyProvider {
    private static final int SIZE = 1000;

    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        String name = location.getSegments().get(location.getSegments().size() - 1);
        return name.startsWith("source");
    }

    @Override
    public void createFile(StorageURI location) {}

    @Override
    public void removeFile(StorageURI location) {}

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) {}

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive) {
        return new HalfwayChannel(location);
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) {
        return new FileAttributes(SIZE, 0, true);
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) {
        return new HalfwayChannel(location);
    }

    private static final class HalfwayChannel implements ProviderChannel {
        private final StorageURI location;
        private int read;

        HalfwayChannel(StorageURI location) {
            this.location = location;
        }

        @Override
        public int read(ByteBuffer target) throws ProviderException {
            if (read == SIZE) {
                return -1;
            }
            if (read > 0) {
                waitAtGate();
            }
            target.put(new byte[SIZE / 2]);
            read += SIZE / 2;
            return SIZE / 2;
        }

        private void waitAtGate() throws ProviderException {
            try (InputStream gate = new FileInputStream(System.getProperty("jstore.test.gate"))) {
                while (gate.read() >= 0) {}
            } catch (IOException e) {
                throw new ProviderException(ErrorCode.UNKNOWN, location, e.getMessage(), e);
            }
            if (System.getProperty("jstore.test.fail") != null) {
                throw new ProviderException(ErrorCode.UNAVAILABLE, location);
            }
        }

        @Override
        public int write(ByteBuffer source) {
            int count = source.remaining();
            source.position(source.limit());
            return count;
        }

        @Override
        public long position() {
            return read;
        }

        @Override
        public void position(long position) {
            read = (int) position;
        }

        @Override
        public long size() {
            return SIZE;
        }

        @Override
        public void close() {}
    }
}
