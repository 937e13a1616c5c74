// The names of temporary files, as a back end sees them.
#include <set>

#include "DefaultsTest.h"
#include "fl/i18n/text.h"

namespace foundation::test {
namespace {

class TemporaryNameTest : public DefaultsTest {
protected:
    void SetUp() override {
        DefaultsTest::SetUp();
        write(m_source, "bytes");
    }

    StorageIRI temporaryFor(const StorageIRI& target) {
        const std::vector<StorageIRI> created =
            createdBy([&] { m_provider.copyFileAtomic(m_source, target, Policy::ReplaceExisting); });
        EXPECT_EQ(created.size(), 1U);
        return created.front();
    }
};

TEST_F(TemporaryNameTest, StandsHiddenBesideTheTargetAndBeginsWithItsName) {
    const StorageIRI temporary = temporaryFor(m_target);
    EXPECT_EQ(temporary.getParent(), m_folder);
    EXPECT_TRUE(temporary.getName().starts_with(u".target."));
    EXPECT_TRUE(temporary.getName().ends_with(u".tmp"));
}

TEST_F(TemporaryNameTest, DiffersAtEveryCall) {
    std::set<StorageIRI> temporaries;
    for (int call = 0; call < 100; ++call) {
        temporaries.insert(temporaryFor(m_target));
    }
    EXPECT_EQ(temporaries.size(), 100U);
}

TEST_F(TemporaryNameTest, IsBoundedWhateverTheTargetsLength) {
    for (const std::u16string character : {u"a", u"é", u"\u6587", u"\U0001F600"}) {
        std::u16string name;
        while (fl::i18n::to_string(name + character).size() <= 255) {
            name += character;
        }
        const std::string temporary = fl::i18n::to_string(temporaryFor(m_folder.getChild(name)).getName());
        EXPECT_LE(temporary.size(), 104U);
        EXPECT_TRUE(temporary.starts_with('.' + fl::i18n::to_string(character)));
        // A pair of surrogates cut in half would come out as a replacement character.
        EXPECT_EQ(temporary.find("\xEF\xBF\xBD"), std::string::npos);
    }
}

TEST_F(TemporaryNameTest, AwkwardNamesAreTaken) {
    const std::u16string awkward = u"50% #1?";
    EXPECT_TRUE(temporaryFor(m_folder.getChild(awkward)).getName().starts_with(u'.' + awkward + u'.'));
}

}  // namespace
}  // namespace foundation::test
