package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.net.URI;
import java.net.URISyntaxException;
import java.nio.file.Files;
import java.nio.file.spi.FileSystemProvider;
import java.util.Locale;
import java.util.ServiceLoader;
import java.util.stream.Stream;

/** Opens a mount as the system property {@code storage.mount.<name>} says. */
final class MountProperty {
    private static final String PREFIX = "storage.mount.";

    private final String property;
    private final String value;
    private final StorageURI location;

    private MountProperty(String name, StorageURI location) {
        this.property = PREFIX + name;
        this.value = System.getProperty(property);
        this.location = location;
    }

    static Mount open(String name, StorageURI location) throws ProviderException {
        return new MountProperty(name, location).open();
    }

    /**
     * Returns the schemes of all configured mounts in lower case. A value without a scheme is left out: it serves no
     * location.
     */
    static Stream<String> schemes() {
        return System.getProperties().stringPropertyNames().stream()
                .filter(property -> property.startsWith(PREFIX))
                .map(property -> System.getProperty(property, ""))
                .filter(value -> value.indexOf(':') > 0)
                .map(value -> value.substring(0, value.indexOf(':')).toLowerCase(Locale.ROOT));
    }

    private Mount open() throws ProviderException {
        if (value == null) {
            throw new ProviderException(
                    ErrorCode.UNAVAILABLE, location, "no such mount: the system property " + property + " is not set");
        }
        URI uri = parse();
        FileSystemProvider provider = providerOf(uri.getScheme());
        try {
            return open(provider, uri);
        } catch (IOException | RuntimeException e) {
            throw failure("cannot be opened: " + Reasons.of(e), e);
        }
    }

    private Mount open(FileSystemProvider provider, URI uri) throws IOException, ProviderException {
        SharedFileSystems.Lease lease = SharedFileSystems.lease(provider, uri);
        try {
            if (!Files.isDirectory(lease.root())) {
                throw failure("is not a folder", null);
            }
            return Mount.jailed(lease);
        } catch (IOException | RuntimeException | ProviderException e) {
            lease.close();
            throw e;
        }
    }

    private URI parse() throws ProviderException {
        try {
            URI uri = new URI(value);
            if (uri.isAbsolute()) {
                return uri;
            }
        } catch (URISyntaxException e) {
            throw failure("is not a URI", e);
        }
        throw failure("is not a URI with a scheme, such as file:///srv/data", null);
    }

    /** Asks this class's own loader too: the installed providers are those of the system class loader only. */
    private FileSystemProvider providerOf(String scheme) throws ProviderException {
        for (FileSystemProvider provider : FileSystemProvider.installedProviders()) {
            if (provider.getScheme().equalsIgnoreCase(scheme)) {
                return provider;
            }
        }
        ClassLoader own = MountProperty.class.getClassLoader();
        for (FileSystemProvider provider : ServiceLoader.load(FileSystemProvider.class, own)) {
            if (provider.getScheme().equalsIgnoreCase(scheme)) {
                return provider;
            }
        }
        throw failure("needs a file-system provider for \"" + scheme + "\", and none is on the class path", null);
    }

    private ProviderException failure(String why, Throwable cause) {
        return new ProviderException(
                ErrorCode.UNAVAILABLE, location, property + "=" + value + " " + why, cause);
    }
}
