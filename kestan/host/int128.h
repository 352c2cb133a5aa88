#pragma once

namespace vorrel {

/// Exact intermediate results of number conversion.
__extension__ typedef unsigned __int128 uint128;

} // namespace vorrel
