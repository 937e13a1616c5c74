#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/storage/provider/IProvider.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/ThreadAttachment.h"

namespace bench {

/// The virtual machine of a measuring program, with the thread that made it attached for good.
///
/// Its heap is fixed and collected by one thread, so that the machine does the same in every run. Used on the thread
/// that made it, but for jvm().
class Machine {
public:
    /// `extraOptions` go to the virtual machine after the ones that every run shares.
    explicit Machine(const std::vector<std::string>& extraOptions = {});

    [[nodiscard]] const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm() const noexcept { return m_jvm; }
    [[nodiscard]] JNIEnv* env() const noexcept { return m_env; }

    /// A global reference to the class with that slashed name, good for the life of the process. Throws
    /// std::runtime_error when there is none.
    [[nodiscard]] jclass holdClass(const char* name) const;

    /// A provider over a new object of the idle back end.
    [[nodiscard]] std::unique_ptr<foundation::storage::provider::IProvider> makeProvider() const;

    /// Makes every folder of the idle back end list that many entries.
    void setListing(jint entryCount) const;

private:
    std::shared_ptr<storage::jvm::EmbeddedJVM> m_jvm;
    storage::jvm::ThreadAttachment m_attachment;
    JNIEnv* m_env;
};

/// The calling thread's environment; the thread is attached.
[[nodiscard]] JNIEnv* environmentOf(JavaVM* vm);

}  // namespace bench
