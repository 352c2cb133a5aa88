#include "tools/kestan/arguments.h"

#include "tools/kestan/commands.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace tool {

using vorrel::kestan::Namespace;
using vorrel::kestan::ViewParams;

namespace {

constexpr int kMany = std::numeric_limits<int>::max();

const Command kCommands[] = {{"cat", Cat, 1, 1},         {"tree", Tree, 1, 1},
                             {"check", Check, 1, kMany}, {"style", ShowStyles, 1, kMany},
                             {"links", ShowLinks, 1, 1}, {"data", ShowData, 1, 1},
                             {"apply", Apply, 2, kMany}, {"tour", ShowTours, 1, 2}};

/// "kml=BASE" or "gx=BASE".
bool TakeNamespace(const QString& text, Arguments& arguments) {
  const auto equals = text.indexOf(QLatin1Char('='));
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

bool TakeOutput(const QString& text, Arguments& arguments) {
  arguments.output = text;
  return !text.isEmpty();
}

bool TakeBase(const QString& text, Arguments& arguments) {
  arguments.base = text;
  return !text.isEmpty();
}

bool TakeUpdateBase(const QString& text, Arguments& arguments) {
  arguments.updateBase = text;
  return !text.isEmpty();
}

/// What the number has to be is a matter of the command.
bool TakeAt(const QString& text, Arguments& arguments) {
  bool isNumber = false;
  const double number = text.toDouble(&isNumber);
  arguments.at = isNumber && std::isfinite(number) ? number : -1.0;
  return true;
}

/// "NORTH,SOUTH,EAST,WEST". The east of a view across the antimeridian is the smaller number.
bool TakeView(const QString& text, Arguments& arguments) {
  constexpr double kDegrees = 180.0;
  ViewParams view;
  double* const sides[] = {&view.north, &view.south, &view.east, &view.west};
  const double limits[] = {90.0, 90.0, 180.0, 180.0};
  const QStringList items = text.split(QLatin1Char(','));
  if (items.size() != std::ssize(sides)) {
    return false;
  }
  for (int i = 0; i < items.size(); ++i) {
    bool isNumber = false;
    const double degrees = items[i].toDouble(&isNumber);
    if (!isNumber || !(std::fabs(degrees) <= limits[i])) {
      return false;
    }
    *sides[i] = degrees / kDegrees;
  }
  if (view.east < view.west) {
    view.east += 2.0;
  }
  arguments.view = view;
  return view.south <= view.north;
}

/// What may stand on the command line beside the operands.
struct Option {
  const char* name;
  QStringList commands; ///< Those that have it; empty for all.
  const char* value;    ///< What has to follow; null where nothing has to.
  bool (*take)(const QString& value, Arguments& arguments); ///< False for a wrong value.
};

const Option* FindOption(const QString& name) {
  static const Option options[] = {
      {"-o", {"cat", "apply", "tour"}, "the name of a file", TakeOutput},
      {"--at", {"apply", "tour"}, "a number", TakeAt},
      {"--undo",
       {"apply"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.undo = true;
         return true;
       }},
      {"--diff",
       {"apply"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.diff = true;
         return true;
       }},
      {"--update-base", {"apply"}, "a URL", TakeUpdateBase},
      {"--no-hoist",
       {"cat"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.hoist = false;
         return true;
       }},
      {"--no-hint",
       {"cat"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.hint = false;
         return true;
       }},
      {"--outside",
       {"cat"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.outside = true;
         return true;
       }},
      {"--relative",
       {"cat"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.relative = true;
         return true;
       }},
      {"--json",
       {"check", "style", "links", "data", "apply", "tour"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.json = true;
         return true;
       }},
      {"--csv",
       {"data"},
       nullptr,
       [](const QString&, Arguments& arguments) {
         arguments.csv = true;
         return true;
       }},
      {"--base", {"links", "apply", "tour"}, "a URL", TakeBase},
      {"--view", {"links"}, "NORTH,SOUTH,EAST,WEST in degrees", TakeView},
      {"--namespace", {}, "kml=BASE or gx=BASE", TakeNamespace},
  };
  const auto option =
      std::find_if(std::begin(options), std::end(options),
                   [&](const Option& known) { return name == QLatin1String(known.name); });
  return option == std::end(options) ? nullptr : option;
}

/// Takes the option at `words[place]`, and moves on to its value, which may be in the same word:
/// "--name=VALUE" or "-nVALUE". Answers what is wrong.
QString TakeOption(const QStringList& words, int& place, Arguments& arguments, QStringList& given) {
  constexpr int kShort = 2;
  const QString& word = words[place];
  const bool isLong = word.startsWith(QLatin1String("--"));
  const auto equals = isLong ? word.indexOf(QLatin1Char('=')) : -1;
  const QString name = isLong ? word.left(equals) : word.left(kShort);
  const bool hasValue = equals >= 0 || name != word;
  const Option* option = FindOption(name);
  if (!option || (!option->value && hasValue)) {
    return QStringLiteral("unknown option \"%1\"").arg(word);
  }
  given += name;
  QString value;
  if (hasValue) {
    value = word.mid(isLong ? equals + 1 : kShort);
  } else if (option->value) {
    if (++place == words.size()) {
      return QStringLiteral("%1 needs %2").arg(word, QLatin1String(option->value));
    }
    value = words[place];
  }
  if (!option->take(value, arguments)) {
    return QStringLiteral("%1 needs %2, not \"%3\"")
        .arg(given.last(), QLatin1String(option->value), value);
  }
  return QString();
}

const Command* FindCommand(const QString& name) {
  const auto command =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&](const Command& known) { return name == QLatin1String(known.name); });
  return command == std::end(kCommands) ? nullptr : command;
}

