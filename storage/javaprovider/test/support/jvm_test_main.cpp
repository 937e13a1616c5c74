#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "support/JvmEnvironment.h"

// Compiled into each test program that calls Java; JVM_TEST_CLASS_PATH is the program's own class path.
int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    auto environment = std::make_unique<storage::javaprovider::test::JvmEnvironment>(JVM_TEST_CLASS_PATH);
    ::testing::AddGlobalTestEnvironment(environment.release());  // GoogleTest owns it
    return RUN_ALL_TESTS();
}
