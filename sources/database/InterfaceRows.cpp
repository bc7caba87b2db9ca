#include "sources/database/InterfaceRows.h"

#include "sources/database/ReplaceRows.h"
#include "sources/database/Session.h"

#include <map>

namespace sources::database {

void replaceInterfaces(Connection& connection, ChangeLog& log, const InterfaceSet& interfaces) {
  std::map<std::int64_t, std::string> old, now;
  Statement select(connection, "select id, name from interface");
  while (select.step()) {
    const auto id = select.integer("id");
    old[id] = select.text("name");
  }
  interfaces.forEach([&](const Kesh::IntfId& id, bool) {
    if (id) now[signedInterface(id)] = id.stringValue().str();
  });
  Statement insert(connection, "insert or replace into interface values (?, ?)");
  Statement remove(connection, "delete from interface where id = ?");
  replaceRows(
      old, now,
      [&](std::int64_t id, const std::string& name) {
        insert.bind(id).bindText(name).run();
        log.other("interface");
      },
      [&](std::int64_t id) {
        remove.bind(id).run();
        log.other("interface");
      });
}

} // namespace sources::database
