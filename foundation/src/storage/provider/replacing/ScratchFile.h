#pragma once

#include "foundation/storage/provider/IProvider.h"
#include "storage/provider/replacing/ClosingStream.h"
#include "storage/provider/replacing/CreatedFile.h"
#include "storage/provider/replacing/StreamCopy.h"

namespace foundation::storage::provider::detail {

/// A new file that is to take a target's place in one step, and is removed at the end of the scope unless it did.
///
/// Streams on it have to be closed before it is moved or goes out of scope: not every back end moves or removes a file
/// that is open. The provider must outlive this object.
class ScratchFile final {
public:
    /// Creates one under a temporary name in the target's folder. All errors about it name the target, since nobody
    /// else knows the temporary name.
    [[nodiscard]] static ScratchFile beside(const IProvider& provider, const StorageIRI& target);

    /// Creates one at a location that the caller chose, which errors then name. AlreadyExists if something is there.
    [[nodiscard]] static ScratchFile at(const IProvider& provider, const StorageIRI& scratch, const StorageIRI& target);

    [[nodiscard]] const StorageIRI& target() const noexcept { return m_target; }
    [[nodiscard]] const StorageIRI& location() const noexcept { return m_file.location(); }

    /// Opens the file, empty, for reading and writing. InUse if another has opened a file at a chosen location first:
    /// that one keeps it.
    [[nodiscard]] ClosingStream open();

    /// Opens the file, lets `writer(StreamEnd)` write it, and closes it.
    template <class Writer>
    void fill(const Writer& writer) {
        ClosingStream to = open();
        named([&] {
            writer(StreamEnd{*to, location()});
            to.close();
        });
    }

    /// Moves the file over the target. After an error the target is as it was and the file still there.
    void replaceTarget(ReplacementPolicy policy);

    /// Removes the file and reports a failure, unless it has been moved or removed.
    void remove();

    /// Does something with the file; an error that is about it names what is to be named.
    template <class Action>
    [[nodiscard]] decltype(auto) named(const Action& action) const {
        return named(location(), m_name, action);
    }

private:
    ScratchFile(const IProvider& provider, const StorageIRI& location, StorageIRI target, StorageIRI name);

    template <class Action>
    static decltype(auto) named(const StorageIRI& location, const StorageIRI& name, const Action& action) {
        try {
            return action();
        } catch (const Exception& error) {
            if (error.location().normalized() != location.normalized()) {
                throw;
            }
            throw Exception(error.code(), name);
        }
    }

    /// Whether others know where the file is.
    [[nodiscard]] bool isChosen() const { return m_name == location(); }

    const IProvider* m_provider;
    StorageIRI m_target;
    StorageIRI m_name;
    CreatedFile m_file;
};

}  // namespace foundation::storage::provider::detail
