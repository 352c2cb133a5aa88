// Anchors the library of test helpers and its precompiled header.
