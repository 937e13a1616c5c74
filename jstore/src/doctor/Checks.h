#pragma once

#include <jni.h>

#include <memory>
#include <vector>

#include "doctor/Check.h"
#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

/// The groups of checks that `jstore doctor` makes. None throws for something that is wrong on this machine: that is
/// what the findings are for.
namespace jstore::doctor {

/// Each place where Java was looked for. One failure when none is usable; an unusable place is a warning only if
/// somebody named it (--java-home, JAVA_HOME or PATH).
[[nodiscard]] Checks javaHomes(const std::vector<storage::jvm::JavaCandidate>& candidates);

/// Each entry of the class path, then where the contract and the provider's class are.
[[nodiscard]] Checks classPath(const Options& options);

/// Each mount and whether its target is there, as far as that can be found out without Java.
[[nodiscard]] Checks mounts(const Options& options);

/// Each mount, after the provider has opened it as for an operation. A failure has the words of an operation's error
/// line. A mount with which mounts() finds something wrong is not opened. Only the default provider reads mounts; with
/// any other, this returns what mounts() returns.
[[nodiscard]] Checks openedMounts(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options);

/// The process's character encoding, and that of Java unless `env` is null.
[[nodiscard]] Check locale(JNIEnv* env);

/// What the running machine says about itself.
[[nodiscard]] Checks runningJava(JNIEnv* env, const storage::jvm::EmbeddedJVM& jvm);

/// Whose signal handlers are installed, now that Java runs.
[[nodiscard]] Checks signals();

/// Whether the running machine uses the class archive of this Java.
[[nodiscard]] Check archive(const Options& options, const storage::jvm::JavaCandidate& java);

/// Makes the class archive for this Java. Call it before this process starts Java.
[[nodiscard]] Check makeArchive(const Options& options, const storage::jvm::JavaCandidate& java);

/// Creates the provider and disposes of it.
[[nodiscard]] Check provider(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options);

}  // namespace jstore::doctor
