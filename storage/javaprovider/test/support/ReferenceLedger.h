#pragma once

#include <jni.h>

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "support/JniCall.h"

namespace storage::javaprovider::test {

/// The references that one scope holds: those made and not released, and how many others were released in it.
class ReferenceSet {
public:
    struct Made {
        ReferenceNumber number;
        std::string by;  ///< the calls it comes from
    };

    void add(const void* reference, Made made) { m_made[reference] = std::move(made); }
    /// Whether the reference was in the set; it no longer is.
    bool remove(const void* reference) { return m_made.erase(reference) != 0; }
    /// The reference, or null when it is not in the set.
    [[nodiscard]] const Made* find(const void* reference) const;
    [[nodiscard]] const std::unordered_map<const void*, Made>& made() const noexcept { return m_made; }

private:
    std::unordered_map<const void*, Made> m_made;
};

/// Counts the references that recorded calls make and release.
///
/// Local references belong to a thread and to a frame of it; the others to the process. Not safe to use from several
/// threads at once.
class ReferenceLedger {
public:
    /// Notes what a call that is about to be made releases, and the frame that it opens or closes.
    void beforeCall(const JniCall& call);
    /// Notes what a call made, and gives the number of its result, zero when it made nothing.
    ReferenceNumber afterCall(const JniCall& call);

    /// How many frames the thread has open. Frames are opened for the length of a call into Java too, since a native
    /// method that Java calls leaves its references to the machine.
    [[nodiscard]] std::size_t depth(ThreadNumber thread);
    void enterJava(ThreadNumber thread);
    void leaveJava(ThreadNumber thread, std::size_t depth);
    /// Opens the frame of a PushLocalFrame that succeeded.
    void pushFrame(ThreadNumber thread);

    /// The number of a live reference; zero for null and for references made elsewhere.
    [[nodiscard]] ReferenceNumber numberOf(ThreadNumber thread, const void* reference) const;

    [[nodiscard]] long locals(ThreadNumber thread) const;
    [[nodiscard]] long peakLocals(ThreadNumber thread) const;
    [[nodiscard]] long globals() const { return m_globals.live(); }
    [[nodiscard]] long weaks() const { return m_weaks.live(); }
    [[nodiscard]] long chars() const { return m_chars.live(); }
    [[nodiscard]] std::vector<std::string> leaks() const;
    /// The calls that each reference comes from that was live when its frame was popped, in order of popping and
    /// making; on all threads, since the last time that this was asked.
    [[nodiscard]] std::vector<std::string> takeLeftToFrames() { return std::exchange(m_left, {}); }

    /// Forgets all but what was left to frames.
    void clear();

private:
    struct Shared {
        ReferenceSet set;
        long foreign = 0;  ///< released without having been made here

        void release(const void* reference);
        [[nodiscard]] long live() const { return static_cast<long>(set.made().size()) - foreign; }
    };
    struct Frame {
        ReferenceSet set;
        bool pushed = false;  ///< by PushLocalFrame
    };
    struct Locals {
        std::vector<Frame> frames = std::vector<Frame>(1);
        long foreign = 0;
        long peak = 0;  ///< the most that were live at a time

        void release(const void* reference);
        void popFrame();
        [[nodiscard]] long live() const;
    };

    /// Notes what is left in a frame but `kept`, which moves to the outer one.
    void noteLeft(const Frame& frame, const void* kept);
    [[nodiscard]] const ReferenceSet::Made* find(ThreadNumber thread, const void* reference) const;
    [[nodiscard]] std::string originOf(const JniCall& call) const;
    /// Where a reference that the function makes belongs; null when it makes none.
    [[nodiscard]] ReferenceSet* setFor(const JniCall& call);

    std::map<ThreadNumber, Locals> m_locals;
    Shared m_globals;
    Shared m_weaks;
    Shared m_chars;
    std::vector<std::string> m_left;
    ReferenceNumber m_last = 0;
};

}  // namespace storage::javaprovider::test
