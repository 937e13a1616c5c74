# The tests that every back end passes. A program that is made of them defines storageKinds().
set(shared_test_sources
  EventTrail.cpp
  SharedCopyTest.cpp
  SharedFolderTest.cpp
  SharedListingTest.cpp
  SharedPollingTest.cpp
  SharedStreamTest.cpp
  SharedTest.cpp
  SharedTransactionTest.cpp)
list(TRANSFORM shared_test_sources PREPEND "${CMAKE_CURRENT_LIST_DIR}/")
