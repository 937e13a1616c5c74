#pragma once

#include <jni.h>

#include <exception>
#include <string>
#include <vector>

#include "BridgeTest.h"

namespace storage::javaprovider::test {

/// A test of checkJavaException().
///
/// The library looks two methods of ProviderException up once in the life of the process, with the first one it meets.
/// The first test of the program that uses this fixture lets that happen before it begins, so that every test sees the
/// same calls, whichever tests run.
class TranslationTest : public BridgeTest {
protected:
    /// How many references a translation leaves to the frame when the exception's class is on the class path:
    /// java.lang.Class, twice java.lang.ClassLoader, the name of ProviderException, and the parent of the loader.
    static constexpr long LeftToTheFrame = 5;

    void SetUp() override;

    /// The calls of the first translation from the test of the class up to the first use of a method that was looked
    /// up.
    [[nodiscard]] static std::vector<std::string> firstLookups();

    /// What checkJavaException() gives for the pending exception; the test fails when it gives nothing.
    [[nodiscard]] std::exception_ptr translate();
    /// The same for an exception that is made pending first.
    [[nodiscard]] std::exception_ptr translate(jthrowable exception);
    [[nodiscard]] std::exception_ptr translate(const std::string& kind, const std::u16string& text = u"");

    /// An exception that the Java class ForeignErrors makes.
    [[nodiscard]] jthrowable foreign(const std::string& method, const std::string& text);

    /// Expects that the exception was pending at every recorded call until it was cleared, right before the last one.
    void expectExaminedWhilePending() const;

    /// The calls by which the exception's class and its loaders are asked for ProviderException, when they are those of
    /// the class path, which know it by its dotted name only.
    [[nodiscard]] static std::vector<std::string> callsThatFindProviderException();
};

/// One list after the other.
[[nodiscard]] std::vector<std::string> concat(const std::vector<std::vector<std::string>>& lists);

}  // namespace storage::javaprovider::test
