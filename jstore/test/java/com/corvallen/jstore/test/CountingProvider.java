package com.corvallen.jstore.test;

import com.corvallen.storage.backend.nio.NioProvider;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageProvider;
import java.io.IOException;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Proxy;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.TreeMap;
import java.util.stream.Collectors;

/** Counts what is asked of it and of its channels, and writes it at its end to the file {@code jstore.test.counts}. */
public final class CountingProvider extends DelegatingProvider implements AutoCloseable {
    private static final Map<String, Integer> COUNTS = new TreeMap<>();

    public CountingProvider() {
        super(counted(StorageProvider.class, new NioProvider()));
    }

    private static <T> T counted(Class<T> type, T real) {
        Class<?>[] types = {type};
        return type.cast(Proxy.newProxyInstance(type.getClassLoader(), types, (proxy, method, values) -> {
            count(type.equals(ProviderChannel.class) ? "channel." + method.getName() : method.getName());
            try {
                Object result = method.invoke(real, values);
                return result instanceof ProviderChannel
                        ? counted(ProviderChannel.class, (ProviderChannel) result)
                        : result;
            } catch (InvocationTargetException e) {
                throw e.getCause();
            }
        }));
    }

    private static synchronized void count(String name) {
        COUNTS.merge(name, 1, Integer::sum);
    }

    @Override
    public void close() throws IOException {
        synchronized (CountingProvider.class) {
            Files.write(
                    Path.of(System.getProperty("jstore.test.counts")),
                    COUNTS.entrySet().stream()
                            .map(entry -> entry.getKey() + " " + entry.getValue())
                            .collect(Collectors.toList()));
        }
    }
}
