/**
 * The contract between a storage back end written in Java and the native host that uses it.
 *
 * <p>An author of a back end needs three types first:
 *
 * <ul>
 *   <li>{@link com.corvallen.storage.provider.StorageProvider}, the interface to implement;
 *   <li>{@link com.corvallen.storage.provider.StorageURI}, the location that every operation receives;
 *   <li>{@link com.corvallen.storage.provider.ProviderException}, the only way to report an expected failure.
 * </ul>
 *
 * <p>The rest are small immutable values that operations return, {@link com.corvallen.storage.provider.ProviderChannel}
 * for the bytes of an open file, and {@link com.corvallen.storage.provider.EventPublisher} for change events. The
 * package depends only on {@code java.base}.
 *
 * <h2>What the native side trusts</h2>
 *
 * <p>The native side does not check results. It relies on these rules, and a back end that breaks one may crash the
 * process:
 *
 * <ul>
 *   <li>A method that returns an object or an array returns one or throws. It never returns {@code null}, and an array
 *       contains no {@code null}. If there is nothing to return, the array is empty.
 *   <li>Getters of values never throw. The value classes here are final, so their getters cannot be overridden.
 *   <li>{@link com.corvallen.storage.provider.StorageProvider#hasFeature hasFeature} and {@link
 *       com.corvallen.storage.provider.StorageProvider#dispose dispose} never throw.
 *   <li>Only the constant names of {@link com.corvallen.storage.provider.EventKind} and {@link
 *       com.corvallen.storage.provider.EntryType} reach the native side. {@link
 *       com.corvallen.storage.provider.NativePublisher} takes enums, so no other word can.
 *   <li>No event reaches the native side after {@code dispose()} has returned, because the memory that it would be
 *       delivered to is freed then. {@code dispose()} closes every publisher it received, and {@link
 *       com.corvallen.storage.provider.NativePublisher#close()} waits for running deliveries.
 *   <li>Error numbers are 0 to 11; they come from the enum {@link com.corvallen.storage.provider.ErrorCode}.
 * </ul>
 *
 * <p>The jar of this package must be on the system class path of the virtual machine: the native side finds two of its
 * classes, {@code ProviderException} and {@code ExtendedAttribute}, by name on threads that have no Java caller. The
 * jar must be as new as the native side: a missing constant of {@link com.corvallen.storage.provider.ExtendedFeature}
 * crashes the process when the native side first needs it.
 */
package com.corvallen.storage.provider;
