#include "storage/provider/listing/EntryNameIterator.h"

#include <utility>

namespace foundation::storage::provider::detail {

EntryNameIterator::EntryNameIterator(std::unique_ptr<IFolderEntryIterator> entries) : m_entries(std::move(entries)) {}

EntryNameIterator::EntryNameIterator(const EntryNameIterator& other)
    : IFolderNameIterator(other), m_entries(other.m_entries->clone()) {}

IFolderNameIterator* EntryNameIterator::clone() const { return new EntryNameIterator(*this); }

}  // namespace foundation::storage::provider::detail
