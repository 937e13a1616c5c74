// The destructors of the pure interfaces, so that each has its virtual table in this library alone.
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
