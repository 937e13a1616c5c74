package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.FileSystem;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.spi.FileSystemProvider;
import java.util.Map;
import java.util.function.UnaryOperator;
import java.util.zip.ZipException;
import java.util.zip.ZipFile;

/**
 * One zip archive on disk. Until it is closed it is only read; changes are kept in a {@link Spool}. From the first
 * change on, an {@link ArchiveDraft} keeps other writers away. Closing writes the new archive into the draft, reads it
 * back, and puts it in place of the old one, if that is still the file that was opened. If anything fails, the old
 * archive stays as it is, and no other file is left. Safe on any thread.
 */
final class Archive {
    private static final Map<String, ?> SETTINGS = Map.of("useTempFile", true);
    private static final int ATTEMPTS = 100;

    private final Path file;
    private final BasicFileAttributes opened;
    private final UnaryOperator<Content> medium;

    /** Open until the end, so that the system does not give this file's key to another file. */
    private final SteadyFile original;

    /** Lasts as long as the archive, although its file is opened and closed several times. */
    private final FileUses.Use use;

    private final ArchiveDisk disk;
    private final FileSystem system;
    private ArchiveDraft draft;

    private Archive(
            Path file,
            BasicFileAttributes opened,
            FileUses.Use use,
            FileSystemProvider provider,
            UnaryOperator<Content> medium)
            throws IOException {
        this.file = file;
        this.opened = opened;
        this.use = use;
        this.medium = medium;
        this.original = SteadyFile.reading(file);
        this.disk = new ArchiveDisk(file, original, new Spool(() -> UnnamedFile.open(file)));
        try {
            this.system = systemOn(disk, provider);
        } catch (IOException | RuntimeException e) {
            original.close();
            throw e;
        }
    }

    /**
     * Opens an archive.
     *
     * @param file its path, without links on the way
     * @param provider the platform's provider for archives
     */
    static Archive open(Path file, FileSystemProvider provider) throws IOException {
        return open(file, provider, UnaryOperator.identity());
    }

    /** As open, with a content of the test's own between the new archive and the disk. */
    static Archive open(Path file, FileSystemProvider provider, UnaryOperator<Content> medium) throws IOException {
        for (int attempt = 1; ; attempt++) {
            Archive archive = openOnce(file, provider, medium);
            if (attempt == ATTEMPTS || archive.isUnchanged()) {
                return archive;
            }
            // Someone has replaced it in between, so the file that was checked is not the one that was opened.
            archive.close();
        }
    }

    private static Archive openOnce(Path file, FileSystemProvider provider, UnaryOperator<Content> medium)
            throws IOException {
        BasicFileAttributes opened = attributesOf(file);
        FileUses.Use use = FileUses.reading(file);
        try {
            ArchiveNames.requireClear(file);
            return new Archive(file, opened, use, provider, medium);
        } catch (IOException | RuntimeException e) {
            use.close();
            throw e;
        }
    }

    private static FileSystem systemOn(ArchiveDisk disk, FileSystemProvider provider) throws IOException {
        try {
            return provider.newFileSystem(disk.path(), SETTINGS);
        } catch (UnsupportedOperationException e) {
            // The reason is given only for names that end in ".zip" or ".jar".
            throw new ZipException("Java's file system for archives cannot read it");
        }
    }

    Path file() {
        return file;
    }

    FileSystem system() {
        return system;
    }

    /**
     * Called before each change.
     *
     * @throws InUseException if someone else is writing the archive, or has written it since it was opened
     */
    synchronized void beginWriting() throws IOException {
        // After closing there is no draft; the file system itself then refuses the change.
        if (draft != null || system.isReadOnly() || !system.isOpen()) {
            return;
        }
        ArchiveDraft begun = newDraft();
        try {
            requireUnchanged();
            draft = begun;
        } finally {
            if (draft == null) {
                begun.close();
            }
        }
    }

    private ArchiveDraft newDraft() throws IOException {
        Interruption.PutOff interruption = new Interruption.PutOff();
        try {
            return ArchiveDraft.begin(file);
        } finally {
            interruption.end();
        }
    }

    /**
     * Writes the changes and closes the archive. They are in the archive when this returns, and lost when it throws.
     */
    synchronized void close() throws IOException {
        Interruption.PutOff interruption = new Interruption.PutOff();
        try {
            end();
        } finally {
            interruption.end();
        }
    }

    private void end() throws IOException {
        try (use;
                original;
                disk) {
            if (draft == null) {
                system.close();
            } else {
                write();
            }
        }
    }

    private void write() throws IOException {
        try (ArchiveDraft closing = draft) {
            ArchiveInventory contents = ArchiveInventory.of(system);
            closing.channel().truncate(0);
            SummedContent written = new SummedContent(medium.apply(new FileContent(closing.channel())));
            disk.beginResult(written);
            system.close();
            if (disk.isReplaced()) {
                if (!written.isSound()) {
                    throw new ZipException("the new archive does not read back as it was written");
                }
                publish(closing, contents);
            }
        }
    }

    /** Keeps the file that is read back open to the end: closing it earlier would drop the draft's lock. */
    private void publish(ArchiveDraft finished, ArchiveInventory contents) throws IOException {
        requireUnchanged();
        finished.requireOwn(file);
        KeptAttributes kept = KeptAttributes.of(file);
        kept.giveUserAttributes(finished.path());
        kept.giveAccessAnew(finished.path());
        finished.keepOwn(file);
        try (ZipFile written = new ZipFile(finished.path().toFile())) {
            ArchiveCheck.check(written, contents, file);
            finished.channel().force(/* metaData= */ true);
            replace(finished);
        }
        Durability.forceFolder(file.getParent());
    }

    private void replace(ArchiveDraft finished) throws IOException {
        if (FileUses.isWritten(new Found(null, file, attributesOf(file)))) {
            throw new InUseException(file.toString(), "the archive is open for writing as a file");
        }
        try (FileChannel locked = FileChannel.open(file, StandardOpenOption.READ, StandardOpenOption.WRITE)) {
            if (!ProcessLock.obtain(locked, file.getFileSystem(), /* exclusive= */ true)) {
                throw new InUseException(file.toString(), "another program has locked the archive");
            }
            requireUnchanged();
            finished.requireOwn(file);
            finished.replace(file);
        }
    }

    private boolean isUnchanged() throws IOException {
        BasicFileAttributes now = EntryKind.attributesOf(file);
        return now != null && FileIdentity.isUnchanged(opened, now);
    }

    private void requireUnchanged() throws IOException {
        if (!isUnchanged()) {
            throw new InUseException(
                    file.toString(), "another program has changed or removed the archive since it was opened");
        }
    }

    private static BasicFileAttributes attributesOf(Path file) throws IOException {
        return Files.readAttributes(file, BasicFileAttributes.class);
    }
}
