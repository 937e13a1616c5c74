#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/IProvider.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace storage::javaprovider::test {

/// How a host's process ended, and what it wrote.
struct HostEnd {
    int status = 0;                  ///< as waitpid() gives it
    std::string output;              ///< what it, and every child of it, wrote to stdout and stderr
    std::vector<std::string> files;  ///< what is in its working folder: crash reports, core dumps
};

/// Runs a host in a process of its own, forked from this one, which must have no virtual machine. The host gets an
/// empty folder for its data; one that returns exits with 0, or with 1 when an expectation failed. Blocks until the
/// process ends; one that takes longer than a minute is killed.
[[nodiscard]] HostEnd endOf(const std::function<void(const std::filesystem::path& data)>& host);

/// Fails the test unless the host exits with the code, has written nothing, and left no file.
void expectSilentExit(const std::function<void(const std::filesystem::path& data)>& host, int code = 0);

/// The machine that the hosts use, with the ready back end on its class path.
[[nodiscard]] std::shared_ptr<storage::jvm::EmbeddedJVM> startMachine();

/// A provider over the machine's default file system.
[[nodiscard]] std::unique_ptr<foundation::storage::provider::IProvider> makeProvider(
    const std::shared_ptr<jvm_interface::JVM>& jvm);

/// The folder's location, and that of something in it.
[[nodiscard]] foundation::storage::provider::StorageIRI at(const std::filesystem::path& folder);
[[nodiscard]] foundation::storage::provider::StorageIRI in(const std::filesystem::path& folder,
                                                           const std::u16string& name);

/// A stream over a new file in the folder.
[[nodiscard]] std::unique_ptr<foundation::storage::provider::ByteStream> openNew(
    const foundation::storage::provider::IProvider& provider, const std::filesystem::path& folder,
    const std::u16string& name);

/// Makes a file of that name, writes and reads it, asks about it, and removes it; fails the test where Java does
/// otherwise.
void expectWorks(const foundation::storage::provider::IProvider& provider, const std::filesystem::path& folder,
                 const std::u16string& name);

}  // namespace storage::javaprovider::test
