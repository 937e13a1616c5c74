// Objects that lack a method of the contract: no provider is made of them.
#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "JavaProvider.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/ContractMethods.h"
#include "support/JavaHelpers.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {
namespace {

using foundation::log::Severity;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class MissingMethodTest : public ProviderTest, public ::testing::WithParamInterface<ContractMethod> {
protected:
    /// A scripted back end without the method, or with another one of its name.
    [[nodiscard]] jobject lackingBackEnd(const std::string& how) const {
        return callStaticObject(env(), "com/corvallen/storage/test/LackingProviderLoader", how, {GetParam().name});
    }

    void expectRefused(jobject backEnd) {
        // How Java goes on differs from version to version.
        EXPECT_THAT(internalErrorOf([&] { const JavaProvider provider(handle, backEnd); }),
                    AllOf(StartsWith(std::string("Method ") + GetParam().name + " with signature " +
                                     GetParam().signature + " not found.\njava.lang.NoSuchMethodError: "),
                          HasSubstr(GetParam().name)));
        EXPECT_EQ(recorder.liveGlobals(), 0);
        EXPECT_EQ(recorder.count("NewGlobalRef"), 0U);
        EXPECT_EQ(recorder.count("DeleteGlobalRef"), 0U);
        EXPECT_EQ(recorder.liveLocals(), 0);
        EXPECT_EQ(handle.use_count(), 1) << "the handle is let go";
    }

    /// How many methods were found before the one that is missing.
    [[nodiscard]] static std::size_t place() {
        std::size_t index = 0;
        while (ContractMethods.at(index).name != GetParam().name) {
            ++index;
        }
        return index;
    }
};

TEST_P(MissingMethodTest, MissingMethodIsNamed) { expectRefused(lackingBackEnd("withoutMethod")); }

TEST_P(MissingMethodTest, MethodOfAnotherSignatureDoesNotCount) { expectRefused(lackingBackEnd("withOtherSignature")); }

TEST_P(MissingMethodTest, NothingIsLookedUpAfterTheMissingMethod) {
    jobject backEnd = lackingBackEnd("withoutMethod");
    EXPECT_TRUE(throwsExactly<InternalError>([&] { const JavaProvider provider(handle, backEnd); }));
    EXPECT_EQ(recorder.count(std::string("GetMethodID ") + ScriptedProviderClass), place() + 1);
}

TEST_P(MissingMethodTest, FailureIsLoggedBeforeItIsThrown) {
    jobject backEnd = lackingBackEnd("withoutMethod");
    LogCapture log(static_cast<std::uint32_t>(Severity::Failure));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { const JavaProvider provider(handle, backEnd); }));
    EXPECT_THAT(log.texts(), ElementsAre(std::string("Failed to find ") + GetParam().name + " with signature " +
                                         GetParam().signature));
}

INSTANTIATE_TEST_SUITE_P(Contract, MissingMethodTest, ::testing::ValuesIn(ContractMethods),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace storage::javaprovider::test
