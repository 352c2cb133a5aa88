#pragma once

#include "kestan/host/export.h"
#include "kestan/host/observer.h"
#include "kestan/host/spinlock.h"
#include "kestan/host/syncmethod.h"

#include <QString>

#include <vector>

namespace vorrel {

class Setting;

/// Named settings that belong together, in the order in which they were made. Groups and their
/// settings are made and ended on one thread.
class KESTAN_EXPORT SettingGroup {
public:
  explicit SettingGroup(const QString& name) : name_(name) {}
  SettingGroup(const SettingGroup&) = delete;
  SettingGroup& operator=(const SettingGroup&) = delete;

  const QString& GetName() const { return name_; }
  const std::vector<Setting*>& GetSettings() const { return settings_; }
  /// Null when the group has no setting of that name.
  Setting* Find(const QString& name) const;

private:
  friend class Setting;

  const QString name_;
  std::vector<Setting*> settings_;
};

/// Who changes a setting.
enum class SettingModifier { kDefault, kProgram, kUser };

/// Names the modifier for the changes that this thread makes while the scope lasts. Outside of all
/// scopes it is the program.
class KESTAN_EXPORT SettingModifierScope {
public:
  explicit SettingModifierScope(SettingModifier modifier);
  ~SettingModifierScope();
  SettingModifierScope(const SettingModifierScope&) = delete;
  SettingModifierScope& operator=(const SettingModifierScope&) = delete;

  static SettingModifier GetCurrent();

private:
  const SettingModifier former_;
};

/// Is told of the changes of the setting to which it was added.
class KESTAN_EXPORT SettingObserver : public Observer {
public:
  virtual ~SettingObserver();
  virtual void OnSettingChanged(Setting& setting) = 0;
};

/// A named value with a default. Any thread may read and change it; observers belong to the main
/// thread, and hear of changes there: at once, or at the next `Pump::Run` for a change that another
/// thread made. A setting lives inside its group's life.
class KESTAN_EXPORT Setting : private SyncMethod {
public:
  ~Setting() override;

  const SettingGroup& GetGroup() const { return group_; }
  const QString& GetName() const { return name_; }
  /// Who changed it last.
  SettingModifier GetModifier() const;

  /// The value as text, for stores that know no types.
  virtual QString ToString() const = 0;
  /// Sets the value from text. False, and nothing changes, when the text tells no such value.
  virtual bool FromString(const QString& text) = 0;
  virtual void Reset() = 0;

  void AddObserver(SettingObserver& observer) { observers_.Add(observer); }

protected:
  Setting(SettingGroup& group, const QString& name);

  void NotifyChanged();

  mutable SpinLock lock_;
  SettingModifier modifier_ = SettingModifier::kDefault;

private:
  void Execute() override;

  SettingGroup& group_;
  const QString name_;
  ObserverList observers_;
};

/// A setting of one type: bool, int or `QString`.
template <class T> class KESTAN_EXPORT TypedSetting final : public Setting {
public:
  TypedSetting(SettingGroup& group, const QString& name, const T& byDefault);
  ~TypedSetting() override;

  const T& GetDefault() const { return default_; }
  T Get() const;
  /// Changes the value in the name of this thread's modifier. Observers hear of it, and the answer
  /// is true, when it is another one than before.
  bool Set(const T& value);

  QString ToString() const override;
  bool FromString(const QString& text) override;
  /// Back to the default.
  void Reset() override;

private:
  bool Set(const T& value, SettingModifier modifier);

  const T default_;
  T value_;
};

extern template class TypedSetting<bool>;
extern template class TypedSetting<int>;
extern template class TypedSetting<QString>;

using BoolSetting = TypedSetting<bool>;
using IntSetting = TypedSetting<int>;
using StringSetting = TypedSetting<QString>;

} // namespace vorrel
