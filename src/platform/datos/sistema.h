#pragma once

#include <QDate>
#include <QString>

namespace Sistema {

/// The operating system's services that the program asks for.

/// True when another copy of this program already runs for this account. The first copy holds
/// a lock on a file of the account's own for as long as it runs; the lock dies with the
/// process, even on a crash, and a file left behind (empty, or with anything in it) is taken
/// over. Other accounts have locks of their own.
bool HayInstanciaPrevia(const QString &programa = QStringLiteral("tarifas"));

/// The directory of the running program, without a trailing separator.
QString DirectorioPrograma();

/// The length of the path when a plain file (not a directory) exists there, else 0.
int ExisteFichero(const QString &ruta);

/// Today's date, with no time part.
QDate Hoy();

} // namespace Sistema
