// The baseline of the benchmarks that read: SQLite alone, through its own interface, with
// nothing of the program between.
#pragma once

#include <QByteArray>
#include <QString>

#include <sqlite3.h>
#include <stdexcept>
#include <string>

/// SQLite alone reading `sql` from the file `ruta`: each column of each row as text, as the
/// program must at least do. Gives the rows read.
inline int LecturaSQLite(const QString &ruta, const QString &sql) {
    sqlite3 *db = nullptr;
    if (sqlite3_open_v2(ruta.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(db));
    sqlite3_stmt *st = nullptr;
    const QByteArray texto = sql.toUtf8();
    if (sqlite3_prepare_v2(db, texto.constData(), int(texto.size()), &st, nullptr) != SQLITE_OK) {
        const std::string error = sqlite3_errmsg(db);
        sqlite3_close(db);
        throw std::runtime_error(error);
    }
    int filas = 0;
    size_t bytes = 0;
    const int columnas = sqlite3_column_count(st);
    while (sqlite3_step(st) == SQLITE_ROW) {
        for (int c = 0; c < columnas; ++c)
            if (const unsigned char *t = sqlite3_column_text(st, c))
                bytes += size_t(sqlite3_column_bytes(st, c)) + (t[0] != 0);
        ++filas;
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    if (bytes == 0 && filas > 0)
        throw std::runtime_error("SQLite read no text");
    return filas;
}
