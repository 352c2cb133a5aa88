#pragma once

#include "kestan/core/namespace.h"

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace tool {

/// A base URI that documents use for one of the two vocabularies.
using NamespaceBase = std::pair<vorrel::kestan::Namespace, QString>;

/// What the user asked for.
struct Arguments {
  enum class Command { kHelp, kVersion, kCat, kTree, kCheck };

  Command command = Command::kHelp;
  QStringList files;
  QString output; ///< Of `cat`; empty for standard output.
  bool hoist = true;
  bool hint = true;
  std::vector<NamespaceBase> namespaces;
};

/// Reads the command line, and the variable KESTAN_NAMESPACES. Answers what is wrong, or an empty
/// text.
QString ParseArguments(const QStringList& words, Arguments& arguments);

extern const char kHelpText[];

} // namespace tool
