#include "kestan/host/settings.h"

#include "kestan/host/system.h"
#include "kestan/host/timer.h"

#include <algorithm>
#include <mutex>

namespace vorrel {

namespace {

thread_local SettingModifier s_modifier = SettingModifier::kProgram;

QString TextOf(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
QString TextOf(int value) { return QString::number(value); }
QString TextOf(const QString& value) { return value; }

bool Parse(const QString& text, bool& value) {
  const QString word = text.trimmed().toLower();
  value = word == QLatin1String("true") || word == QLatin1String("1");
  return value || word == QLatin1String("false") || word == QLatin1String("0");
}

bool Parse(const QString& text, int& value) {
  bool good = false;
  value = text.toInt(&good);
  return good;
}

bool Parse(const QString& text, QString& value) {
  value = text;
  return true;
}

} // namespace

Setting* SettingGroup::Find(const QString& name) const {
  const auto found = std::find_if(settings_.begin(), settings_.end(),
                                  [&name](const Setting* s) { return s->GetName() == name; });
  return found != settings_.end() ? *found : nullptr;
}

SettingModifierScope::SettingModifierScope(SettingModifier modifier) : former_(s_modifier) {
  s_modifier = modifier;
}

SettingModifierScope::~SettingModifierScope() { s_modifier = former_; }

SettingModifier SettingModifierScope::GetCurrent() { return s_modifier; }

SettingObserver::~SettingObserver() = default;

Setting::Setting(SettingGroup& group, const QString& name)
    : SyncMethod("Setting"), group_(group), name_(name) {
  group.settings_.push_back(this);
}

Setting::~Setting() {
  auto& all = group_.settings_;
  all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

SettingModifier Setting::GetModifier() const {
  const std::lock_guard<SpinLock> guard(lock_);
  return modifier_;
}

void Setting::NotifyChanged() {
  if (System::IsMainThread())
    Execute();
  else if (!IsPending()) // a notice that waits stays where it is, and tells this change too
    Timer::Execute(*this, 0.0);
}

void Setting::Execute() {
  observers_.Dispatch([this](Observer& observer) {
    static_cast<SettingObserver&>(observer).OnSettingChanged(*this);
  });
}

template <class T>
TypedSetting<T>::TypedSetting(SettingGroup& group, const QString& name, const T& byDefault)
    : Setting(group, name), default_(byDefault), value_(byDefault) {}

template <class T> TypedSetting<T>::~TypedSetting() = default;

template <class T> T TypedSetting<T>::Get() const {
  const std::lock_guard<SpinLock> guard(lock_);
  return value_;
}

template <class T> bool TypedSetting<T>::Set(const T& value) {
  return Set(value, SettingModifierScope::GetCurrent());
}

template <class T> bool TypedSetting<T>::Set(const T& value, SettingModifier modifier) {
  T former = value; // ends outside the lock
  {
    const std::lock_guard<SpinLock> guard(lock_);
    std::swap(former, value_);
    modifier_ = modifier;
  }
  if (former == value)
    return false;
  NotifyChanged();
  return true;
}

template <class T> QString TypedSetting<T>::ToString() const { return TextOf(Get()); }

template <class T> bool TypedSetting<T>::FromString(const QString& text) {
  T value{};
  if (!Parse(text, value))
    return false;
  Set(value);
  return true;
}

template <class T> void TypedSetting<T>::Reset() { Set(default_, SettingModifier::kDefault); }

template class TypedSetting<bool>;
template class TypedSetting<int>;
template class TypedSetting<QString>;

} // namespace vorrel
