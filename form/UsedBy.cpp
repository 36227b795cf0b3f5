#include "form/UsedBy.h"

#include "form/App.h"
#include "form/Place.h"
#include "store/Query.h"

namespace quillon::form {

bool isUsed(store::Database& database, const UsedBy& by, const store::Value& id) {
  store::Query query(database, "SELECT " + by.field + " FROM " + by.table + " WHERE " + by.field + " = :id TOP 1");
  query.setParameter("id", id);
  query.open();
  return !query.isEmpty();
}

void refuseIfUsed(store::Database& database, std::span<const UsedBy> users, const store::Value& id,
                  const std::string& name) {
  for (const UsedBy& by : users)
    if (isUsed(database, by, id)) refuseDelete(name, by.reason);
}

void askDelete(App& app, std::span<const UsedBy> users, const store::Value& id, const std::string& name) {
  if (!app.person().confirm("Delete '" + name + "'?")) abort();
  refuseIfUsed(app.database(), users, id, name);
}

void refuseDelete(const std::string& name, const std::string& reason) {
  refuse("Unable to delete '" + name + "'...\r" + reason);
}

}  // namespace quillon::form
