// The command-line tool: a client of the library that uses its public headers only.

#include "kestan/core/library.h"
#include "kestan/read/namespaces.h"
#include "kestan/version.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/filename.h"
#include "tools/kestan/output.h"

#include <QString>
#include <QStringList>

#include <clocale>
#include <cstdio>

namespace tool {

namespace {

int Run(const Arguments& arguments) {
  for (const auto& [ns, base] : arguments.namespaces) {
    vorrel::kestan::RegisterNamespaceBase(ns, base);
  }
  vorrel::kestan::GInitialize();
  const int status = arguments.command->run(arguments);
  vorrel::kestan::GShutdown();
  return status;
}

} // namespace

} // namespace tool

int main(int argc, char** argv) {
  using namespace tool;
  // File names are UTF-8, whatever the user's language; numbers keep their point.
  std::setlocale(LC_CTYPE, "C.UTF-8");

  QStringList words;
  for (int i = 1; i < argc; ++i) {
    words += DecodeName(argv[i]);
  }
  Arguments arguments;
  const QString wrong = ParseArguments(words, arguments);
  if (!wrong.isEmpty()) {
    Complain(wrong);
    std::fputs("Try 'kestan --help'.\n", stderr);
    return kWrongUsage;
  }
  switch (arguments.page) {
  case Arguments::Page::kHelp:
    return Print(kHelpText) ? kFine : kNoOutput;
  case Arguments::Page::kVersion:
    return Print("kestan " KESTAN_VERSION_STRING "\n") ? kFine : kNoOutput;
  default:
    return Run(arguments);
  }
}
