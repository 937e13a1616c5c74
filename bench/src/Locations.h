#pragma once

#include <string>

#include "foundation/storage/provider/StorageIRI.h"

namespace bench {

/// A location as both sides know it; in ASCII, so that the text Java gets is the text itself.
struct Location {
    std::u16string text;
    foundation::storage::provider::StorageIRI iri;

    explicit Location(const std::u16string& location) : text(location), iri(location) {}
};

inline const Location File{u"java://data/archive/2026/annual-report.txt"};
inline const Location OtherFile{u"java://data/archive/2026/annual-report-final.txt"};
inline const Location Folder{u"java://data/archive/2026"};
inline const Location OtherFolder{u"java://data/archive/2027"};

}  // namespace bench
