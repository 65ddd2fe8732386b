#include "svcconexion.h"

#include "demo.h"
#include "esquema.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString origenTerminal = QStringLiteral("Corvanta");
const QString terminalDemo = QStringLiteral("CAJA1");

/// True when the string leads to an SQLite file that isn't there yet.
bool EsSQLiteNueva(const QString &cadena) {
    const CadenaConexion c = CadenaConexion::Interpretar(cadena);
    return c.tipo == CadenaConexion::Tipo::SQLite && !QFileInfo::exists(c.ruta);
}

} // namespace

QString SvcConexion::CadenaSuite() {
    const QString variable = qEnvironmentVariable("TARIFAS_DB").trimmed();
    if (!variable.isEmpty())
        return variable;
    return QStringLiteral("sqlite:") + QDir(DirectorioDatosSuite()).filePath(QStringLiteral("tarifas.sqlite"));
}

void SvcConexion::AbrirConexion(const QString &cadena, ADODB::Connection &conexion) {
    const QString destino = cadena.isEmpty() ? CadenaSuite() : cadena;
    const bool nueva = EsSQLiteNueva(destino);
    conexion.Open(destino);
    const bool vacia = CrearTablasQueFaltan(conexion, TablasSuite());
    if (nueva || (vacia && qEnvironmentVariable("TARIFAS_DEMO") == QLatin1String("1")))
        CargarTiendaDemo(conexion);
    PrepararOrigenTerminal();
}

void PrepararOrigenTerminal() {
    const QString cadena = QStringLiteral("dsn=") + origenTerminal;
    if (ExisteOrigenODBC(origenTerminal) || !EsSQLiteNueva(cadena))
        return;
    ADODB::Connection terminal;
    terminal.Open(cadena);
    CrearTablasQueFaltan(terminal, TablasTerminal());
    QSqlQuery q(terminal.Base());
    q.prepare(QStringLiteral("insert into listadostemporal (list1, list2) values (?, ?)"));
    q.addBindValue(QStringLiteral("TIENDA"));
    q.addBindValue(terminalDemo);
    if (!q.exec())
        throw ErrorBD(q.lastError().text());
}
