#pragma once

#include "tools/kestan/arguments.h"

namespace tool {

enum ExitStatus {
  kFine = 0,
  kFindings = 1, ///< Also for a document that can't be read.
  kWrongUsage = 2,
  kNoOutput = 3, ///< Output can't be written.
};

// Each command answers the exit status. The library is up.
int Apply(const Arguments& arguments);
int Cat(const Arguments& arguments);
int Tree(const Arguments& arguments);
int Check(const Arguments& arguments);
int ShowStyles(const Arguments& arguments);
int ShowLinks(const Arguments& arguments);
int ShowData(const Arguments& arguments);
int ShowTours(const Arguments& arguments);

} // namespace tool
