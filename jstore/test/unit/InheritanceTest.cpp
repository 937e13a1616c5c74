#include "process/Inheritance.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "process/Descriptor.h"

namespace jstore {

using ::testing::Contains;
using ::testing::Each;
using ::testing::Gt;
using ::testing::Not;

namespace {

TEST(InheritanceTest, WhatIsOpenIsNotedOnce) {
    const Descriptor before(::open("/dev/null", O_RDONLY), "/dev/null");
    noteInheritedDescriptors();
    const Descriptor after(::open("/dev/null", O_RDONLY), "/dev/null");
    EXPECT_THAT(inheritedDescriptors(), Contains(before.get()));
    EXPECT_THAT(inheritedDescriptors(), Not(Contains(after.get())));
    EXPECT_THAT(inheritedDescriptors(), Each(Gt(STDERR_FILENO)));
    EXPECT_TRUE(std::is_sorted(inheritedDescriptors().begin(), inheritedDescriptors().end()));
}

}  // namespace

}  // namespace jstore
