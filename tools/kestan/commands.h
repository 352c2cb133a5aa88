#pragma once

#include "tools/kestan/arguments.h"

namespace tool {

enum ExitStatus {
  kFine = 0,
  kFindings = 1, ///< Also for a document that can't be read.
  kWrongUsage = 2,
  kNoOutput = 3, ///< Output can't be written.
};

/// Each command answers the exit status. The library is up.
int Cat(const Arguments& arguments);
int Tree(const Arguments& arguments);
int Check(const Arguments& arguments);

/// Writes a line to standard error, with the program's name in front.
void Complain(const QString& message);

/// Writes bytes to standard output. False when that fails.
bool Print(const QByteArray& bytes);

} // namespace tool
