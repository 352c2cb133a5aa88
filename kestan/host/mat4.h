#pragma once

#include "kestan/host/export.h"

namespace vorrel {

/// A matrix of four rows and columns, the identity at first.
template <class T> struct KESTAN_EXPORT Mat4 {
  T m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

  friend constexpr bool operator==(const Mat4& a, const Mat4& b) {
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) {
        if (a.m[row][column] != b.m[row][column])
          return false;
      }
    }
    return true;
  }
  friend constexpr bool operator!=(const Mat4& a, const Mat4& b) { return !(a == b); }
};

} // namespace vorrel
