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
 * One zip archive on disk. It is only read until its end; what is changed lies in a {@link Spool}. From the first
 * change on an {@link ArchiveDraft} keeps other writers away. The end writes the new archive into that, reads it back,
 * and has it take the old one's place if that is still what was opened. Whatever fails leaves the old archive as it
 * is, and nothing else. Safe on any thread.
 */
final class Archive {
    private static final Map<String, ?> SETTINGS = Map.of("useTempFile", true);
    private static final int ATTEMPTS = 100;

    private final Path file;
    private final BasicFileAttributes opened;
    private final UnaryOperator<Content> medium;

    /** Open to the end, so that the system gives the key of this file to no other one. */
    private final SteadyFile original;

    /** Lasts as long as the archive, whose file is opened and closed more than once meanwhile. */
    private final OpenFiles.Use use;

    private final ArchiveDisk disk;
    private final FileSystem system;
    private ArchiveDraft draft;

    private Archive(
            Path file,
            BasicFileAttributes opened,
            OpenFiles.Use use,
            FileSystemProvider provider,
            UnaryOperator<Content> medium)
            throws IOException {
        this.file = file;
        this.opened = opened;
        this.use = use;
        this.medium = medium;
        this.original = SteadyFile.reading(file);
        this.disk = new ArchiveDisk(file, original, new Spool(() -> ArchiveSpool.open(file)));
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
     * @param file its place, without links on the way
     * @param provider the platform's for archives
     */
    static Archive open(Path file, FileSystemProvider provider) throws IOException {
        return open(file, provider, UnaryOperator.identity());
    }

    /** As open, with something between the new archive and the disk, for tests. */
    static Archive open(Path file, FileSystemProvider provider, UnaryOperator<Content> medium) throws IOException {
        for (int attempt = 1; ; attempt++) {
            Archive archive = openOnce(file, provider, medium);
            if (attempt == ATTEMPTS || archive.isUnchanged()) {
                return archive;
            }
            // Someone has replaced it in between, so what was looked at is not what was opened.
            archive.close();
        }
    }

    private static Archive openOnce(Path file, FileSystemProvider provider, UnaryOperator<Content> medium)
            throws IOException {
        BasicFileAttributes opened = attributesOf(file);
        OpenFiles.Use use = OpenFiles.reading(file);
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
     * To be called before each change.
     *
     * @throws InUseException if someone else writes the archive, or has since it was opened
     */
    synchronized void beginWriting() throws IOException {
        // What is closed has no draft any more, and whoever comes too late finds out from the file system.
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

    /** Ends it. What was changed is in the archive when this returns, and lost when it throws. */
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
            ArchiveContents contents = ArchiveContents.of(system);
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

    /** The file that was read back stays open to the end: closing it any time before would drop the draft's lock. */
    private void publish(ArchiveDraft finished, ArchiveContents contents) throws IOException {
        requireUnchanged();
        finished.requireOwn(file);
        KeptAttributes kept = KeptAttributes.of(file);
        kept.giveAttached(finished.path());
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
        if (OpenFiles.isWritten(new Found(null, file, attributesOf(file)))) {
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
