#pragma once

#include <boost/log/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <functional>
#include <utility>

namespace storage::javaprovider::test {

/// While it lives, an action sees each log record at the moment it is written, and may throw as a failing sink does.
/// Adds a sink and changes no mask.
class RecordHook {
public:
    using Action = std::function<void(const boost::log::record_view&)>;

    explicit RecordHook(Action action)
        : m_sink(boost::make_shared<Sink>(boost::make_shared<Backend>(std::move(action)))) {
        boost::log::core::get()->add_sink(m_sink);
    }
    ~RecordHook() { boost::log::core::get()->remove_sink(m_sink); }

    RecordHook(const RecordHook&) = delete;
    RecordHook& operator=(const RecordHook&) = delete;

private:
    class Backend final : public boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
    public:
        explicit Backend(Action action) : m_action(std::move(action)) {}
        void consume(const boost::log::record_view& record) { m_action(record); }

    private:
        Action m_action;
    };
    using Sink = boost::log::sinks::synchronous_sink<Backend>;

    boost::shared_ptr<Sink> m_sink;
};

}  // namespace storage::javaprovider::test
