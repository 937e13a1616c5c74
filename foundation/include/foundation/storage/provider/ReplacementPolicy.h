#pragma once

namespace foundation::storage::provider {

/// What a move or a copy does when something is at the destination already. A move onto itself does nothing under any
/// policy.
///
/// A back end in Java replaces a file only with a file, and a folder only with a folder: it throws NotAFile when a file
/// would replace a folder, NotAFolder when a folder would replace a file.
///
/// **How copyFile() writes**, as IProvider implements it. An existing file is overwritten in place: it keeps its
/// identity, names, permissions and attributes, and a link to it is followed. A new file is written under a temporary
/// hidden name and moved into place when it is complete. After an error, the copy has left nothing at the destination.
/// What others put there in the meantime is kept or replaced according to the policy, never removed. If moveFile() is
/// NotSupported, the new file is written in place, and an error may leave part of it there.
///
/// **What happens to a replaced file.** By default IProvider::copyFileAtomic(), IProvider::truncateToSize() and
/// TransactionalStream::commit() write a new file, then call moveFile() with a replacing policy and the location that
/// the caller named.
///  - If the back end's moveFile() provides it, the new file takes over the permissions and the user's attributes of
///    the replaced one, and a symbolic link at the location remains and leads to the new file. NioProvider's does.
///  - It is a different file. Other names (hard links) of the replaced file keep the old content. A stream that was
///    opened earlier stays with the old file, and what it writes from then on is lost. copyFile() and openByteStream(),
///    in contrast, write to the existing file, with all its names.
///  - While it is being written, it has a temporary hidden name in the folder of the location; if the location is a
///    link, in the folder of the link. Anyone who may read a new file of this process may read it there.
///  - Readers in every process find either the old content or all of the new content, even after an error or when the
///    process dies, as far as moveFile() is atomic. This does not cover a power failure, because nothing in IProvider
///    forces bytes to the disk. Unless the back end prevents it, the file may afterwards have its old content again, or
///    be empty or incomplete.
enum class ReplacementPolicy : int {
    KeepExisting = 0,         ///< the operation fails with AlreadyExists
    ReplaceExisting = 1,      ///< what is there is replaced
    ReplaceExistingFile = 2,  ///< a file is replaced, but never a folder
};

}  // namespace foundation::storage::provider
