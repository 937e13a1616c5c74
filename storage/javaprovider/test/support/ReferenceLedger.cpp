#include "support/ReferenceLedger.h"

#include <algorithm>
#include <utility>

namespace storage::javaprovider::test {

const ReferenceSet::Made* ReferenceSet::find(const void* reference) const {
    const auto found = m_made.find(reference);
    return found == m_made.end() ? nullptr : &found->second;
}

void ReferenceLedger::Shared::release(const void* reference) {
    if (!set.remove(reference)) {
        ++foreign;
    }
}

void ReferenceLedger::Locals::release(const void* reference) {
    for (auto frame = frames.rbegin(); frame != frames.rend(); ++frame) {
        if (frame->set.remove(reference)) {
            return;
        }
    }
    ++foreign;
}

void ReferenceLedger::Locals::popFrame() {
    if (frames.back().pushed) {
        frames.pop_back();
    } else {
        // The frame was pushed unseen, so what was made since belongs to it.
        frames.back().set = {};
    }
}

void ReferenceLedger::noteLeft(const Frame& frame, const void* kept) {
    std::map<ReferenceNumber, std::string> lines;
    for (const auto& [reference, made] : frame.set.made()) {
        if (reference != kept) {
            lines[made.number] = made.by;
        }
    }
    for (auto& [number, line] : lines) {
        m_left.push_back(std::move(line));
    }
}

void ReferenceLedger::beforeCall(const JniCall& call) {
    if (call.function->effect == ReferenceEffect::PopsFrame) {
        Locals& locals = m_locals[call.thread];
        noteLeft(locals.frames.back(), call.target);
        locals.popFrame();
        return;
    }
    if (call.released == nullptr) {
        return;
    }
    switch (call.function->effect) {
        case ReferenceEffect::FreesLocal:
            return m_locals[call.thread].release(call.released);
        case ReferenceEffect::FreesGlobal:
            return m_globals.release(call.released);
        case ReferenceEffect::FreesWeak:
            return m_weaks.release(call.released);
        case ReferenceEffect::FreesChars:
            return m_chars.release(call.released);
        default:
            return;
    }
}

ReferenceNumber ReferenceLedger::afterCall(const JniCall& call) {
    if (call.result == nullptr) {
        return 0;
    }
    ReferenceSet* set = setFor(call);
    if (set == nullptr) {
        return 0;
    }
    set->add(call.result, {++m_last, originOf(call)});
    if (call.function->effect == ReferenceEffect::MakesLocal) {
        Locals& locals = m_locals[call.thread];
        locals.peak = std::max(locals.peak, locals.live());
    }
    return m_last;
}

ReferenceSet* ReferenceLedger::setFor(const JniCall& call) {
    switch (call.function->effect) {
        case ReferenceEffect::MakesLocal:
        case ReferenceEffect::PopsFrame:
            return &m_locals[call.thread].frames.back().set;
        case ReferenceEffect::MakesGlobal:
            return &m_globals.set;
        case ReferenceEffect::MakesWeak:
            return &m_weaks.set;
        case ReferenceEffect::MakesChars:
            return &m_chars.set;
        default:
            return nullptr;
    }
}

std::string ReferenceLedger::originOf(const JniCall& call) const {
    const bool copies = call.name().starts_with("New") && call.name().ends_with("Ref");
    const bool derives = copies || call.name() == "GetObjectClass";
    const ReferenceSet::Made* source = derives ? find(call.thread, call.target) : nullptr;
    return source == nullptr ? call.toString() : call.toString() + " of " + source->by;
}

std::size_t ReferenceLedger::depth(ThreadNumber thread) { return m_locals[thread].frames.size(); }

void ReferenceLedger::enterJava(ThreadNumber thread) { m_locals[thread].frames.emplace_back(); }

void ReferenceLedger::leaveJava(ThreadNumber thread, std::size_t depth) {
    auto& frames = m_locals[thread].frames;
    while (frames.size() > depth) {
        frames.pop_back();
    }
}

void ReferenceLedger::pushFrame(ThreadNumber thread) {
    Frame frame;
    frame.pushed = true;
    m_locals[thread].frames.push_back(std::move(frame));
}

const ReferenceSet::Made* ReferenceLedger::find(ThreadNumber thread, const void* reference) const {
    if (const auto locals = m_locals.find(thread); locals != m_locals.end()) {
        for (const Frame& frame : locals->second.frames) {
            if (const auto* made = frame.set.find(reference)) {
                return made;
            }
        }
    }
    const auto* global = m_globals.set.find(reference);
    return global != nullptr ? global : m_weaks.set.find(reference);
}

ReferenceNumber ReferenceLedger::numberOf(ThreadNumber thread, const void* reference) const {
    const auto* made = find(thread, reference);
    return made == nullptr ? 0 : made->number;
}

long ReferenceLedger::Locals::live() const {
    long live = -foreign;
    for (const Frame& frame : frames) {
        live += static_cast<long>(frame.set.made().size());
    }
    return live;
}

long ReferenceLedger::locals(ThreadNumber thread) const {
    const auto found = m_locals.find(thread);
    return found == m_locals.end() ? 0 : found->second.live();
}

long ReferenceLedger::peakLocals(ThreadNumber thread) const {
    const auto found = m_locals.find(thread);
    return found == m_locals.end() ? 0 : found->second.peak;
}

namespace {

/// Oldest first, so that the first line names the first call that leaked.
void describe(const ReferenceSet& set, const std::string& kind, std::map<ReferenceNumber, std::string>& lines) {
    for (const auto& [reference, made] : set.made()) {
        lines[made.number] = kind + " made by " + made.by;
    }
}

}  // namespace

std::vector<std::string> ReferenceLedger::leaks() const {
    std::map<ReferenceNumber, std::string> lines;
    for (const auto& [thread, locals] : m_locals) {
        for (const Frame& frame : locals.frames) {
            describe(frame.set, "local reference of thread " + std::to_string(thread), lines);
        }
    }
    describe(m_globals.set, "global reference", lines);
    describe(m_weaks.set, "weak global reference", lines);
    describe(m_chars.set, "string characters", lines);
    std::vector<std::string> texts;
    for (auto& [number, text] : lines) {
        texts.push_back(std::move(text));
    }
    return texts;
}

void ReferenceLedger::clear() {
    // Numbers go on, so that a record kept by a test never names a later reference.
    m_locals.clear();
    m_globals = {};
    m_weaks = {};
    m_chars = {};
}

}  // namespace storage::javaprovider::test
