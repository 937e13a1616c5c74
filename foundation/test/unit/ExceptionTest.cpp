#include <gtest/gtest.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>

#include "InMemoryProvider.h"
#include "ThrowerLibrary.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"

namespace foundation {
namespace {

using core::except::IException;
using core::except::IInternalException;
using storage::provider::ErrorCode;
using storage::provider::StorageIRI;
using InternalFailure = core::except::detail::AnonymousInternalException<std::runtime_error>;
using OutOfMemory = core::except::detail::AnonymousInternalException<std::bad_alloc>;
using ProviderError = storage::provider::Exception;

/// Whether `action` throws something that a handler for `Caught` takes.
template <class Caught, class Action>
bool isCaughtAs(const Action& action) {
    try {
        action();
    } catch (const Caught&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

template <class Standard>
void expectInternalForms(const auto& action) {
    using core::except::Exception;
    EXPECT_TRUE((isCaughtAs<core::except::detail::AnonymousInternalException<Standard>>(action)));
    EXPECT_TRUE((isCaughtAs<Exception<IInternalException, Standard, void>>(action)));
    EXPECT_TRUE(isCaughtAs<IInternalException>(action));
    EXPECT_TRUE(isCaughtAs<IException>(action));
    EXPECT_TRUE(isCaughtAs<Standard>(action));
    EXPECT_TRUE(isCaughtAs<std::exception>(action));
    EXPECT_TRUE(isCaughtAs<boost::exception>(action));
    EXPECT_FALSE(isCaughtAs<ProviderError>(action));
}

TEST(ExceptionTest, InternalFailureIsCaughtInEveryForm) {
    const auto here = [] { throw InternalFailure(std::runtime_error("gone")); };
    const auto there = [] { test::thrower::throwInternalFailure("gone"); };
    expectInternalForms<std::runtime_error>(here);
    expectInternalForms<std::runtime_error>(there);
    EXPECT_FALSE(isCaughtAs<std::bad_alloc>(here));
}

TEST(ExceptionTest, OutOfMemoryIsCaughtInEveryForm) {
    const auto here = [] { throw OutOfMemory(std::bad_alloc()); };
    const auto there = [] { test::thrower::throwOutOfMemory(); };
    expectInternalForms<std::bad_alloc>(here);
    expectInternalForms<std::bad_alloc>(there);
    EXPECT_FALSE(isCaughtAs<std::runtime_error>(here));
}

TEST(ExceptionTest, ProviderErrorIsNeverInternal) {
    const auto here = [] { throw ProviderError(ErrorCode::NotFound, StorageIRI(u"java:///a")); };
    const auto there = [] { test::thrower::throwNotFound(StorageIRI(u"java:///a")); };
    // The default of an operation is thrown inside libfoundation itself.
    const auto inFoundation = [] { test::InMemoryProvider().setWritable(StorageIRI(u"java:///a"), true); };
    const auto expectForms = [](const auto& action) {
        EXPECT_TRUE(isCaughtAs<ProviderError>(action));
        EXPECT_TRUE(isCaughtAs<IException>(action));
        EXPECT_TRUE(isCaughtAs<std::runtime_error>(action));
        EXPECT_TRUE(isCaughtAs<std::exception>(action));
        EXPECT_TRUE(isCaughtAs<boost::exception>(action));
        EXPECT_FALSE(isCaughtAs<IInternalException>(action));
        EXPECT_FALSE(isCaughtAs<std::bad_alloc>(action));
    };
    expectForms(here);
    expectForms(there);
    expectForms(inFoundation);
    static_assert(!std::is_base_of_v<IInternalException, ProviderError>);
}

TEST(ExceptionTest, StandardExceptionsAreNoneOfTheFrameworks) {
    EXPECT_FALSE(isCaughtAs<IException>([] { throw std::runtime_error("plain"); }));
    EXPECT_FALSE(isCaughtAs<IException>([] { throw std::bad_alloc(); }));
}

TEST(ExceptionTest, TextIsThatOfTheStandardException) {
    EXPECT_STREQ(InternalFailure(std::runtime_error("gone")).what(), "gone");
    EXPECT_STREQ(OutOfMemory(std::bad_alloc()).what(), std::bad_alloc().what());
}

TEST(ExceptionTest, ProviderErrorNamesItsCodeAndLocation) {
    const ProviderError error(ErrorCode::NotFound, StorageIRI(u"java://mount/\u00e4"));
    EXPECT_STREQ(error.what(), "NotFound: java://mount/\xC3\xA4");
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_EQ(error.location().text(), u"java://mount/\u00e4");
    EXPECT_STREQ(ProviderError(ErrorCode::Unavailable, StorageIRI()).what(), "Unavailable");
    EXPECT_STREQ(ProviderError(static_cast<ErrorCode>(99), StorageIRI(u"x")).what(), "Unknown: x");
}

TEST(ExceptionTest, EachCodeHasItsNumberAndName) {
    const char* const names[] = {"Unknown",     "NotFound",       "AlreadyExists", "AccessDenied", "NotAFile",
                                 "NotAFolder",  "FolderNotEmpty", "Cancelled",     "NotSupported", "InvalidLocation",
                                 "StorageFull", "InUse",          "Unavailable"};
    for (int number = 0; number < 13; ++number) {
        EXPECT_EQ(toString(static_cast<ErrorCode>(number)), names[number]);
    }
    EXPECT_EQ(toString(static_cast<ErrorCode>(13)), "Unknown");
    EXPECT_EQ(toString(static_cast<ErrorCode>(-1)), "Unknown");
}

TEST(ExceptionTest, ProviderErrorTravelsToAnotherThread) {
    std::exception_ptr carried;
    {
        const ProviderError error(ErrorCode::InUse, StorageIRI(u"java:///a"));
        carried = std::make_exception_ptr(error);
    }
    std::thread([carried] {
        try {
            std::rethrow_exception(carried);
        } catch (const ProviderError& error) {
            EXPECT_EQ(error.code(), ErrorCode::InUse);
            EXPECT_EQ(error.location().text(), u"java:///a");
            EXPECT_STREQ(error.what(), "InUse: java:///a");
        }
    }).join();
}

TEST(ExceptionTest, CopyIsAsGoodAsTheOriginal) {
    const ProviderError original(ErrorCode::StorageFull, StorageIRI(u"java:///a"));
    ProviderError copy(ErrorCode::Unknown, StorageIRI());
    copy = original;
    EXPECT_EQ(copy.code(), ErrorCode::StorageFull);
    EXPECT_STREQ(copy.what(), original.what());
}

TEST(ExceptionTest, AnotherLibraryCatchesWhatIsThrownHere) {
    using test::thrower::handlerFor;
    EXPECT_EQ(handlerFor([] { throw InternalFailure(std::runtime_error("gone")); }), "internal failure");
    EXPECT_EQ(handlerFor([] { throw OutOfMemory(std::bad_alloc()); }), "out of memory");
    EXPECT_EQ(handlerFor([] { throw ProviderError(ErrorCode::NotFound, StorageIRI()); }), "provider error");
    EXPECT_EQ(handlerFor([] { throw std::runtime_error("plain"); }), "other");
    EXPECT_EQ(handlerFor([] {}), "none");
}

TEST(ExceptionTest, FoundationCatchesWhatIsThrownHere) {
    test::InMemoryProvider provider;
    const StorageIRI folder(u"java:///a");
    // The framework's own handler takes this AlreadyExists for a folder that somebody else has just made.
    provider.setHook([&provider, made = false](std::string_view operation, const StorageIRI& location) mutable {
        if (operation == "createFolder" && !std::exchange(made, true)) {
            provider.createFolder(location);
            throw ProviderError(ErrorCode::AlreadyExists, location);
        }
    });
    EXPECT_NO_THROW(provider.createFolderRecursive(folder));
    EXPECT_TRUE(provider.folderExists(folder));
}

TEST(ExceptionTest, InternalFailurePassesThroughFoundation) {
    test::InMemoryProvider provider;
    provider.setHook([](std::string_view, const StorageIRI&) { throw InternalFailure(std::runtime_error("gone")); });
    EXPECT_THROW((void)provider.exists(StorageIRI(u"java:///a")), IInternalException);
}

TEST(ExceptionTest, LibrariesShareOneTypeObject) {
    EXPECT_EQ(&typeid(InternalFailure), &test::thrower::internalFailureType());
    EXPECT_EQ(&typeid(OutOfMemory), &test::thrower::outOfMemoryType());
    EXPECT_EQ(&typeid(ProviderError), &test::thrower::providerErrorType());
}

}  // namespace
}  // namespace foundation