/// What is wrong with options that go well by themselves, but not together.
QString CheckTogether(const Arguments& arguments) {
  const bool isApply = arguments.command->run == Apply;
  const bool isTour = arguments.command->run == ShowTours;
  if (isApply && arguments.at && !(*arguments.at >= 0.0 && *arguments.at <= 1.0)) {
    return QStringLiteral("--at needs a number from 0 to 1");
  }
  if (isTour && arguments.at && *arguments.at < 0.0) {
    return QStringLiteral("--at needs seconds from the tour's beginning");
  }
  if (isApply && arguments.json && !arguments.diff) {
    return QStringLiteral("--json needs --diff");
  }
  if (isTour && !arguments.output.isEmpty() && !arguments.at) {
    return QStringLiteral("-o needs --at");
  }
  return QString();
}

/// Reads options and operands; answers what is wrong.
QString ParseWords(const QStringList& words, Arguments& arguments) {
  bool isOptionAllowed = true;
  QStringList given;
  for (int i = 0; i < words.size(); ++i) {
    const QString& word = words[i];
    if (isOptionAllowed && word == QLatin1String("--")) {
      isOptionAllowed = false;
    } else if (isOptionAllowed &&
               (word == QLatin1String("--help") || word == QLatin1String("-h"))) {
      arguments.page = Arguments::Page::kHelp;
      return QString();
    } else if (isOptionAllowed &&
               (word == QLatin1String("--version") || word == QLatin1String("-V"))) {
      arguments.page = Arguments::Page::kVersion;
      return QString();
    } else if (isOptionAllowed && word.size() > 1 && word.startsWith(QLatin1Char('-'))) {
      const QString wrong = TakeOption(words, i, arguments, given);
      if (!wrong.isEmpty()) {
        return wrong;
      }
    } else if (arguments.command) {
      arguments.operands += word;
    } else {
      arguments.command = FindCommand(word);
      if (!arguments.command) {
        return QStringLiteral("unknown command \"%1\"").arg(word);
      }
    }
  }
  if (!arguments.command) {
    return QStringLiteral("no command given");
  }
  for (const QString& name : given) {
    const QStringList& commands = FindOption(name)->commands;
    if (!commands.isEmpty() && !commands.contains(QLatin1String(arguments.command->name))) {
      return QStringLiteral("%1 belongs to \"%2\"")
          .arg(name, commands.join(QLatin1String("\" and \"")));
    }
  }
  return QString();
}

} // namespace

QString ParseArguments(const QStringList& words, Arguments& arguments) {
  const QString wrong = ParseWords(words, arguments);
  if (!wrong.isEmpty() || arguments.page != Arguments::Page::kNone) {
    return wrong;
  }
  if (arguments.operands.isEmpty()) {
    return QStringLiteral("no file given");
  }
  if (arguments.operands.size() < arguments.command->minOperands) {
    return QStringLiteral("no update given");
  }
  const QString together = CheckTogether(arguments);
  if (!together.isEmpty()) {
    return together;
  }
  if (arguments.json && arguments.csv) {
    return QStringLiteral("either --json or --csv");
  }
  if (arguments.operands.size() > arguments.command->maxOperands) {
    return arguments.command->maxOperands > 1 ? QStringLiteral("more than one id given")
                                              : QStringLiteral("more than one file given");
  }
  const QString variable = QString::fromLocal8Bit(qgetenv("KESTAN_NAMESPACES")).simplified();
  for (const QString& item : variable.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    if (!TakeNamespace(item, arguments)) {
      return QStringLiteral("KESTAN_NAMESPACES: \"%1\" is neither kml=BASE nor gx=BASE").arg(item);
    }
  }
  return QString();
}

} // namespace tool
