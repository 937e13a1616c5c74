package com.corvallen.storage.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.File;
import java.io.IOException;
import java.io.InputStream;
import java.net.URL;
import java.net.URLClassLoader;

/** Makes exceptions whose classes come from class loaders other than that of the class path. */
public final class ForeignErrors {
    private ForeignErrors() {}

    /** A ProviderException of a back end's own, whose class its loader defines. */
    public static final class BackEndError extends ProviderException {
        private static final long serialVersionUID = 1L;

        /** NOT_FOUND at the location. */
        public BackEndError(String location) {
            super(ErrorCode.NOT_FOUND, new StorageURI(location));
        }
    }

    /** An exception that is no ProviderException, whose class its loader defines. */
    public static final class BackEndBug extends RuntimeException {
        private static final long serialVersionUID = 1L;

        /** An exception with the message. */
        public BackEndBug(String message) {
            super(message);
        }
    }

    /** A BackEndError of a loader of its own, which finds the contract on the class path. */
    public static Object backEndError(String location) throws Exception {
        return make(new CopyingLoader(false), BackEndError.class, location);
    }

    /** The same with a loader that takes slashes for dots, and so knows the contract by either name. */
    public static Object backEndErrorOfTolerantLoader(String location) throws Exception {
        return make(new CopyingLoader(true), BackEndError.class, location);
    }

    /** A BackEndBug of a loader that takes slashes for dots. */
    public static Object backEndBugOfTolerantLoader(String message) throws Exception {
        return make(new CopyingLoader(true), BackEndBug.class, message);
    }

    /** A ProviderException of a loader with a contract of its own, from the jar. */
    public static Object errorOfOwnContract(String contractJar) throws Exception {
        URL[] urls = {new File(contractJar).toURI().toURL()};
        try (URLClassLoader loader = new URLClassLoader(urls, ClassLoader.getPlatformClassLoader())) {
            Class<?> code = loader.loadClass(ErrorCode.class.getName());
            Class<?> uri = loader.loadClass(StorageURI.class.getName());
            return loader.loadClass(ProviderException.class.getName())
                    .getConstructor(code, uri, String.class)
                    .newInstance(code.getField("NOT_FOUND").get(null), null, "from another contract");
        }
    }

    private static Object make(ClassLoader loader, Class<?> original, String text) throws Exception {
        return loader.loadClass(original.getName()).getConstructor(String.class).newInstance(text);
    }

    /** Defines the exceptions of this class anew; everything else comes from the class path. */
    private static final class CopyingLoader extends ClassLoader {
        private final boolean takesSlashes;

        CopyingLoader(boolean takesSlashes) {
            super(CopyingLoader.class.getClassLoader());
            this.takesSlashes = takesSlashes;
        }

        @Override
        protected Class<?> loadClass(String name, boolean resolve) throws ClassNotFoundException {
            String wanted = takesSlashes ? name.replace('/', '.') : name;
            if (!wanted.startsWith(ForeignErrors.class.getName() + "$BackEnd")) {
                return super.loadClass(wanted, resolve);
            }
            synchronized (getClassLoadingLock(wanted)) {
                Class<?> defined = findLoadedClass(wanted);
                return defined != null ? defined : define(wanted);
            }
        }

        private Class<?> define(String name) throws ClassNotFoundException {
            try (InputStream in = getResourceAsStream(name.replace('.', '/') + ".class")) {
                byte[] bytes = in.readAllBytes();
                return defineClass(name, bytes, 0, bytes.length);
            } catch (IOException e) {
                throw new ClassNotFoundException(name, e);
            }
        }
    }
}
