#include "storage/session/own_statement.h"

#include "storage/session/data_session.h"

namespace vorn {

Result<> RunOwn(DataSession& data, const QByteArray& statement, const QVariantList& values) {
  const auto& connection = data.OpenConnection();
  if (connection == nullptr) return StorageError::Wordless();
  return connection->Run(statement, values) ? Result<>() : connection->LastError();
}

Result<RecordsetPtr> AskOwn(DataSession& data, const QByteArray& select,
                            const QVariantList& values) {
  const auto& connection = data.OpenConnection();
  if (connection == nullptr) return StorageError::Wordless();
  auto statement = connection->Prepare(select);
  if (statement == nullptr) return connection->LastError();
  statement->Bind(values);
  auto rows = std::make_shared<Recordset>(connection, std::move(statement));
  if (rows->Failed() && rows->Eof()) return rows->Error();
  return rows;
}

}  // namespace vorn
