#include "kestan/core/librarypart.h"

namespace vorrel::kestan {

LibraryPart* LibraryPart::s_first = nullptr;

LibraryPart::LibraryPart() : next_(s_first) { s_first = this; }

} // namespace vorrel::kestan
