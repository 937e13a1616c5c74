#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "foundation/storage/provider/Exception.h"

namespace foundation::test {

/// Expects `action` to throw that error about that location.
inline void expectError(storage::provider::ErrorCode code, const storage::provider::StorageIRI& location,
                        const std::function<void()>& action) {
    try {
        action();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const storage::provider::Exception& error) {
        EXPECT_EQ(error.code(), code) << error.what();
        EXPECT_EQ(error.location(), location);
    }
}

}  // namespace foundation::test
