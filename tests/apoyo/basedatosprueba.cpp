#include "basedatosprueba.h"

#include "platform/datos/errorbd.h"
#include "suite/datos/esquema.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

QSqlQuery Correr(ADODB::Connection &conexion, const QString &sql, const QVariantList &valores) {
    QSqlQuery q(conexion.Base());
    if (!q.prepare(sql))
        throw ErrorBD(q.lastError().text() + QStringLiteral(" in ") + sql);
    for (const QVariant &v : valores)
        q.addBindValue(v);
    if (!q.exec())
        throw ErrorBD(q.lastError().text() + QStringLiteral(" in ") + sql);
    return q;
}

} // namespace

BaseDatosPrueba::BaseDatosPrueba() : conexion(std::make_unique<ADODB::Connection>()) {
    if (!dir.isValid())
        throw ErrorBD(QStringLiteral("No temporary directory: ") + dir.errorString());
    conexion->Open(Cadena());
    CrearTablasQueFaltan(*conexion, TablasSuite());
}

BaseDatosPrueba::~BaseDatosPrueba() {
    conexion.reset();
}

QString BaseDatosPrueba::Ruta() const {
    return dir.filePath(QStringLiteral("suite.sqlite"));
}

QString BaseDatosPrueba::Cadena() const {
    return QStringLiteral("sqlite:") + Ruta();
}

void BaseDatosPrueba::Ejecutar(const QString &sql, const QVariantList &valores) {
    Correr(*conexion, sql, valores);
}

QVariant BaseDatosPrueba::Valor(const QString &sql, const QVariantList &valores) {
    QSqlQuery q = Correr(*conexion, sql, valores);
    return q.next() ? q.value(0) : QVariant();
}
