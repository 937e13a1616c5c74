// Several writers of one file, each of which reports success or an error: what was reported as done is there.
#include <gmock/gmock.h>

#include <atomic>
#include <barrier>
#include <string>
#include <thread>
#include <vector>

#include "defaults/JavaStorage.h"
#include "support/JvmEnvironment.h"
#include "support/JvmTest.h"
#include "support/NumberFromEnvironment.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ByteStreamOpenOptions;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;
using foundation::storage::provider::StorageIRI;

class CopiesAtOnceTest : public JvmTest {
protected:
    static constexpr int Copies = 4;

    void SetUp() override {
        JvmTest::SetUp();
        for (int copy = 0; copy < Copies; ++copy) {
            write(source(copy), contentOf(copy));
        }
    }

    static int rounds() { return static_cast<int>(numberFromEnvironment("COPIES_AT_ONCE", 20)); }

    static std::string contentOf(int copy) {
        return std::string(300'000 + static_cast<std::size_t>(copy), static_cast<char>('a' + copy));
    }
    [[nodiscard]] StorageIRI source(int copy) const {
        return storage.folder().getChild(std::u16string(1, static_cast<char16_t>(u'a' + copy)));
    }
    [[nodiscard]] const IProvider& provider() const { return storage.provider(); }

    void write(const StorageIRI& file, const std::string& bytes) const {
        const auto stream =
            provider().openByteStream(file, {.creation = ByteStreamOpenOptions::Creation::CreateIfMissing});
        ASSERT_EQ(stream->write(bytes.data(), static_cast<std::streamsize>(bytes.size())),
                  static_cast<std::streamsize>(bytes.size()));
        stream->close();
    }

    [[nodiscard]] std::string bytesOf(const StorageIRI& file) const {
        const auto stream = provider().openReadOnlyByteStream(file);
        std::string bytes(400'000, '\0');
        std::size_t size = 0;
        for (std::streamsize read = 0; read >= 0; size += static_cast<std::size_t>(read)) {
            read = stream->read(bytes.data() + size, static_cast<std::streamsize>(bytes.size() - size));
            if (read < 0) {
                break;
            }
        }
        stream->close();
        bytes.resize(size);
        return bytes;
    }

    /// Copies every source to the target at once. The number of copies that report success.
    [[nodiscard]] int copyAll(ReplacementPolicy policyOfFirst, ReplacementPolicy policy) const {
        std::atomic<int> done = 0;
        std::barrier start(Copies);
        std::vector<std::jthread> threads;
        for (int copy = 0; copy < Copies; ++copy) {
            threads.emplace_back([&, copy] {
                const jvm::ThreadAttachment attached(JvmEnvironment::jvm());
                start.arrive_and_wait();
                try {
                    provider().copyFile(source(copy), target, copy == 0 ? policyOfFirst : policy);
                    ++done;
                } catch (const Exception&) {
                    // Another copy has the file, which is as good.
                }
            });
        }
        threads.clear();
        return done;
    }

    void expectOneWholeFile(ReplacementPolicy policyOfFirst, ReplacementPolicy policy) const {
        for (int round = 0; round < rounds(); ++round) {
            SCOPED_TRACE(round);
            EXPECT_GE(copyAll(policyOfFirst, policy), 1);
            ASSERT_TRUE(provider().fileExists(target));
            const std::string bytes = bytesOf(target);
            ASSERT_FALSE(bytes.empty());
            EXPECT_TRUE(bytes == contentOf(bytes.front() - 'a'));
            provider().removeFile(target);
        }
    }

    JavaStorage storage{"DefaultFileSystem"};
    const StorageIRI target = storage.folder().getChild(u"target");
};

TEST_F(CopiesAtOnceTest, OfCopiesThatReplaceOneWholeFileIsLeft) {
    expectOneWholeFile(ReplacementPolicy::ReplaceExisting, ReplacementPolicy::ReplaceExisting);
}

TEST_F(CopiesAtOnceTest, OneThatKeepsChangesNothingOfIt) {
    expectOneWholeFile(ReplacementPolicy::KeepExisting, ReplacementPolicy::ReplaceExisting);
}

TEST_F(CopiesAtOnceTest, OfCopiesThatKeepOneSucceeds) {
    for (int round = 0; round < rounds(); ++round) {
        EXPECT_EQ(copyAll(ReplacementPolicy::KeepExisting, ReplacementPolicy::KeepExisting), 1);
        provider().removeFile(target);
    }
}

TEST_F(CopiesAtOnceTest, WriterThatOpensTheFileAsSoonAsItIsThereLosesNothing) {
    for (int round = 0; round < rounds(); ++round) {
        std::atomic<bool> copied = false;
        std::atomic<bool> written = false;
        std::jthread writer([&] {
            const jvm::ThreadAttachment attached(JvmEnvironment::jvm());
            while (!written) {
                const bool last = copied;
                try {
                    const auto stream = provider().openByteStream(target);
                    (void)stream->write("written", 7);
                    stream->close();
                    written = true;
                } catch (const Exception&) {
                    // Not there yet, or the copy has it.
                }
                if (last) {
                    return;
                }
            }
        });
        try {
            provider().copyFile(source(0), target);
        } catch (const Exception&) {
            // The writer has it.
        }
        copied = true;
        writer.join();
        if (written) {
            ASSERT_TRUE(provider().fileExists(target)) << "round " << round;
            EXPECT_EQ(bytesOf(target).substr(0, 7), "written");
            provider().removeFile(target);
        }
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
