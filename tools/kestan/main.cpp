// The command-line tool: a client of the library that uses its public headers only.

#include "kestan/core/library.h"
#include "kestan/read/namespaces.h"
#include "tools/kestan/commands.h"

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
  int status = kFine;
  switch (arguments.command) {
  case Arguments::Command::kCat:
    status = Cat(arguments);
    break;
  case Arguments::Command::kTree:
    status = Tree(arguments);
    break;
  default:
    status = Check(arguments);
    break;
  }
  vorrel::kestan::GShutdown();
  return status;
}

} // namespace

void Complain(const QString& message) {
  std::fprintf(stderr, "kestan: %s\n", message.toUtf8().constData());
}

bool Print(const QByteArray& bytes) {
  const auto size = static_cast<std::size_t>(bytes.size());
  if (std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0) {
    return true;
  }
  Complain(QStringLiteral("can't write to standard output"));
  return false;
}

} // namespace tool

int main(int argc, char** argv) {
  using namespace tool;
  // File names are UTF-8, whatever the user's language; numbers keep their point.
  std::setlocale(LC_CTYPE, "C.UTF-8");

  QStringList words;
  for (int i = 1; i < argc; ++i) {
    words += QString::fromLocal8Bit(argv[i]);
  }
  Arguments arguments;
  const QString wrong = ParseArguments(words, arguments);
  if (!wrong.isEmpty()) {
    Complain(wrong);
    std::fputs("Try 'kestan --help'.\n", stderr);
    return kWrongUsage;
  }
  switch (arguments.command) {
  case Arguments::Command::kHelp:
    return Print(kHelpText) ? kFine : kNoOutput;
  case Arguments::Command::kVersion:
    return Print("kestan " KESTAN_VERSION "\n") ? kFine : kNoOutput;
  default:
    return Run(arguments);
  }
}
