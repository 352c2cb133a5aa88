#include "tools/kestan/arguments.h"

namespace tool {

using vorrel::kestan::Namespace;

const char kHelpText[] =
    R"(Usage: kestan cat [-o OUT] [--no-hoist] [--no-hint] FILE
       kestan tree FILE
       kestan check FILE...
       kestan --help | --version

Reads KML and KMZ documents, and writes them.

Commands:
  cat    write the document as KML to standard output
  tree   show the document's objects, one a line: class, id, name, counts
  check  report what the reader objects to, as file:line:column: message

Options of cat:
  -o OUT      write to the file OUT; a name without a suffix gets ".kml". A name that ends in
              ".kmz" makes an archive, with the local files that the document refers to
  --no-hoist  leave shared styles and schemas where they are, outside of the written object
  --no-hint   leave out the "hint" attribute of the root

Options of all commands:
  --namespace kml=BASE, --namespace gx=BASE
              read elements of namespaces that start with BASE as KML or as its extensions.
              The variable KESTAN_NAMESPACES holds more of them, separated by blanks.

Exit status: 0 all is well; 1 there are findings, a document can't be read, or a file that it
refers to can't be packed; 2 wrong usage; 3 the output can't be written.
)";

namespace {

/// "kml=BASE" or "gx=BASE"; false for anything else.
bool ParseNamespace(const QString& text, Arguments& arguments) {
  const int equals = text.indexOf(QLatin1Char('='));
  const QString prefix = text.left(equals);
  const QString base = text.mid(equals + 1);
  if (equals < 0 || base.isEmpty()) {
    return false;
  }
  if (prefix == QLatin1String(vorrel::kestan::kKmlPrefix)) {
    arguments.namespaces.emplace_back(Namespace::kKml, base);
  } else if (prefix == QLatin1String(vorrel::kestan::kExtPrefix)) {
    arguments.namespaces.emplace_back(Namespace::kExt, base);
  } else {
    return false;
  }
  return true;
}

bool ParseCommand(const QString& word, Arguments& arguments) {
  using Command = Arguments::Command;
  if (word == QLatin1String("cat")) {
    arguments.command = Command::kCat;
  } else if (word == QLatin1String("tree")) {
    arguments.command = Command::kTree;
  } else if (word == QLatin1String("check")) {
    arguments.command = Command::kCheck;
  } else {
    return false;
  }
  return true;
}

/// Reads options and operands; answers what is wrong.
QString ParseWords(const QStringList& words, Arguments& arguments) {
  bool command = false;
  bool options = true;
  QString catOption; // an option that only `cat` has
  for (int i = 0; i < words.size(); ++i) {
    const QString& word = words[i];
    const bool isOption = options && word.startsWith(QLatin1Char('-'));
    if (!isOption) {
      if (command) {
        arguments.files += word;
      } else if (ParseCommand(word, arguments)) {
        command = true;
      } else {
        return QStringLiteral("unknown command \"%1\"").arg(word);
      }
    } else if (word == QLatin1String("--")) {
      options = false;
    } else if (word == QLatin1String("--help") || word == QLatin1String("-h")) {
      arguments.command = Arguments::Command::kHelp;
      return QString();
    } else if (word == QLatin1String("--version")) {
      arguments.command = Arguments::Command::kVersion;
      return QString();
    } else if (word == QLatin1String("--no-hoist")) {
      arguments.hoist = false;
      catOption = word;
    } else if (word == QLatin1String("--no-hint")) {
      arguments.hint = false;
      catOption = word;
    } else if (word == QLatin1String("-o") || word == QLatin1String("--namespace")) {
      if (++i == words.size()) {
        return QStringLiteral("%1 needs a value").arg(word);
      }
      if (word == QLatin1String("-o")) {
        arguments.output = words[i];
        catOption = word;
        if (words[i].isEmpty()) {
          return QStringLiteral("-o needs the name of a file");
        }
      } else if (!ParseNamespace(words[i], arguments)) {
        return QStringLiteral("\"%1\" is neither kml=BASE nor gx=BASE").arg(words[i]);
      }
    } else if (word.startsWith(QLatin1String("--namespace="))) {
      if (!ParseNamespace(word.section(QLatin1Char('='), 1), arguments)) {
        return QStringLiteral("\"%1\" names neither kml=BASE nor gx=BASE").arg(word);
      }
    } else {
      return QStringLiteral("unknown option \"%1\"").arg(word);
    }
  }
  if (!command) {
    return QStringLiteral("no command given");
  }
  if (arguments.command != Arguments::Command::kCat && !catOption.isNull()) {
    return QStringLiteral("%1 belongs to \"cat\"").arg(catOption);
  }
  return QString();
}

} // namespace

QString ParseArguments(const QStringList& words, Arguments& arguments) {
  const QString wrong = ParseWords(words, arguments);
  using Command = Arguments::Command;
  if (!wrong.isEmpty() || arguments.command == Command::kHelp ||
      arguments.command == Command::kVersion) {
    return wrong;
  }
  if (arguments.files.isEmpty()) {
    return QStringLiteral("no file given");
  }
  if (arguments.command != Command::kCheck && arguments.files.size() > 1) {
    return QStringLiteral("more than one file given");
  }
  const QString variable = QString::fromLocal8Bit(qgetenv("KESTAN_NAMESPACES")).simplified();
  for (const QString& item : variable.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    if (!ParseNamespace(item, arguments)) {
      return QStringLiteral("KESTAN_NAMESPACES: \"%1\" is neither kml=BASE nor gx=BASE").arg(item);
    }
  }
  return QString();
}

} // namespace tool
