// Makes a folder through a Java back end and asks for it. Usage: consumer FOLDER (an existing one, as an absolute
// path).
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include <storage/javaprovider/EntryPoints.h>
#include <storage/jvm/EmbeddedJVM.h>

using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: consumer FOLDER\n";
        return 2;
    }
    const std::filesystem::path jars(JAVA_DIR);
    storage::jvm::EmbeddedJVMOptions options;
    options.classPath = {jars / "storage-provider-api.jar", jars / "storage-backends.jar"};
    const std::unique_ptr<IProvider> provider(storage::javaprovider::buildProvider(
        storage::jvm::EmbeddedJVM::start(options), "com/corvallen/storage/backend/nio/NioProvider"));

    const StorageIRI parent(u"java://" + std::filesystem::path(argv[1]).u16string());
    const StorageIRI folder = parent.getChild(u"made by a stranger");
    provider->createFolder(folder);
    std::cout << "folder exists: " << std::boolalpha << provider->folderExists(folder) << '\n';
}
