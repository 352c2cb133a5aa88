#pragma once

/// Marks the classes and functions that the shared library offers; all else stays hidden.
#if defined(__GNUC__) || defined(__clang__)
#define KESTAN_EXPORT __attribute__((visibility("default")))
#else
#define KESTAN_EXPORT
#endif
