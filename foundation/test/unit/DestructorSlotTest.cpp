// Libraries built apart destroy objects through the virtual table, so the place of each destructor is pinned here.
#include <gtest/gtest.h>

#include <memory>

#include "InMemoryProvider.h"
#include "VirtualTable.h"
#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "foundation/storage/provider/IProvider.h"
#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "jvm_interface/JVM.h"

namespace foundation {
namespace {

using storage::provider::ByteStream;
using storage::provider::FolderEntry;
using storage::provider::IFolderEntryIterator;
using storage::provider::IProvider;
using storage::provider::PhysicalProviderFactory;
using storage::provider::StorageIRI;

/// An object of a class whose virtual table is inspected. It reports its destruction.
template <class Base>
class Mortal : public Base {
public:
    explicit Mortal(bool& destroyed) : m_destroyed(destroyed) {}
    ~Mortal() override { m_destroyed = true; }

private:
    bool& m_destroyed;
};

class MortalStream final : public Mortal<ByteStream> {
public:
    using Mortal::Mortal;
    std::streamsize read(char*, std::streamsize) override { return 0; }
    std::streamsize write(const char*, std::streamsize) override { return 0; }
    std::streampos seek(std::streamoff, std::ios_base::seekdir) override { return 0; }
    void close() override {}
};

class MortalFactory final : public Mortal<PhysicalProviderFactory> {
public:
    using Mortal::Mortal;
    std::shared_ptr<IProvider> createProvider() const override { return nullptr; }
    StorageIRI getRootIri() const override { return {}; }
};

class MortalIterator final : public Mortal<IFolderEntryIterator> {
public:
    using Mortal::Mortal;
    FolderEntry getCurrent() const override { return {u"", storage::provider::EntryType::File}; }
    bool hasMore() const override { return false; }
    void advance() override {}
    IFolderEntryIterator* clone() const override { return nullptr; }
};

class MortalJVM final : public Mortal<jvm_interface::JVM> {
public:
    using Mortal::Mortal;
    JavaVM* getJavaVM() override { return nullptr; }
};

/// Frees a new object through the given entry of its virtual table; whether its destructor ran.
template <class Base, class Class>
bool diesThroughEntry(std::size_t entry) {
    bool destroyed = false;
    Base* const object = new Class(destroyed);
    test::entryAt<void(Base*)>(object, entry)(object);
    return destroyed;
}

TEST(DestructorSlotTest, DestructorsStandWhereTheyMust) {
    EXPECT_TRUE((diesThroughEntry<IProvider, Mortal<test::InMemoryProvider>>(1)));
    EXPECT_TRUE((diesThroughEntry<ByteStream, MortalStream>(1)));
    EXPECT_TRUE((diesThroughEntry<PhysicalProviderFactory, MortalFactory>(1)));
    EXPECT_TRUE((diesThroughEntry<IFolderEntryIterator, MortalIterator>(5)));
    EXPECT_TRUE((diesThroughEntry<jvm_interface::JVM, MortalJVM>(2)));
}

}  // namespace
}  // namespace foundation
