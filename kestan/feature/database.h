#pragma once

#include "kestan/feature/abstractfolder.h"

#include <atomic>

namespace vorrel::kestan {

class DatabaseSchema;

/// A folder with the layers of a globe database, which only its client fills. No document makes
/// one.
class KESTAN_EXPORT Database final : public AbstractFolder {
public:
  using ClassSchema = DatabaseSchema;
  static const Schema& GetClassSchema();

  Database(const QString& url, const KmlId& id, const QString& baseUrl, bool clientFlag,
           bool hasOwnDrawOrder);
  ~Database() override;

  unsigned GetStatus() const { return status_; }
  const QString& GetDatabaseUrl() const { return databaseUrl_; }
  /// Own draw order, else that of the nearest database above that has one, else that of a database
  /// at the top, else -1.
  int GetDrawOrder() const;
  /// The draw order that the constructor took for the children.
  int GetChildDrawOrder() const { return childDrawOrder_; }
  /// Hands out a number that no other call gets.
  static int GetNextChildDrawOrder();

  // The client's; the library doesn't look at them.
  bool GetClientFlag() const { return clientFlag_; }
  int GetClientValue() const { return clientValue_; }
  void SetClientValue(int value) { clientValue_ = value; }

  void accept(FeatureVisitor& visitor) override;

private:
  friend class DatabaseSchema;

  unsigned status_ = 0;
  QString databaseUrl_;
  int drawOrder_ = 0;
  bool clientFlag_;
  int clientValue_ = -1;
  bool hasOwnDrawOrder_;
  int childDrawOrder_;

  static std::atomic<std::int32_t> num_databases_;
};

} // namespace vorrel::kestan
