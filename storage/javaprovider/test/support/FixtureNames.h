#pragma once

/// The Java fixtures by the names JNI knows them by.
namespace storage::javaprovider::test::fixture {

inline constexpr const char* Script = "com/corvallen/storage/test/Script";
inline constexpr const char* Gate = "com/corvallen/storage/test/Gate";
inline constexpr const char* Failures = "com/corvallen/storage/test/Failures";
inline constexpr const char* ScriptedProvider = "com/corvallen/storage/test/ScriptedProvider";
inline constexpr const char* ThrowingConstructorProvider = "com/corvallen/storage/test/ThrowingConstructorProvider";
inline constexpr const char* NoDefaultConstructorProvider = "com/corvallen/storage/test/NoDefaultConstructorProvider";
inline constexpr const char* PrivateConstructorProvider = "com/corvallen/storage/test/PrivateConstructorProvider";
inline constexpr const char* AbstractProvider = "com/corvallen/storage/test/AbstractProvider";
inline constexpr const char* StaticInitFailsProvider = "com/corvallen/storage/test/StaticInitFailsProvider";
inline constexpr const char* LackingProviderLoader = "com/corvallen/storage/test/LackingProviderLoader";
inline constexpr const char* IsolatedLoader = "com/corvallen/storage/test/IsolatedLoader";
inline constexpr const char* NullLoader = "com/corvallen/storage/test/NullLoader";
inline constexpr const char* NativeCallback = "com/corvallen/storage/test/NativeCallback";

/// Not on the class path: the name that IsolatedLoader takes.
inline constexpr const char* IsolatedBackend = "com.corvallen.storage.test.isolated.IsolatedBackend";

}  // namespace storage::javaprovider::test::fixture
