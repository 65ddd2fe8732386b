#pragma once

// A database of its own on a PostgreSQL server for one benchmark's measures.

#include "platform/datos/conexion.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <stdexcept>

/// Makes an empty database on the server `servidor` (the connection string of an account that
/// may create databases), runs `medir` with the connection string that reaches it, and drops
/// it afterwards, also when `medir` raises.
template <class Medida> void EnBaseDelServidor(const QString &servidor, Medida &&medir) {
    const QString nombre =
        QStringLiteral("bench_") + QUuid::createUuid().toString(QUuid::Id128).left(12);
    ADODB::Connection admin;
    admin.Open(servidor);
    const auto ejecutar = [&admin](const QString &sentencia) {
        QSqlQuery q(admin.Base());
        if (!q.exec(sentencia))
            throw std::runtime_error(q.lastError().text().toStdString());
    };
    ejecutar(QStringLiteral("create database ") + nombre);
    QUrl url(servidor);
    url.setPath(QLatin1Char('/') + nombre);
    try {
        medir(url.toString());
    } catch (...) {
        ejecutar(QStringLiteral("drop database ") + nombre);
        throw;
    }
    ejecutar(QStringLiteral("drop database ") + nombre);
}
