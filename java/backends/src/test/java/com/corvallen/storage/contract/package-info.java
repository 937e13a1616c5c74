/**
 * The contract of a storage back end as tests that any writable back end can be run against.
 *
 * <p>An author extends {@link com.corvallen.storage.contract.ProviderContract} and says how a storage is opened; every
 * operation's cases are then run against it. The cases are those of {@link
 * com.corvallen.storage.provider.StorageProvider}'s documentation, one class for each operation.
 */
package com.corvallen.storage.contract;
