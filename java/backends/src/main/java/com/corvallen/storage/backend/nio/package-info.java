/**
 * A back end for anything that {@code java.nio.file} can reach: local folders, zip archives, and every file system
 * whose provider is on the class path.
 *
 * <p>{@link com.corvallen.storage.backend.nio.NioProvider} is the only class to know; its documentation says how
 * locations and mounts work.
 */
package com.corvallen.storage.backend.nio;
