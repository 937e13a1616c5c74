// The destructors of the pure interfaces: each interface has its virtual table only in this library.
#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/IConfigurableProvider.h"
#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "foundation/storage/provider/TransactionalStream.h"

namespace foundation::storage::provider {

ByteStream::~ByteStream() = default;
TransactionalStream::~TransactionalStream() = default;
IFolderEntryIterator::~IFolderEntryIterator() = default;
IFolderNameIterator::~IFolderNameIterator() = default;
IConfigurableProvider::~IConfigurableProvider() = default;
PhysicalProviderFactory::~PhysicalProviderFactory() = default;

}  // namespace foundation::storage::provider
