package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.io.File;
import java.io.IOException;
import java.nio.file.Path;

/** A process with little memory that removes a folder. */
final class SmallHeap {
    private SmallHeap() {}

    static Process removing(StorageURI folder, int megabytes) throws IOException {
        String classPath = String.join(
                File.pathSeparator,
                OtherProcess.place(NioProvider.class),
                OtherProcess.place(StorageProvider.class),
                OtherProcess.place(SmallHeap.class));
        return new ProcessBuilder(
                        Path.of(System.getProperty("java.home"), "bin", "java").toString(),
                        "-Xmx" + megabytes + "m",
                        "-cp",
                        classPath,
                        SmallHeap.class.getName(),
                        folder.getText())
                .inheritIO()
                .start();
    }

    public static void main(String[] args) throws ProviderException {
        NioProvider provider = new NioProvider();
        provider.removeFolderRecursively(new StorageURI(args[0]));
        provider.dispose();
    }
}
