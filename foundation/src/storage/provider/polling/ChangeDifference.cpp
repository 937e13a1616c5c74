#include "storage/provider/polling/ChangeDifference.h"

namespace foundation::storage::provider::detail {

namespace {

using events::Kind;

class Difference {
public:
    void tell(Kind kind, const ChildState& child) { m_events.push_back({kind, child.state.type, child.name}); }
    void tellSelf(Kind kind, EntryType type) { m_events.push_back({kind, type, std::nullopt}); }

    void allGone(const ChangeSnapshot& before) {
        for (const ChildState& child : before.children) {
            tell(Kind::ChildRemoved, child);
        }
        tellSelf(Kind::SelfRemoved, before.self->type);
    }

    void allThere(const ChangeSnapshot& after) {
        tellSelf(Kind::SelfModified, after.self->type);
        for (const ChildState& child : after.children) {
            tell(Kind::ChildAdded, child);
        }
    }

    /// Of the same name.
    void stayed(const ChildState& before, const ChildState& after) {
        if (before.state.type != after.state.type) {
            tell(Kind::ChildRemoved, before);
            tell(Kind::ChildAdded, after);
        } else if (before.state.isChanged(after.state)) {
            tell(Kind::ChildModified, after);
        }
    }

    void children(const std::vector<ChildState>& before, const std::vector<ChildState>& after) {
        auto was = before.begin();
        auto is = after.begin();
        while (was != before.end() || is != after.end()) {
            if (is == after.end() || (was != before.end() && was->name < is->name)) {
                tell(Kind::ChildRemoved, *was++);
            } else if (was == before.end() || is->name < was->name) {
                tell(Kind::ChildAdded, *is++);
            } else {
                stayed(*was++, *is++);
            }
        }
    }

    [[nodiscard]] bool childrenCameOrWent() const {
        for (const ChangeEvent& event : m_events) {
            if (event.kind != Kind::ChildModified) {
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] std::vector<ChangeEvent> take() { return std::move(m_events); }

private:
    std::vector<ChangeEvent> m_events;
};

bool isSameKind(const ChangeSnapshot& before, const ChangeSnapshot& after) {
    return before.self && after.self && before.self->type == after.self->type;
}

}  // namespace

std::vector<ChangeEvent> difference(const ChangeSnapshot& before, const ChangeSnapshot& after) {
    Difference result;
    if (isSameKind(before, after)) {
        result.children(before.children, after.children);
        if (before.self->isChanged(*after.self) && !result.childrenCameOrWent()) {
            result.tellSelf(Kind::SelfModified, after.self->type);
        }
        return result.take();
    }
    if (before.self) {
        result.allGone(before);
    }
    if (after.self) {
        result.allThere(after);
    }
    return result.take();
}

}  // namespace foundation::storage::provider::detail
