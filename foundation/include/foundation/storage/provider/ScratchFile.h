#pragma once

#include "foundation/Export.h"
#include "foundation/storage/provider/ClosingStream.h"
#include "foundation/storage/provider/IProvider.h"
#include "foundation/storage/provider/StreamCopy.h"

namespace foundation::storage::provider {

/// A new file that is to take a target's place in one step. If that has not happened by the end of the scope, the file
/// is removed.
///
/// Close streams on it before it is moved or goes out of scope: not every back end moves or removes a file that is
/// open. The provider must outlive this object. Used by one thread at a time; blocks as the provider does.
class FOUNDATION_API ScratchFile final {
public:
    /// Creates the file in the target's folder under a hidden name, `.NAME.PID-NUMBER.tmp`: NAME is the beginning of
    /// the target's name, NUMBER has 16 hexadecimal digits.
    ///
    /// Throws as IProvider::createFile() does for the target. All errors about the file name the target, since nobody
    /// else knows the hidden name.
    [[nodiscard]] static ScratchFile beside(const IProvider& provider, const StorageIRI& target);

    /// Creates the file at a location that the caller chose, which errors then name. Throws as IProvider::createFile()
    /// does for that location: AlreadyExists if something is there.
    [[nodiscard]] static ScratchFile at(const IProvider& provider, const StorageIRI& scratch, const StorageIRI& target);

    ScratchFile(ScratchFile&& other) noexcept;
    ScratchFile& operator=(ScratchFile&&) = delete;
    /// Removes the file unless it has been moved or removed. Ignores failures.
    ~ScratchFile();

    [[nodiscard]] const StorageIRI& target() const noexcept { return m_target; }
    /// Where the file was created.
    [[nodiscard]] const StorageIRI& location() const noexcept { return m_location; }

    /// Opens the file, empty, for reading and writing. Throws as IProvider::openByteStream() does. InUse at a chosen
    /// location means that somebody else has opened the file first; it is then not removed.
    [[nodiscard]] ClosingStream open();

    /// Opens the file, lets `writer(StreamEnd)` write it, and closes it. Throws as open(), the writer and
    /// ByteStream::close() do.
    template <class Writer>
    void fill(const Writer& writer) {
        ClosingStream to = open();
        named([&] {
            writer(StreamEnd{*to, location()});
            to.close();
        });
    }

    /// Moves the file over the target. Throws as IProvider::moveFile() does; the target is then as it was and the file
    /// still there.
    void replaceTarget(ReplacementPolicy policy);

    /// Removes the file unless it has been moved or removed. Throws as IProvider::removeFile() does; the file is then
    /// left where it is.
    void remove();

    /// Returns what `action()` returns. An Exception that it throws about the file's location names the target instead,
    /// or the location that the caller chose.
    template <class Action>
    [[nodiscard]] decltype(auto) named(const Action& action) const {
        try {
            return action();
        } catch (const Exception& error) {
            if (error.location().normalized() != m_location.normalized()) {
                throw;
            }
            throw Exception(error.code(), m_name);
        }
    }

private:
    ScratchFile(const IProvider& provider, StorageIRI location, StorageIRI target, StorageIRI name);

    /// Whether the caller chose the location, so that others may know it.
    [[nodiscard]] bool isChosen() const { return m_name == m_location; }

    const IProvider* m_provider;
    StorageIRI m_location;
    StorageIRI m_target;
    StorageIRI m_name;    ///< what errors name
    bool m_mine = false;  ///< the file is there and to be removed
};

}  // namespace foundation::storage::provider
