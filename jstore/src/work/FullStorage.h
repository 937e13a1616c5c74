#pragma once

#include "base/Location.h"
#include "foundation/storage/provider/Exception.h"
#include "work/Context.h"

namespace jstore {

/// Reports the failure of the location and how much was done before it, and throws EndOfCommand.
[[noreturn]] void endByFullStorage(Context& context, const Location& location,
                                   const foundation::storage::provider::Exception& error);

/// Does something for the location. If the storage is full the command ends there: what comes next would fail too.
template <class Action>
decltype(auto) unlessFull(Context& context, const Location& location, const Action& action) {
    try {
        return action();
    } catch (const foundation::storage::provider::Exception& error) {
        if (error.code() != foundation::storage::provider::ErrorCode::StorageFull) {
            throw;
        }
        endByFullStorage(context, location, error);
    }
}

}  // namespace jstore
