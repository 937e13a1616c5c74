#include "soak/Worker.h"

#include <jni.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/property_tree/ptree.hpp>

#include <array>
#include <exception>
#include <string>

#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/IConfigurableProvider.h"
#include "foundation/storage/provider/TransactionalStream.h"

namespace storage::javaprovider::test {

using foundation::storage::provider::ByteStreamOpenOptions;
using foundation::storage::provider::Exception;
using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IConfigurableProvider;
using foundation::storage::provider::ReplacementPolicy;

namespace {

constexpr unsigned ProviderLastsOperations = 20000;

constexpr ByteStreamOpenOptions CreateIfMissing{.creation = ByteStreamOpenOptions::Creation::CreateIfMissing};

std::u16string numbered(char16_t letter, unsigned number) { return {letter, static_cast<char16_t>(u'0' + number)}; }

/// Clears the exception that an operation leaves on an attached thread, as hosts must.
class ExceptionCleared {
public:
    explicit ExceptionCleared(JavaVM* vm) : m_vm(vm) {}
    ~ExceptionCleared() {
        void* env = nullptr;
        if (m_vm->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK) {
            static_cast<JNIEnv*>(env)->ExceptionClear();
        }
    }
    ExceptionCleared(const ExceptionCleared&) = delete;
    ExceptionCleared& operator=(const ExceptionCleared&) = delete;

private:
    JavaVM* m_vm;
};

template <class IteratorPtr>
void exhaust(const IteratorPtr& entries) {
    while (entries->hasMore()) {
        entries->advance();
        static_cast<void>(entries->getCurrent());
    }
}

}  // namespace

const Worker::Operation Worker::Operations[] = {
    {"create", &Worker::createEntry},
    {"exists", &Worker::askWhetherThere},
    {"remove", &Worker::removeEntry},
    {"move", &Worker::moveEntry},
    {"copy", &Worker::copy},
    {"copy atomically", &Worker::copyAtomically},
    {"attributes", &Worker::readAttributes},
    {"set last modified", &Worker::setLastModified},
    {"truncate", &Worker::truncate},
    {"open", &Worker::openAndKeep},
    {"read, write, seek", &Worker::useKeptStream},
    {"read a file", &Worker::readAndClose},
    {"transaction", &Worker::replaceInTransaction},
    {"list", &Worker::listFolder},
    {"list matching", &Worker::listMatching},
    {"list recursively", &Worker::listRecursively},
    {"extended attributes", &Worker::readExtended},
    {"feature", &Worker::askFeature},
    {"configure", &Worker::configure},
    {"watch", &Worker::watch},
    {"stop watching", &Worker::stopWatching},
};

void Worker::work(long operations) {
    for (long i = 0; i < operations; ++i) {
        const ExceptionCleared clearedAtTheEnd(m_slot.vm());
        if (below(ProviderLastsOperations) == 0) {
            m_slot.replace();
        }
        perform(Operations[below(std::size(Operations))]);
    }
    m_stream.reset();
}

void Worker::perform(const Operation& operation) {
    const auto provider = m_slot.get();
    ++m_operations;
    try {
        (this->*operation.perform)(*provider);
        ++m_successes[operation.name];
    } catch (const Exception&) {
        ++m_providerErrors;
    } catch (const std::exception&) {
        ++m_otherErrors;
    }
}

void Worker::createEntry(IProvider& provider) {
    if (below(4) == 0) {
        provider.createFolder(anyFolder());
    } else {
        provider.createFile(anyFile());
    }
}

void Worker::askWhetherThere(IProvider& provider) {
    static_cast<void>(provider.fileExists(anyFile()));
    static_cast<void>(provider.folderExists(anyFolder()));
    static_cast<void>(provider.exists(anyFile()));
}

void Worker::removeEntry(IProvider& provider) {
    switch (below(8)) {
        case 0:
            return provider.removeFolderRecursive(anyFolder());
        case 1:
            return provider.removeFolder(anyFolder());
        default:
            return provider.removeFile(anyFile());
    }
}

void Worker::moveEntry(IProvider& provider) {
    if (below(8) == 0) {
        provider.moveFolder(anyFolder(), anyFolder(), ReplacementPolicy::KeepExisting);
    } else {
        provider.moveFile(anyFile(), anyFile(), ReplacementPolicy::ReplaceExisting);
    }
}

void Worker::copy(IProvider& provider) { provider.copyFile(anyFile(), anyFile(), ReplacementPolicy::ReplaceExisting); }

void Worker::copyAtomically(IProvider& provider) {
    provider.copyFileAtomic(anyFile(), anyFile(), ReplacementPolicy::ReplaceExisting);
}

void Worker::readAttributes(IProvider& provider) {
    static_cast<void>(provider.getFolderAttributes(anyFolder()));
    static_cast<void>(provider.getFileAttributes(anyFile()));
}

void Worker::setLastModified(IProvider& provider) {
    provider.setLastModified(anyFile(), boost::posix_time::microsec_clock::universal_time());
}

void Worker::truncate(IProvider& provider) { provider.truncateToSize(anyFile(), below(4096)); }

void Worker::openAndKeep(IProvider& provider) {
    // What was kept goes without a word to Java, as a host's forgotten stream does.
    m_stream = provider.openByteStream(anyFile(), CreateIfMissing);
}

void Worker::useKeptStream(IProvider& provider) {
    if (!m_stream) {
        openAndKeep(provider);
    }
    std::array<char, 512> bytes{};
    m_stream->seek(static_cast<std::streamoff>(below(2048)), std::ios_base::beg);
    m_stream->write(bytes.data(), std::ssize(bytes));
    m_stream->seek(-static_cast<std::streamoff>(below(2048)), std::ios_base::end);
    m_stream->read(bytes.data(), std::ssize(bytes));
}

void Worker::readAndClose(IProvider& provider) {
    const auto stream = provider.openReadOnlyByteStream(anyFile());
    std::array<char, 4096> bytes{};
    stream->read(bytes.data(), std::ssize(bytes));
    stream->close();
}

void Worker::replaceInTransaction(IProvider& provider) {
    const auto transaction = provider.openTransactionalStream(anyFile());
    transaction->write("content", 7);
    if (below(4) != 0) {
        transaction->commit();
    }
}

void Worker::listFolder(IProvider& provider) {
    exhaust(provider.listAll(anyFolder()));
    exhaust(provider.listFiles(anyFolder()));
    exhaust(provider.listFolders(StorageIRI(u"java://soak")));
}

void Worker::listMatching(IProvider& provider) {
    exhaust(provider.listAll(anyFolder(), u"*1*"));
    exhaust(provider.listAllNamesOnly(anyFolder(), u"f?"));
}

void Worker::listRecursively(IProvider& provider) { exhaust(provider.listAllRecursive(StorageIRI(u"java://soak"))); }

void Worker::readExtended(IProvider& provider) {
    static_cast<void>(provider.getExtendedAttributes(anyFile()));
    static_cast<void>(provider.getProviderStorageInfo(anyFolder()));
}

void Worker::askFeature(IProvider& provider) {
    static_cast<void>(provider.hasFeature(static_cast<ExtendedFeature>(below(8))));
}

void Worker::configure(IProvider& provider) {
    boost::property_tree::ptree settings;
    settings.put("gds.enableContentCache", below(2) == 0);
    dynamic_cast<IConfigurableProvider&>(provider).configure(settings);
}

void Worker::watch(IProvider& provider) { m_slot.watch(provider, anyFolder(), below(4) == 0); }

void Worker::stopWatching(IProvider& provider) { provider.stopChangeNotification(anyFolder()); }

unsigned Worker::below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }

Worker::StorageIRI Worker::anyFolder() { return StorageIRI(u"java://soak").getChild(numbered(u'd', below(4))); }

Worker::StorageIRI Worker::anyFile() { return anyFolder().getChild(numbered(u'f', below(8))); }

}  // namespace storage::javaprovider::test
