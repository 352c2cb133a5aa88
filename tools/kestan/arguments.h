#pragma once

#include "kestan/core/namespace.h"
#include "kestan/link/viewparams.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace tool {

struct Arguments;

/// One of the things that the tool can do.
struct Command {
  const char* name;
  int (*run)(const Arguments& arguments); ///< Answers the exit status. The library is up.
  int minOperands;
  int maxOperands;
};

/// A base URI that documents use for one of the two vocabularies.
using NamespaceBase = std::pair<vorrel::kestan::Namespace, QString>;

/// What the user asked for.
struct Arguments {
  enum class Page { kNone, kHelp, kVersion };

  Page page = Page::kNone;          ///< To show instead of any work.
  const Command* command = nullptr; ///< Set unless a page is asked for.
  QStringList operands;             ///< Files, and for `style` and `tour` ids; at least one.
  bool json = false;
  std::vector<NamespaceBase> namespaces;

  // Of `data`.
  bool csv = false;

  // Of `apply`, `cat` and `tour`.
  QString output; ///< Empty or "-" for standard output.

  // Of `cat`.
  bool hoist = true;
  bool hint = true;
  bool outside = false;  ///< Pack files from outside of the document's folder too.
  bool relative = false; ///< Keep the text of URLs.

  // Of `apply`.
  QString updateBase; ///< Where the updates come from; empty for their files.
  bool undo = false;
  bool diff = false;

  /// Of `apply`, the fraction of the way, from 0 to 1; of `tour`, seconds from its beginning.
  std::optional<double> at;

  // Of `apply`, `links` and `tour`.
  QString base; ///< Where the document comes from; empty for the file itself.

  // Of `links`.
  std::optional<vorrel::kestan::ViewParams> view;

  const QString& GetFile() const { return operands.first(); }
};

/// Reads the command line, and the variable KESTAN_NAMESPACES. Answers what is wrong, or an empty
/// text.
QString ParseArguments(const QStringList& words, Arguments& arguments);

extern const char kHelpText[];

} // namespace tool
