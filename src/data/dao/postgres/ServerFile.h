#pragma once

#include <QString>
#include <optional>

/// The small text file that stands in the place of a database file where the database is on a
/// server: a first line that names it, and a line of connection settings as libpq takes them
/// ("host=db dbname=tldb0010").
namespace ServerFile {

/// The connection settings; nothing when the file is another one or can't be read. Throws DaoError
/// for one that has more or fewer lines than it should.
std::optional<QString> SettingsOf(const QString &localPath);

/// The file's text.
QByteArray TextFor(const QString &settings);

} // namespace ServerFile
