#include "kestan/core/hinttargets.h"

#include "kestan/core/kestanoptions.h"
#include "kestan/host/spinlock.h"

#include <QHash>

#include <mutex>

namespace vorrel::kestan {

namespace {

const QLatin1String kTarget("target=");

/// An object has 16 bits for the index of its target, and all of them set mean none.
constexpr std::size_t kMaxHintTargets = 0xFFFF;

/// Targets live as long as the process. A longer hint names none.
constexpr int kMaxHint = 256;

struct Known {
  SpinLock lock; ///< For all else.
  mmvector<QString> targets;
  QHash<QString, int> ids;

  int Add(const QString& target);
};

int Known::Add(const QString& target) {
  const auto known = ids.constFind(target);
  if (known != ids.constEnd())
    return *known;
  if (target.isEmpty() || targets.size() == kMaxHintTargets)
    return -1;
  const int id = static_cast<int>(targets.size());
  targets.push_back(target);
  ids.insert(target, id);
  return id;
}

Known& GetKnown() {
  static Known known;
  return known;
}

} // namespace

void HintTargets::AddHintTargets(const mmvector<QString>& targets) {
  Known& known = GetKnown();
  const std::lock_guard<SpinLock> guard(known.lock);
  for (const QString& target : targets)
    known.Add(target);
}

int HintTargets::GetHintTargetId(const QString& text) {
  const auto first = text.indexOf(kTarget);
  if (first < 0 || text.size() > kMaxHint)
    return -1;
  Known& known = GetKnown();
  const std::lock_guard<SpinLock> guard(known.lock);
  // The oldest target that stands behind any "target=".
  int oldest = -1;
  for (auto at = first; at >= 0; at = text.indexOf(kTarget, at + 1)) {
    const auto begin = at + kTarget.size();
    for (int length = 1; length <= text.size() - begin; ++length) {
      const int id = known.ids.value(QString::fromRawData(text.constData() + begin, length), -1);
      if (id >= 0 && (oldest < 0 || id < oldest))
        oldest = id;
    }
  }
  if (oldest >= 0)
    return oldest;
  const auto begin = first + kTarget.size();
  const auto comma = text.indexOf(QLatin1Char(','));
  return known.Add(text.mid(begin, comma < begin ? -1 : comma - begin));
}

QString HintTargets::GetHintTargetString(int id) {
  Known& known = GetKnown();
  const std::lock_guard<SpinLock> guard(known.lock);
  return id >= 0 && static_cast<std::size_t>(id) < known.targets.size()
             ? known.targets[static_cast<std::size_t>(id)]
             : QString();
}

QString HintTargets::ComposeHintString(int id) {
  QString target = GetHintTargetString(id);
  if (target.isEmpty())
    target = KestanOptionsContext::kestanOptions.hintTarget.Get();
  return target.isEmpty() ? QString() : kTarget + target;
}

} // namespace vorrel::kestan
