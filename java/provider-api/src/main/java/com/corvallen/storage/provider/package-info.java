/**
 * The contract between a storage back end written in Java and the native host that uses it.
 *
 * <p>An author of a back end needs three types first:
 *
 * <ul>
 *   <li>{@link com.corvallen.storage.provider.StorageProvider}, the interface to implement;
 *   <li>{@link com.corvallen.storage.provider.StorageURI}, the location every operation is given;
 *   <li>{@link com.corvallen.storage.provider.ProviderException}, the one way to report a failure.
 * </ul>
 *
 * <p>The rest are small immutable values that operations return, {@link
 * com.corvallen.storage.provider.ProviderChannel} for the bytes of an open file, and {@link
 * com.corvallen.storage.provider.EventPublisher} for change events. The package depends on nothing but {@code
 * java.base}.
 *
 * <h2>What the native side trusts</h2>
 *
 * <p>The native side reads results without testing them again. It relies on these rules; a back end that breaks one
 * may end the process:
 *
 * <ul>
 *   <li>A method that returns an object or an array returns one, or throws. It never returns {@code null}, and an
 *       array holds no {@code null} element. Nothing to return is an empty array.
 *   <li>Getters of values never throw. The value classes here are final, so theirs cannot be overridden.
 *   <li>{@link com.corvallen.storage.provider.StorageProvider#hasFeature hasFeature} and {@link
 *       com.corvallen.storage.provider.StorageProvider#dispose dispose} never throw.
 *   <li>Only the words of {@link com.corvallen.storage.provider.EventKind} and {@link
 *       com.corvallen.storage.provider.EntryType} reach the native side; {@link
 *       com.corvallen.storage.provider.NativePublisher} takes enums, so no other word can.
 *   <li>No event reaches the native side after {@code dispose()} has returned: {@code dispose()} closes every
 *       publisher it was given, and {@link com.corvallen.storage.provider.NativePublisher#close()} waits for the
 *       deliveries that run. The memory an event is delivered to is freed right after.
 *   <li>Error numbers are 0 to 11; they come from the {@link com.corvallen.storage.provider.ErrorCode} enum.
 * </ul>
 *
 * <p>The jar of this package belongs on the class path of the virtual machine itself (the system class path): the
 * native side finds two of its classes, {@code ProviderException} and {@code ExtendedAttribute}, by name from threads
 * that have no Java caller. It must be as new as the native side: a constant of {@link
 * com.corvallen.storage.provider.ExtendedFeature} that is missing ends the process when it is first asked for.
 */
package com.corvallen.storage.provider;
