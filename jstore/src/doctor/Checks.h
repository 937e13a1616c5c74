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

/// Each place where Java was looked for. One failure when none is usable; a place passed over is a warning only where
/// somebody named it (JAVA_HOME).
[[nodiscard]] Checks javaHomes(const std::vector<storage::jvm::JavaCandidate>& candidates);

/// Each entry of the class path, then where the contract and the provider's class are.
[[nodiscard]] Checks classPath(const Options& options);

/// Each mount and whether its target is there: what can be said without Java.
[[nodiscard]] Checks mounts(const Options& options);

/// Each mount, opened by the provider as an operation would, with the words that an operation's error line has. What
/// mounts() finds wrong is not tried. As mounts() where the provider is not the one that reads mounts.
[[nodiscard]] Checks openedMounts(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options);

/// The process's character encoding. Says what Java uses when `env`, its environment, is not null.
[[nodiscard]] Check locale(JNIEnv* env);

/// What the running machine says about itself.
[[nodiscard]] Checks runningJava(JNIEnv* env, const storage::jvm::EmbeddedJVM& jvm);

/// Whose signal handlers are installed, now that Java runs.
[[nodiscard]] Checks signals();

/// Whether the running machine, which is this Java's, uses the class archive.
[[nodiscard]] Check archive(const Options& options, const storage::jvm::JavaCandidate& java);

/// Makes the class archive for a Java. To be called before this process starts one.
[[nodiscard]] Check makeArchive(const Options& options, const storage::jvm::JavaCandidate& java);

/// Makes the provider and gives it back.
[[nodiscard]] Check provider(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options);

}  // namespace jstore::doctor
