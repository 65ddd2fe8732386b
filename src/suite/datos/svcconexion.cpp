#include "svcconexion.h"

#include "demo.h"
#include "esquema.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/transaccion.h"

#include <QDir>
#include <QSqlQuery>

using namespace ADODB;

namespace {

const QString terminalDemo = QStringLiteral("CAJA1");

} // namespace

QString SvcConexion::CadenaSuite() {
    const QString variable = qEnvironmentVariable("TARIFAS_DB").trimmed();
    if (!variable.isEmpty())
        return variable;
    return QStringLiteral("sqlite:") +
           QDir(DirectorioDatosSuite()).filePath(QStringLiteral("tarifas.sqlite"));
}

void SvcConexion::AbrirConexion(const QString &cadena, ADODB::Connection &conexion) {
    // The embedded default is the one place a shop appears by itself: a person who names a
    // database of their own asks for the demo with TARIFAS_DEMO=1.
    const bool porDefecto =
        cadena.isEmpty() && qEnvironmentVariable("TARIFAS_DB").trimmed().isEmpty();
    const bool demo = porDefecto || qEnvironmentVariable("TARIFAS_DEMO") == QLatin1String("1");
    conexion.Open(cadena.isEmpty() ? CadenaSuite() : cadena);
    // Only a database that lacks tables is written to, and then the tables and the demo shop
    // go in one unit: a first start cut short leaves no table, and the next start does it all.
    if (!TablasQueFaltan(conexion, TablasSuite()).empty()) {
        ADODB::Transaccion unidad(conexion);
        if (CrearTablasQueFaltan(conexion, TablasSuite()) && demo)
            CargarTiendaDemo(conexion);
        unidad.Commit();
    }
    // A database made by an older program may keep an index as that program made it.
    RevisarIndices(conexion, TablasSuite());
    PrepararOrigenTerminal();
}

void PrepararOrigenTerminal() {
    const QString cadena = QStringLiteral("dsn=") + OrigenTerminal;
    if (ExisteOrigenODBC(OrigenTerminal))
        return;
    ADODB::Connection terminal;
    terminal.Open(cadena);
    if (TablasQueFaltan(terminal, TablasTerminal()).empty())
        return;
    ADODB::Transaccion unidad(terminal);
    if (CrearTablasQueFaltan(terminal, TablasTerminal())) {
        QSqlQuery q(terminal.Base());
        q.prepare(QStringLiteral("insert into listadostemporal (list1, list2) values (?, ?)"));
        q.addBindValue(QStringLiteral("TIENDA"));
        q.addBindValue(terminalDemo);
        if (!q.exec())
            throw terminal.Fallo(q.lastError(), q.lastQuery());
    }
    unidad.Commit();
}
