#pragma once

#include "kestan/core/schemaobject.h"

#include <memory>

namespace vorrel::kestan {

class AbstractLinkSchema;
struct ViewParams;

/// Base of what names a resource to fetch, and says when and with what query to fetch it.
///
/// The link runs no timer: refresh modes and times are for the client, which watches the fields.
class KESTAN_EXPORT AbstractLink : public SchemaObject {
public:
  using ClassSchema = AbstractLinkSchema;
  static const Schema& GetClassSchema();
  ~AbstractLink() override;

  enum RefreshMode { kOnChange = 0, kOnInterval = 1, kOnExpire = 2 };
  enum ViewRefreshMode { kNever = 0, kOnRequest = 1, kOnStop = 2, kOnRegion = 3 };

  /// The client's code for what went wrong with a fetch.
  using ErrorHandle = int;

  /// The reference as written in the document.
  const QString& GetHref() const { return href_; }
  void SetHref(const QString& href);
  int GetRefreshMode() const { return refreshMode_; }
  /// Seconds.
  float GetRefreshInterval() const { return refreshInterval_; }
  int GetViewRefreshMode() const { return viewRefreshMode_; }
  /// Seconds.
  float GetViewRefreshTime() const { return viewRefreshTime_; }
  float GetViewBoundScale() const { return viewBoundScale_; }
  void SetViewBoundScale(float scale);
  const QString& GetViewFormat() const { return viewFormat_; }
  void SetViewFormat(const QString& format);
  const QString& GetHttpQuery() const { return httpQuery_; }
  /// Seconds on the client's clock; negative when nothing expires.
  double GetExpireTime() const { return expireTime_; }
  /// The number of refreshes asked for.
  int GetRefreshCounter() const { return refreshCounter_; }
  ErrorHandle GetErrorHandle() const { return errorHandle_; }
  void SetErrorHandle(ErrorHandle handle);
  /// Whether the file travels inside an archive that the document is written to.
  bool GetEmbedInKmz() const { return embedInKmz_; }
  void SetEmbedInKmz(bool embed) { embedInKmz_ = embed; }

  /// The URL to fetch: the reference made absolute and, for a server, with its query for the
  /// present view. Empty when there is no reference, or it can't be resolved.
  QString GetAbsoluteUrl() const;
  /// The same without anything that query and view add to it.
  virtual QString GetResourceUrl() const;

  /// Tells where the user is; the URL follows, and observers hear of it.
  void setViewParams(const ViewParams& view);
  const ViewParams& GetViewParams() const;
  /// The bounds of the view, enlarged by `viewBoundScale` and cut to the globe; normalised.
  void GetScaledBbox(double& north, double& south, double& east, double& west) const;

  /// Asks whoever watches the link to fetch it again.
  void refresh();
  /// The older form of the refresh mode: a period of `seconds`, none below 1.
  void SetDeprecatedRefreshPeriod(int seconds);

  unsigned GetFieldsSpecified() const override { return fieldsSpecified_; }
  void merge(const SchemaObject& a, const SchemaObject& b) override;
  bool IsGiven(const Field& field) const override;
  void SetNotGiven(const Field& field) override;
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteKml(WriteState& state) const override;

protected:
  /// Takes the text of the link's own element, another form of `href`.
  void ReadHref(const QString& text);
  AbstractLink(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// Takes note of a change without telling anybody.
  void MarkChanged(const Field& field);

  QString href_;
  unsigned fieldsSpecified_ = 0;
  /// Keeps what `GetAbsoluteUrl` has to say, until something changes it. No thread that only asks
  /// does so.
  void KeepAbsoluteUrl();
  /// True when it costs much to put the query behind the URL.
  bool HasLongQuery() const;

  QString absoluteUrl_;
  bool urlDirty_ = false; // what is kept isn't right any more

private:
  friend class AbstractLinkSchema;
  template <class T, template <class> class I, template <class> class D> friend class SchemaT;

  QString ComposeQuery() const;

  float refreshInterval_ = 4.0F;
  float viewRefreshTime_ = 4.0F;
  float viewBoundScale_ = 1.0F;
  QString viewFormat_;
  QString httpQuery_;
  int viewRefreshMode_ = kNever;
  int refreshMode_ = kOnChange;
  std::unique_ptr<ViewParams> view_; // null while nobody told of one
  int refreshCounter_ = 0;
  double expireTime_ = -1.0;
  ErrorHandle errorHandle_ = 0;
  bool embedInKmz_ = true;
};

} // namespace vorrel::kestan
