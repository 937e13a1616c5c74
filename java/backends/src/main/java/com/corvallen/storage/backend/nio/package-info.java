/**
 * A back end for anything that {@code java.nio.file} can reach: local folders, zip archives, and every file system
 * whose provider is on the class path.
 *
 * <p>{@link com.corvallen.storage.backend.nio.NioProvider} is the only public class; its documentation explains
 * locations and mounts. The other classes form these groups:
 *
 * <p><b>Mounts and names</b>, from a location to a path:
 *
 * <ul>
 *   <li>Mounts, Mount, MountProperty, SharedFileSystems: the trees that locations are resolved in;
 *   <li>Jail, LinkWalk: why no link leads out of a mount;
 *   <li>Names, RawNames: file names as text, and hidden names;
 *   <li>FileSystemTraits, Features: what file systems can do.
 * </ul>
 *
 * <p><b>Entries</b>, what is at a path:
 *
 * <ul>
 *   <li>Entry: a name that an operation acts on; Found: the existing target of a location;
 *   <li>EntryKind: missing, file or folder; FileIdentity: whether a file is the same, and unchanged;
 *   <li>OpenFolder: a folder that nobody can exchange while it is used.
 * </ul>
 *
 * <p><b>Operations</b> on entries:
 *
 * <ul>
 *   <li>Creation, Removal, Listing, StorageSpace;
 *   <li>FileMove, FolderMove: the two moves, with their checks; Renaming: moves within a file system;
 *   <li>TreeCopy, FileCopy, ByteCopy, ZipEntryCopy: moves by copy, from the tree down to the bytes;
 *   <li>CopiedEntries, SourceRemoval: remove from the source exactly what was copied; SpareName: removes a name only if
 *       it still belongs to the known file;
 *   <li>FileSystemLocks: creates in one step; Durability: forces data to the disk.
 * </ul>
 *
 * <p><b>Archives</b>, zip files that stay whole:
 *
 * <ul>
 *   <li>Archive: its life from opening to the new file; ArchiveDraft: the file that replaces it; ArchiveNames,
 *       ArchiveInventory, ArchiveCheck: what is in it, before and after;
 *   <li>ArchiveDisk, ArchiveDiskProvider, ArchiveDiskPath, ArchiveDiskAttributes: the disk that the platform's file
 *       system for archives works on;
 *   <li>Content, DelegatingContent, FileContent, SummedContent, SpooledContent: the bytes of a file there;
 *       ContentChannel: a channel over them;
 *   <li>Spool, UnnamedFile, SteadyFile: room for what is unpacked.
 * </ul>
 *
 * <p><b>Metadata</b>:
 *
 * <ul>
 *   <li>Attributes, Times: basic attributes;
 *   <li>AttributeViews, OwnerNames, UserAttributeTexts: extended attributes, as text;
 *   <li>KeptAttributes, UserAttributeValues, Privacy: what moves and replaced files keep, and what new files get.
 * </ul>
 *
 * <p><b>Open files</b>:
 *
 * <ul>
 *   <li>ChannelOpening, NioChannel, OpenFile, ChannelSet: channels, from opening to disposal;
 *   <li>FileUses, ProcessLock: who uses a file, within the process and between processes;
 *   <li>ContentCache, MemoryChannel: small files that are read again.
 * </ul>
 *
 * <p><b>Events</b>:
 *
 * <ul>
 *   <li>Watcher: the thread; Watch, WatchedFolder, EntryState: what is known; Changes: what a scan finds;
 *   <li>Signals, WatchSignals, KeyRing, KeyListeners: where to scan.
 * </ul>
 *
 * <p><b>Errors</b>:
 *
 * <ul>
 *   <li>Failures, ErrorTable, Reasons: from an exception to an error code and words;
 *   <li>InUseException, Interruption, Log.
 * </ul>
 */
package com.corvallen.storage.backend.nio;
