package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import java.nio.ByteBuffer;

/** A channel that leaves everything to another one. */
class DelegatingChannel implements ProviderChannel {
    protected final ProviderChannel real;

    DelegatingChannel(ProviderChannel real) {
        this.real = real;
    }

    @Override
    public int read(ByteBuffer target) throws ProviderException {
        return real.read(target);
    }

    @Override
    public int write(ByteBuffer source) throws ProviderException {
        return real.write(source);
    }

    @Override
    public long position() throws ProviderException {
        return real.position();
    }

    @Override
    public void position(long position) throws ProviderException {
        real.position(position);
    }

    @Override
    public long size() throws ProviderException {
        return real.size();
    }

    @Override
    public void close() throws ProviderException {
        real.close();
    }
}
